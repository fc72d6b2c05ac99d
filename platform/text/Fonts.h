// SPDX-License-Identifier: MIT
// The fonts of all widgets, as resources.
#pragma once

#include <X11/Xlib.h>

#include <vector>

namespace text {

// Appends lines for XtAppSetFallbackResources: scalable fonts where the locale is UTF-8 and there are some,
// else the server's bitmap fonts. To be called after the locale has been set.
void appendFontResources(Display* display, std::vector<const char*>& lines);

} // namespace text
