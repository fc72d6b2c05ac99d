// SPDX-License-Identifier: MIT
// The widget class of the canvas: a bare window that shows the image. It has no translations, so the viewer
// selects no button press on it and the one client that may do so can be a tool. Its contents are drawn by
// its owner, in the callback expose (call data: CanvasExposure).
#pragma once

#include <X11/Intrinsic.h>
#include <X11/StringDefs.h>

namespace viewer {

struct CanvasExposure {
    Region region; // of the canvas; valid during the callback
};

constexpr const char* exposeCallback = "exposeCallback"; // the callback resource

extern const WidgetClass canvasWidgetClass;

} // namespace viewer
