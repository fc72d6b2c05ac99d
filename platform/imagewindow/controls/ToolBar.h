// SPDX-License-Identifier: MIT
// The tool bar above the image: the commands that have an icon, in the order of the table and parted as in
// the menus. Its buttons stand among the entries of the menus and follow the window with them.
#pragma once

#include "platform/imagewindow/controls/Menus.h"

#include <X11/Intrinsic.h>

#include <vector>

namespace viewer {

struct Desk;

class ToolBar {
public:
    ToolBar(Widget parent, Menus& menus, Desk& desk);
    ~ToolBar(); // its pixmaps; the widgets go with their parent
    ToolBar(const ToolBar&) = delete;
    ToolBar& operator=(const ToolBar&) = delete;

    Widget widget() const { return bar; }
    void show(bool shown);

private:
    Widget addButton(const Command& command, int group, Desk& desk);
    void setIcon(Widget button, const Command& command);
    // Of the icon on that ground, and the same faded.
    struct Pixmaps {
        Pixmap usual, faded;
    };
    Pixmaps makePixmaps(Widget button, const char* icon, Pixel ground);

    Display* display;
    Widget bar = nullptr;
    std::vector<Pixmap> pixmaps;
};

} // namespace viewer
