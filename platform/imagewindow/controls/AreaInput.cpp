// SPDX-License-Identifier: MIT
#include "platform/imagewindow/controls/AreaInput.h"

#include "platform/imagewindow/controls/Desk.h"
#include "platform/imagewindow/state/Reports.h"
#include "widgets/Scale.h"

#include <algorithm>
#include <cstdlib>

namespace viewer {

namespace {

constexpr int dragSlack = 4;                    // screen pixels that a click may move
constexpr unsigned long holdMilliseconds = 500; // a longer press is no click

} // namespace

AreaInput::AreaInput(Desk& desk, const Menus& menus, Widget port) : desk(desk), menus(menus), port(port)
{
    constexpr EventMask dragMask = Button2MotionMask | Button3MotionMask | ButtonReleaseMask;
    const auto portEvent = [](Widget, XtPointer client, XEvent* event, Boolean*) {
        static_cast<AreaInput*>(client)->handle(*event);
    };
    XtAddEventHandler(port, ButtonPressMask | Button1MotionMask | dragMask, False, portEvent, this);
    // Grabs the other buttons: a tool that takes the presses on the canvas gets button 1 alone.
    for (int button : {Button2, Button3, Button4, Button5})
        XtGrabButton(port, button, AnyModifier, False, ButtonPressMask | dragMask, GrabModeAsync,
                     GrabModeAsync, None, None);
}

void AreaInput::handle(XEvent& event)
{
    if (event.type == ButtonPress)
        return pressed(event.xbutton);
    if (event.type == ButtonRelease && event.xbutton.button == Button3)
        return postMenu(false);
    if (event.type != MotionNotify)
        return;
    if (event.xmotion.state & Button3Mask) {
        if (std::max(std::abs(event.xmotion.x - menuPress.x), std::abs(event.xmotion.y - menuPress.y)) >
            dragSlack)
            postMenu(true);
        return;
    }
    if (navigator)
        return dragNavigator(event.xmotion.x, event.xmotion.y);
    desk.actions.panBy(dragX - event.xmotion.x, dragY - event.xmotion.y);
    dragX = event.xmotion.x;
    dragY = event.xmotion.y;
}

void AreaInput::pressed(const XButtonEvent& press)
{
    if (press.button == Button4 || press.button == Button5) {
        turnWheel(press, press.button == Button4 ? 1 : -1);
    } else if (press.button == Button3) {
        const auto held = [](XtPointer client, XtIntervalId*) {
            static_cast<AreaInput*>(client)->postMenu(true);
        };
        menuPress = press;
        cancelMenu();
        menuTimer = XtAppAddTimeOut(XtWidgetToApplicationContext(port), holdMilliseconds, held, this);
    } else if (!takesNavigator(press)) {
        dragX = press.x;
        dragY = press.y;
    }
}

// A press beside the mark brings it there. Where a tool has button 1 its presses do not come here, and button
// 2 does this.
bool AreaInput::takesNavigator(const XButtonEvent& press)
{
    const Arrangement& now = desk.shown.arrangement;
    const auto place = navigatorNow(desk.shown, widgets::screenScale(press.display));
    const int x = press.x - now.left, y = press.y - now.top;
    navigator.reset();
    if (!place || !place->holds(x, y))
        return false;
    const Navigator::Part& mark = place->visible;
    const bool onMark = x >= mark.x && x < mark.x + mark.width && y >= mark.y && y < mark.y + mark.height;
    navigator = onMark ? Held{mark.x + mark.width / 2 - x, mark.y + mark.height / 2 - y} : Held{0, 0};
    dragNavigator(press.x, press.y);
    return true;
}

void AreaInput::dragNavigator(int x, int y)
{
    const Arrangement& now = desk.shown.arrangement;
    if (const auto place = navigatorNow(desk.shown, widgets::screenScale(XtDisplay(port))))
        desk.actions.centreOn(place->dataX(x - now.left + navigator->x),
                              place->dataY(y - now.top + navigator->y));
}

// The toolkit takes a menu down with the release that ends its press. So the menu of a click comes with the
// release and waits for a second click; once the pointer has moved or the button has been held, it comes
// while the button is down, and the release chooses.
void AreaInput::postMenu(bool held)
{
    if (!menuTimer)
        return;
    cancelMenu();
    postPopupMenu(menus, menuPress, !held);
}

void AreaInput::cancelMenu()
{
    if (menuTimer)
        XtRemoveTimeOut(menuTimer);
    menuTimer = 0;
}

void AreaInput::turnWheel(const XButtonEvent& event, int step)
{
    if (event.state & ShiftMask)
        return desk.actions.stepZ(step);
    if (event.state & ControlMask)
        return desk.actions.stepTime(step);
    desk.actions.zoomStepsAt(step, event.x, event.y);
}

} // namespace viewer
