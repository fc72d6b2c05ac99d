// SPDX-License-Identifier: MIT
// The ways in which the tool ends, and its reaction to changes of the image window's display. The program
// exports ProcDisChange and EnterWindow (declared in WMEnh.h) under these names: a tool-window library may
// call them by name as well as through the pointers that it is given.
#pragma once

#include <X11/Intrinsic.h>

// Callback of "Done" and the suite's quit procedure: leaves the image window without the tool's graphics,
// gives back its input and exits with status 0. Never returns. Profiles that were saved but not written are
// lost.
void quitTool(Widget widget, XtPointer clientData, XtPointer callData);
