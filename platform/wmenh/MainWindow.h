// SPDX-License-Identifier: MIT
// The tool's main window: the application shell, the frame in it, and in the frame the form of rows and the
// message area below it. One per process.
#pragma once

#include "platform/wmenh/RowLayout.h"

#include <X11/Intrinsic.h>

namespace wmenh {

// Where controls are added now: the rows or, between its start and end, the message area. Ends the process
// with a line on standard error when there is no main window.
RowLayout& currentRows();

// The shell when the main window has been made, else null.
Widget mainShell();

// What the window manager's close button calls, with the shell and null data, instead of ending the main
// loop.
void setCloseProcedure(XtCallbackProc proc);

// Realises the main window without showing it, so that its size is known.
void realiseMainWindow();

} // namespace wmenh
