// SPDX-License-Identifier: MIT
#include "platform/imagewindow/controls/Typing.h"

#include <X11/Xutil.h>
#include <Xm/TextF.h>
#include <Xm/Xm.h>

namespace viewer {

namespace {

// The dispatcher is per process in Xt.
XtEventDispatchProc nextDispatcher = nullptr;

bool isCharacter(XKeyEvent& key)
{
    char text[8];
    const int count = XLookupString(&key, text, sizeof text, nullptr, nullptr);
    return count > 0 && static_cast<unsigned char>(text[0]) >= 32 && text[0] != 127 &&
           !(key.state & (ControlMask | Mod1Mask));
}

// Null where the keyboard is elsewhere, as in a menu.
Widget fieldWithKeyboard(Widget receiver)
{
    const Widget focus = receiver ? XmGetFocusWidget(receiver) : nullptr;
    return focus && XmIsTextField(focus) && XmTextFieldGetEditable(focus) ? focus : nullptr;
}

Boolean dispatchKey(XEvent* event)
{
    const Widget receiver = XtWindowToWidget(event->xkey.display, event->xkey.window);
    const Widget field = isCharacter(event->xkey) ? fieldWithKeyboard(receiver) : nullptr;
    if (!field || field == receiver)
        return nextDispatcher(event);
    event->xkey.window = XtWindow(field);
    if (XFilterEvent(event, XtWindow(field))) // an input method composes a character of several keys
        return True;
    return XtDispatchEventToWidget(field, event);
}

} // namespace

void giveTypedKeysToFields(Display* display)
{
    nextDispatcher = XtSetEventDispatcher(display, KeyPress, dispatchKey);
}

} // namespace viewer
