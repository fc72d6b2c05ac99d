// SPDX-License-Identifier: MIT
#include "platform/imagewindow/controls/ToolBar.h"

#include "platform/imagewindow/controls/Desk.h"
#include "platform/imagewindow/controls/Icons.h"
#include "platform/text/LocaleText.h"
#include "widgets/KvPushButton.h"
#include "widgets/KvTip.h"
#include "widgets/KvToolBar.h"
#include "widgets/Painter.h"
#include "widgets/PixmapOf.h"
#include "widgets/Scale.h"

#include <Xm/ToggleB.h>

#include <cmath>
#include <string>

namespace viewer {

namespace {

base::Rgb rgbOf(const widgets::Color& color)
{
    const auto level = [](double part) { return static_cast<std::uint8_t>(std::lround(part * 255)); };
    return {level(color.red), level(color.green), level(color.blue)};
}

bool isToggle(const Command& command)
{
    return command.kind != EntryKind::Push;
}

std::string tipOf(const Command& command)
{
    return command.tip + (*command.keys ? " (" + std::string(command.keys) + ")" : "");
}

} // namespace

ToolBar::ToolBar(Widget parent, Menus& menus, Desk& desk) : display(XtDisplay(parent))
{
    bar = XmCreateKvToolBar(parent, "commandBar", nullptr, 0);
    int group = 0;
    const Command* before = nullptr;
    for (const Command& command : commands()) {
        group += command.newGroup || (before && before->menu != command.menu);
        before = &command;
        if (*command.icon)
            menus.entries.push_back({&command, addButton(command, group, desk)});
    }
    XtManageChild(bar);
}

ToolBar::~ToolBar()
{
    for (const Pixmap pixmap : pixmaps)
        XFreePixmap(display, pixmap);
}

void ToolBar::show(bool shown)
{
    if (shown != (XtIsManaged(bar) != False))
        (shown ? XtManageChild : XtUnmanageChild)(bar);
}

Widget ToolBar::addButton(const Command& command, int group, Desk& desk)
{
    const std::string menuText = text::fromUtf8(command.label);
    Widget button = XtVaCreateManagedWidget(
        command.name, isToggle(command) ? xmToggleButtonWidgetClass : xmKvPushButtonWidgetClass, bar,
        XmNlabelType, XmPIXMAP, XmNtraversalOn, False, XmNhighlightThickness, 0, XmNuserData, &desk,
        XmNkvGroup, group, XmNkvMenuText, menuText.c_str(), nullptr);
    if (isToggle(command))
        XtVaSetValues(button, XmNindicatorOn, XmINDICATOR_NONE, XmNfillOnSelect, True, nullptr);
    setIcon(button, command);
    XmKvTipSet(button, text::fromUtf8(tipOf(command)).c_str());
    const auto pressed = [](Widget self, XtPointer client, XtPointer) {
        XtPointer data = nullptr;
        XtVaGetValues(self, XmNuserData, &data, nullptr);
        static_cast<const Command*>(client)->action(*static_cast<Desk*>(data));
    };
    XtAddCallback(button, isToggle(command) ? XmNvalueChangedCallback : XmNactivateCallback, pressed,
                  const_cast<Command*>(&command));
    return button;
}

void ToolBar::setIcon(Widget button, const Command& command)
{
    Pixel ground = 0;
    XtVaGetValues(button, XmNbackground, &ground, nullptr);
    const Pixmaps icons = makePixmaps(button, command.icon, ground);
    XtVaSetValues(button, XmNlabelPixmap, icons.usual, XmNlabelInsensitivePixmap, icons.faded, nullptr);
    if (!isToggle(command))
        return;
    XtVaGetValues(button, XmNselectColor, &ground, nullptr);
    const Pixmaps selected = makePixmaps(button, command.icon, ground);
    XtVaSetValues(button, XmNselectPixmap, selected.usual, XmNselectInsensitivePixmap, selected.faded,
                  nullptr);
}

ToolBar::Pixmaps ToolBar::makePixmaps(Widget button, const char* icon, Pixel ground)
{
    Pixel ink = 0;
    XtVaGetValues(button, XmNforeground, &ink, nullptr);
    const picture::Picture drawn =
        iconPicture(icon, rgbOf(widgets::colorOf(button, ink)), widgets::screenScale(XtDisplay(button)));
    Pixmaps made{};
    for (Pixmap* which : {&made.usual, &made.faded}) {
        *which = which == &made.usual ? widgets::pixmapOf(button, drawn, ground)
                                      : widgets::fadedPixmap(button, made.usual, ground);
        if (*which == None) // of another depth than the screen's
            *which = made.usual;
        else
            pixmaps.push_back(*which);
    }
    return made;
}

} // namespace viewer
