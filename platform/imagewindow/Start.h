// SPDX-License-Identifier: MIT
// How a window begins: what the command line asks for, as far as the image has it. Pure.
#pragma once

#include "platform/imagewindow/Options.h"
#include "platform/imagewindow/state/Shown.h"

namespace viewer {

// Section, panels, wavelengths, colours and scale bar. What the image does not have is told on standard
// error.
void applyOptions(Shown& shown, const Options& options);

// Chooses the zoom and returns the area that the window needs: room for the image at the zoom asked for, else
// at zoom 1, a small one larger, when the screen has it beside a tool's window, else for the image fitted.
Size chooseZoom(const image::ImageInfo& info, View& view, const Options& options, Size screen);

} // namespace viewer
