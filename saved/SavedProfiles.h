// SPDX-License-Identifier: MIT
// The store of saved profiles: kept for the whole run in the order of saving, shown as the "Saved:" counter,
// emptied by "Clear" and by every write to a file. It owns its records.
#pragma once

#include "saved/SavedProfile.h"

#include <X11/Intrinsic.h>

extern SavedProfile** savedProfiles; // savedCount records; null while empty
extern int32_t savedCount;           // bound to the "Saved:" field

// The controls that follow the store's state. They belong to the shell, which sets them when it has made
// them.
struct SavedControls {
    Widget savedCountField, clearButton, writeButton;
};
extern SavedControls savedControls;

// Callbacks of "Save", "Clear" and "Write To File...". They use none of their arguments.
void saveCurrentProfile(Widget widget, XtPointer clientData, XtPointer callData);
void clearSavedProfiles(Widget widget, XtPointer clientData, XtPointer callData);
void writeSavedProfiles(Widget widget, XtPointer clientData, XtPointer callData);
