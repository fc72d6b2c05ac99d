// SPDX-License-Identifier: MIT
#include "widgets/KvTip.h"

#include "gauge/ClassParts.h"
#include "platform/text/MotifText.h"
#include "widgets/Scale.h"

#include <X11/IntrinsicP.h>
#include <X11/Shell.h>
#include <Xm/Label.h>
#include <Xm/VendorS.h>
#include <Xm/Xm.h>

#include <algorithm>
#include <map>
#include <memory>
#include <string>

// One tip at a time: the pointer is in one place. Texts are kept by widget and removed when their widget is
// destroyed.

namespace {

constexpr int usualDelay = 600; // milliseconds

std::map<Widget, std::string>& texts()
{
    static std::map<Widget, std::string> all;
    return all;
}

struct Shown {
    Widget owner = nullptr; // whose tip waits or shows
    Widget shell = nullptr; // while it shows
    XtIntervalId timer = 0; // while it waits
    int x = 0, y = 0;       // of the pointer on the screen
} shown;

void hide()
{
    if (shown.timer)
        XtRemoveTimeOut(shown.timer);
    if (shown.shell)
        XtDestroyWidget(shown.shell);
    shown = {};
}

struct TipLook {
    int delay; // milliseconds
    Pixel background, foreground;
};

// The names differ from those of other widgets, so that a program's "*background" does not colour its tips.
TipLook lookOf(Widget widget)
{
    TipLook look{};
    const auto colorRow = [](const char* name, const char* className, Cardinal offset, const char* color) {
        return XtResource{
            name, className, XmRPixel, sizeof(Pixel), offset, XmRString, const_cast<char*>(color)};
    };
    XtResource rows[] = {
        intRow(XmNkvTipDelay, "KvTipDelay", XtOffsetOf(TipLook, delay), usualDelay),
        colorRow(XmNkvTipBackground, "KvTipBackground", XtOffsetOf(TipLook, background), "#ffffe1"),
        colorRow(XmNkvTipForeground, "KvTipForeground", XtOffsetOf(TipLook, foreground), "#101010"),
    };
    XtGetApplicationResources(widget, &look, rows, XtNumber(rows), nullptr, 0);
    look.delay = std::max(look.delay, 0);
    return look;
}

Widget shellOf(Widget widget)
{
    while (!XtIsShell(widget))
        widget = XtParent(widget);
    return widget;
}

// Below and right of the pointer, above it where the screen ends below.
void place(Widget shell)
{
    const int offset = widgets::scaled(shell, 18);
    const int width = shell->core.width + 2 * shell->core.border_width;
    const int height = shell->core.height + 2 * shell->core.border_width;
    const int x = std::clamp(shown.x, 0, std::max(0, WidthOfScreen(XtScreen(shell)) - width));
    const bool below = shown.y + offset + height <= HeightOfScreen(XtScreen(shell));
    const int y = below ? shown.y + offset : std::max(0, shown.y - offset / 2 - height);
    XtMoveWidget(shell, static_cast<Position>(x), static_cast<Position>(y));
}

void show(XtPointer, XtIntervalId*)
{
    shown.timer = 0;
    const Widget parent = shellOf(shown.owner);
    shown.shell = XtVaCreatePopupShell("XmKvTip", overrideShellWidgetClass, parent, XmNallowShellResize, True,
                                       XmNborderWidth, widgets::scaled(parent, 1), nullptr);
    const text::MotifString text(texts()[shown.owner]);
    const int margin = widgets::scaled(parent, 3);
    const TipLook look = lookOf(shown.owner);
    XtVaCreateManagedWidget("kvTip", xmLabelWidgetClass, shown.shell, XmNlabelString, text.get(),
                            XmNalignment, XmALIGNMENT_BEGINNING, XmNmarginWidth, margin, XmNmarginHeight,
                            margin, XmNbackground, look.background, XmNforeground, look.foreground, nullptr);
    XtRealizeWidget(shown.shell);
    place(shown.shell);
    XtPopup(shown.shell, XtGrabNone);
}

void wait(Widget owner, const XCrossingEvent& at)
{
    hide();
    shown.owner = owner;
    shown.x = at.x_root;
    shown.y = at.y_root;
    shown.timer = XtAppAddTimeOut(XtWidgetToApplicationContext(owner),
                                  static_cast<unsigned long>(lookOf(owner).delay), show, nullptr);
}

// Each motion starts the wait again, so that the tip shows where the pointer has come to rest.
void follow(Widget widget, const XMotionEvent& at)
{
    if (shown.owner != widget || shown.shell)
        return;
    XCrossingEvent crossing{};
    crossing.x_root = at.x_root;
    crossing.y_root = at.y_root;
    wait(widget, crossing);
}

void notePointer(Widget widget, XtPointer, XEvent* event, Boolean*)
{
    switch (event->type) {
    case EnterNotify:
        if (event->xcrossing.mode == NotifyNormal)
            wait(widget, event->xcrossing);
        break;
    case MotionNotify:
        follow(widget, event->xmotion);
        break;
    case LeaveNotify:
        // A pointer that goes into a child is still inside; a child with a tip of its own replaces this one.
        if (shown.owner == widget && event->xcrossing.detail != NotifyInferior)
            hide();
        break;
    default: // a press or a key: the user has read enough
        if (shown.owner == widget)
            hide();
    }
}

constexpr EventMask eventMask =
    EnterWindowMask | LeaveWindowMask | PointerMotionMask | ButtonPressMask | KeyPressMask;

void forget(Widget widget, XtPointer, XtPointer)
{
    if (shown.owner == widget)
        hide();
    texts().erase(widget);
}

} // namespace

void XmKvTipSet(Widget widget, const char* text)
{
    if (texts().contains(widget)) {
        XtRemoveEventHandler(widget, eventMask, False, notePointer, nullptr);
        XtRemoveCallback(widget, XtNdestroyCallback, forget, nullptr);
        forget(widget, nullptr, nullptr);
    }
    if (!text || !*text)
        return;
    texts()[widget] = text;
    XtAddEventHandler(widget, eventMask, False, notePointer, nullptr);
    XtAddCallback(widget, XtNdestroyCallback, forget, nullptr);
}

const char* XmKvTipGet(Widget widget)
{
    const auto found = texts().find(widget);
    return found == texts().end() ? nullptr : found->second.c_str();
}
