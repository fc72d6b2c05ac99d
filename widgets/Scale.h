// SPDX-License-Identifier: MIT
// Sizes at the resolution of the screen. All fixed sizes in the set are in pixels of 96 dots per inch and go
// through here once.
#pragma once

#include <X11/Intrinsic.h>

#include <string>
#include <vector>

namespace widgets {

// Of the user's setting Xft.dpi, 1 at 96 dots per inch; limited to 0.5 .. 8.
double screenScale(Display* display);

// At least 1 where the size is not 0.
int scaled(Display* display, int pixels);
int scaled(Widget widget, int pixels);

// Resource lines that make the parts of Motif's own widgets follow the resolution: scroll bars, arrows,
// toggles, shadows, margins. For the program's fallback resources; at 96 dots per inch they are Motif's own.
std::vector<std::string> scaledResources(Display* display);

} // namespace widgets
