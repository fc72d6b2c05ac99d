// SPDX-License-Identifier: MIT
// How a window begins: what the command line asks for, as far as the image has it. Pure.
#pragma once

#include "platform/imagewindow/Options.h"
#include "platform/imagewindow/state/Memory.h"
#include "platform/imagewindow/state/Shown.h"

#include <optional>
#include <string>

namespace viewer {

// How the image was seen before, as far as that is kept; what still grows is not remembered.
std::optional<Memory> rememberedOf(const Shown& shown);

// Section, panels, wavelengths, colours and scale bar: as remembered, but what the options say goes before
// that. What the image does not have is told on standard error. Whether a zoom was remembered.
bool applyOptions(Shown& shown, const Options& options, const std::optional<Memory>& memory);

// Chooses the zoom, unless one was remembered and the options ask for no other, and returns the area that the
// window needs: room for the image at the zoom asked for, else at zoom 1, a small one larger, when the screen
// has it beside a tool's window, else for the image fitted.
Size chooseZoom(Shown& shown, const Options& options, Size screen, bool zoomRemembered);

// "640x480+20+30"
std::string geometryText(const base::Rectangle& place);

// The X geometry of the window: of the options, else as remembered and on the screen, else empty.
std::string geometryOf(const Options& options, const std::optional<Memory>& memory, Size screen);

} // namespace viewer
