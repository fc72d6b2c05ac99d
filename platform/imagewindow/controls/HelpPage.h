// SPDX-License-Identifier: MIT
// The page that tells what mouse and keys do in an image window.
#pragma once

#include <X11/Intrinsic.h>

namespace viewer {

// Shows the page of a window, given by its shell, or brings it to the front. It goes when the user closes it.
void showHelpPage(Widget shell);

} // namespace viewer
