// SPDX-License-Identifier: MIT
// The controls that are bound to a program's variables: how each shows its variable and whom it tells of a
// change. An entry lives as long as its widget; the variables belong to the program.
#pragma once

#include <X11/Intrinsic.h>

#include <functional>

namespace wmenh {

struct Field {
    Widget control = nullptr;
    std::function<void()> show = [] {}; // variable to widget
    std::function<bool()> take = [] {
        return true;
    };                                          // widget to variable; false when there is nothing to tell
    std::function<void(int)> step = [](int) {}; // up (1) and down (-1) key
    XtCallbackProc changed = nullptr;
    XtPointer clientData = nullptr;
};

// Registers field under its control; the reference holds until the control is destroyed.
Field& bindField(Field field);

// Null when control is bound to nothing.
Field* findField(Widget control);

// Callback of a control's own change: takes the value over, then calls the program. client data: the Field.
void fieldChanged(Widget, XtPointer field, XtPointer callData);

} // namespace wmenh
