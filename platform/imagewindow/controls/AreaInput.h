// SPDX-License-Identifier: MIT
// What mouse buttons and wheel do on the image and around it when no tool takes them: the wheel zooms and
// steps, dragging moves the image, button 3 posts the menu.
#pragma once

#include "platform/imagewindow/controls/Menus.h"

#include <X11/Intrinsic.h>

namespace viewer {

struct Desk;

class AreaInput {
public:
    // port: the visible part of the area around the canvas, which lives as long as this object. menus: with
    // its popup.
    AreaInput(Desk& desk, const Menus& menus, Widget port);
    ~AreaInput() { cancelMenu(); }
    AreaInput(const AreaInput&) = delete;
    AreaInput& operator=(const AreaInput&) = delete;

private:
    void handle(XEvent& event);
    void pressed(const XButtonEvent& press);
    void turnWheel(const XButtonEvent& event, int step);
    void postMenu(bool held);
    void cancelMenu();

    Desk& desk;
    const Menus& menus;
    Widget port;
    int dragX = 0, dragY = 0; // where the pointer was last while it drags the image
    XButtonEvent menuPress{};
    XtIntervalId menuTimer = 0; // runs from the press of the menu's button until the menu is posted
};

} // namespace viewer
