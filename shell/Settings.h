// SPDX-License-Identifier: MIT
// The two settings that persist in the user's configuration: FWHM display and intensity scaling.
#pragma once

#include <X11/Intrinsic.h>

// Reads both into the profile's settings; a key that is absent gives its default.
void readSettings();

// Callbacks of the controls, which have already changed the bound value: store it, save the configuration,
// redraw.
void fwhmToggled(Widget widget, XtPointer clientData, XtPointer callData);
void scalingChosen(Widget widget, XtPointer clientData, XtPointer callData);
