// SPDX-License-Identifier: MIT
// What every dialogue of the library shares: where it stands, how the window manager's close button ends it,
// and the event loop of a modal one.
#pragma once

#include <Xm/Xm.h>

#include <string>

namespace wmenh {

// Parent of a dialogue: the application shell.
Widget dialogueParent();

enum class Place {
    OnMainWindow, // over its middle
    Beside,       // beside it, for what is read while the main window is used
};

// Gives a dialogue (child of its XmDialogShell, not yet managed) its title and its place: as told, or in the
// middle of the screen when there is no main window to be seen or WMSetCenterOnScreen asked for it (which is
// used up by this). closed is called with clientData when the window manager's close button is pressed.
void prepareDialogue(Widget dialogue, const char* title, XtCallbackProc closed, XtPointer clientData,
                     Place place = Place::OnMainWindow);

// Destroys a dialogue with its shell.
void destroyDialogue(Widget dialogue);

} // namespace wmenh
