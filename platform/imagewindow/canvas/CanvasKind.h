// SPDX-License-Identifier: MIT
// The ways in which the pixels of a canvas reach the screen. No X here.
#pragma once

namespace viewer {

enum class CanvasKind {
    Shared, // memory that the server reads where it stands
    Plain,  // sent through the connection: another machine's display
    OpenGl, // a texture in an OpenGL drawing area
};

} // namespace viewer
