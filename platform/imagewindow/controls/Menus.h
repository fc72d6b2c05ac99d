// SPDX-License-Identifier: MIT
// The menu bar of an image window and the menu of button 3, made from the table of commands.
#pragma once

#include "platform/imagewindow/controls/Commands.h"

#include <X11/Intrinsic.h>

#include <vector>

namespace viewer {

struct Menus {
    struct Entry {
        const Command* command;
        Widget widget;
    };
    Widget bar = nullptr, popup = nullptr;
    std::vector<Entry> entries; // of both
};

void makeMenuBar(Menus& menus, Widget parent, Desk& desk);
// Never posted by the toolkit itself, or it would take the button from a tool.
void makePopupMenu(Menus& menus, Widget parent, Desk& desk);
// Posts it at the press; keyboard: the arrow keys begin at its first entry.
void postPopupMenu(const Menus& menus, XButtonEvent& press, bool keyboard);
// The entries follow the window: which can be chosen, which are on.
void showEntries(const Menus& menus, const Desk& desk);

} // namespace viewer
