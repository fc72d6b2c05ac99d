// SPDX-License-Identifier: MIT
// Letters and figures belong to the text field that has the keyboard. The menus take the keys of their
// accelerators by grabs on the window, so that a "1" that is typed into a field would zoom the image.
#pragma once

#include <X11/Intrinsic.h>

namespace viewer {

// For all windows of the display, once. What is no character (F1, Page Down) and what comes with Control
// stays the menus'.
void giveTypedKeysToFields(Display* display);

} // namespace viewer
