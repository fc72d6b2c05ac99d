// SPDX-License-Identifier: MIT
// What mouse buttons and wheel do on the image and around it when no tool takes them: the wheel zooms and
// steps, dragging moves the image, also in the overview, button 3 posts the menu.
#pragma once

#include "platform/imagewindow/controls/Menus.h"

#include <X11/Intrinsic.h>

#include <optional>

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
    bool takesNavigator(const XButtonEvent& press);
    void dragNavigator(int x, int y);
    void turnWheel(const XButtonEvent& event, int step);
    void postMenu(bool held);
    void cancelMenu();

    Desk& desk;
    const Menus& menus;
    Widget port;
    int dragX = 0, dragY = 0; // where the pointer was last while it drags the image
    struct Held {
        double x, y; // of the middle of its mark from the pointer, canvas pixels
    };
    std::optional<Held> navigator; // the pointer drags the overview's mark
    XButtonEvent menuPress{};
    XtIntervalId menuTimer = 0; // runs from the press of the menu's button until the menu is posted
};

} // namespace viewer
