// SPDX-License-Identifier: MIT
#include "platform/imagewindow/controls/Menus.h"

#include "platform/imagewindow/controls/Desk.h"
#include "platform/imagewindow/controls/LocalText.h"
#include "platform/imagewindow/controls/Tools.h"
#include "platform/text/Utf8.h"

#include <Xm/CascadeB.h>
#include <Xm/PushB.h>
#include <Xm/RowColumn.h>
#include <Xm/Separator.h>
#include <Xm/ToggleB.h>

#include <algorithm>
#include <span>
#include <string>

namespace viewer {

namespace {

Desk& deskOf(Widget item)
{
    XtPointer desk = nullptr;
    XtVaGetValues(item, XmNuserData, &desk, nullptr);
    return *static_cast<Desk*>(desk);
}

void entryChosen(Widget item, XtPointer client, XtPointer)
{
    static_cast<const Command*>(client)->action(deskOf(item));
}

std::span<Widget> entriesOf(Widget menu)
{
    WidgetList children = nullptr;
    Cardinal count = 0;
    XtVaGetValues(menu, XmNchildren, &children, XmNnumChildren, &count, nullptr);
    return {children, count};
}

void removeEntries(Widget menu)
{
    const std::span<Widget> entries = entriesOf(menu);
    for (Widget child : std::vector<Widget>(entries.begin(), entries.end())) {
        XtUnmanageChild(child);
        XtDestroyWidget(child);
    }
}

void itemChosen(Widget item, XtPointer client, XtPointer)
{
    const auto index = static_cast<std::size_t>(std::stoul(XtName(item)));
    static_cast<const Command*>(client)->itemAction(deskOf(item), index);
}

// The name of an item is its number.
void listItems(Widget menu, XtPointer client, XtPointer)
{
    const auto& command = *static_cast<const Command*>(client);
    Desk& desk = deskOf(menu);
    removeEntries(menu);
    const std::vector<std::string> items = command.items(desk);
    for (std::size_t i = 0; i < std::max<std::size_t>(1, items.size()); ++i) {
        const auto label = labelString(items.empty() ? "none" : items[i]);
        Widget item =
            XtVaCreateManagedWidget(std::to_string(i).c_str(), xmPushButtonWidgetClass, menu, XmNlabelString,
                                    label.get(), XmNuserData, &desk, XmNsensitive, !items.empty(), nullptr);
        XtAddCallback(item, XmNactivateCallback, itemChosen, client);
    }
}

Widget makeList(Widget menu, const Command& command, Desk& desk)
{
    Widget list = XmCreatePulldownMenu(menu, const_cast<char*>(command.name), nullptr, 0);
    XtVaSetValues(list, XmNuserData, &desk, nullptr);
    const auto label = labelString(command.label);
    Widget cascade = XtVaCreateManagedWidget(command.name, xmCascadeButtonWidgetClass, menu, XmNlabelString,
                                             label.get(), XmNmnemonic, static_cast<KeySym>(command.mnemonic),
                                             XmNsubMenuId, list, nullptr);
    XtAddCallback(list, XmNmapCallback, listItems, const_cast<Command*>(&command));
    listItems(list, const_cast<Command*>(&command), nullptr); // a menu without entries does not open
    return cascade;
}

Widget makeEntry(Widget menu, const Command& command, Desk& desk)
{
    if (command.kind == EntryKind::List)
        return makeList(menu, command, desk);
    const bool toggle = command.kind != EntryKind::Push;
    const auto label = labelString(command.label);
    Widget item = XtVaCreateManagedWidget(
        command.name, toggle ? xmToggleButtonWidgetClass : xmPushButtonWidgetClass, menu, XmNlabelString,
        label.get(), XmNmnemonic, static_cast<KeySym>(command.mnemonic), XmNuserData, &desk, nullptr);
    if (toggle)
        XtVaSetValues(item, XmNindicatorType, command.kind == EntryKind::Switch ? XmN_OF_MANY : XmONE_OF_MANY,
                      XmNvisibleWhenOff, True, nullptr);
    XtAddCallback(item, toggle ? XmNvalueChangedCallback : XmNactivateCallback, entryChosen,
                  const_cast<Command*>(&command));
    return item;
}

void addSeparator(Widget menu)
{
    XtVaCreateManagedWidget("separator", xmSeparatorWidgetClass, menu, nullptr);
}

Widget addMenu(Menus& menus, Menu which, Desk& desk)
{
    const char* title = titleOf(which);
    Widget menu = XmCreatePulldownMenu(menus.bar, const_cast<char*>(title), nullptr, 0);
    for (const Command& command : commands()) {
        if (command.menu != which)
            continue;
        if (command.newGroup)
            addSeparator(menu);
        Widget item = makeEntry(menu, command, desk);
        const auto keys = labelString(command.keys);
        if (*command.accelerator)
            XtVaSetValues(item, XmNaccelerator, command.accelerator, XmNacceleratorText, keys.get(), nullptr);
        menus.entries.push_back({&command, item});
    }
    const auto text = labelString(title);
    Widget cascade =
        XtVaCreateManagedWidget(title, xmCascadeButtonWidgetClass, menus.bar, XmNlabelString, text.get(),
                                XmNmnemonic, static_cast<KeySym>(*title), XmNsubMenuId, menu, nullptr);
    if (which == Menu::Help)
        XtVaSetValues(menus.bar, XmNmenuHelpWidget, cascade, nullptr);
    return menu;
}

void endTool(Widget item, XtPointer client, XtPointer)
{
    protocol::requestQuit(XtDisplay(item), reinterpret_cast<Window>(client));
}

constexpr const char* toolItemName = "runningTool";

void removeToolItems(Widget menu)
{
    const std::span<Widget> entries = entriesOf(menu);
    const std::vector<Widget> present(entries.begin(), entries.end());
    for (Widget child : present)
        if (std::string(XtName(child)) == toolItemName) {
            XtUnmanageChild(child);
            XtDestroyWidget(child);
        }
}

// The tools that run now are listed each time the menu opens.
void listTools(Widget menu, XtPointer client, XtPointer)
{
    removeToolItems(menu);
    const auto tools = static_cast<Desk*>(client)->tools.running();
    if (!tools.empty())
        XtVaCreateManagedWidget(toolItemName, xmSeparatorWidgetClass, menu, nullptr);
    for (const protocol::ToolEntry& tool : tools) {
        const auto label = labelString("End \"" + text::shortened(tool.title, 40) + "\"");
        Widget item = XtVaCreateManagedWidget(toolItemName, xmPushButtonWidgetClass, menu, XmNlabelString,
                                              label.get(), nullptr);
        XtAddCallback(item, XmNactivateCallback, endTool, reinterpret_cast<XtPointer>(tool.shell));
    }
}

// Moves to the next entry (parameter 1) or the previous one (-1), around the ends. The toolkit's own actions
// do so only in a menu that it has posted itself.
void stepEntry(Widget entry, XEvent*, String* parameters, Cardinal* count)
{
    const std::span<Widget> entries = entriesOf(XtParent(entry));
    const int number = static_cast<int>(entries.size());
    const int step = *count == 1 && *parameters[0] == '-' ? -1 : 1;
    const int from = static_cast<int>(std::find(entries.begin(), entries.end(), entry) - entries.begin());
    int place = from;
    do
        place = (place + step + number) % number;
    while (place != from && (XmIsSeparator(entries[static_cast<std::size_t>(place)]) ||
                             !XtIsSensitive(entries[static_cast<std::size_t>(place)])));
    XmProcessTraversal(entries[static_cast<std::size_t>(place)], XmTRAVERSE_CURRENT);
}

void stepWithArrows(Widget menu)
{
    static XtActionsRec actions[] = {{"stepEntry", stepEntry}};
    XtAppAddActions(XtWidgetToApplicationContext(menu), actions, XtNumber(actions));
    const XtTranslations keys =
        XtParseTranslationTable("<Key>osfDown: stepEntry(1)\n<Key>osfUp: stepEntry(-1)");
    for (Widget entry : entriesOf(menu))
        XtOverrideTranslations(entry, keys);
}

} // namespace

void makeMenuBar(Menus& menus, Widget parent, Desk& desk)
{
    menus.bar = XmCreateMenuBar(parent, const_cast<char*>("menuBar"), nullptr, 0);
    for (const Menu menu : {Menu::File, Menu::View, Menu::Stack, Menu::Tools, Menu::Window, Menu::Help}) {
        Widget made = addMenu(menus, menu, desk);
        if (menu == Menu::Tools)
            XtAddCallback(made, XmNmapCallback, listTools, &desk);
    }
    XtManageChild(menus.bar);
}

// A separator stands where commands of several groups meet.
void makePopupMenu(Menus& menus, Widget parent, Desk& desk)
{
    Arg disabled{const_cast<char*>(XmNpopupEnabled), XmPOPUP_DISABLED};
    menus.popup = XmCreatePopupMenu(parent, const_cast<char*>("popup"), &disabled, 1);
    bool newGroup = false;
    const Command* before = nullptr;
    for (const Command& command : commands()) {
        newGroup |= command.newGroup || (before && before->menu != command.menu);
        if (!command.inPopup)
            continue;
        if (before && newGroup)
            addSeparator(menus.popup);
        newGroup = false;
        before = &command;
        menus.entries.push_back({&command, makeEntry(menus.popup, command, desk)});
    }
    stepWithArrows(menus.popup);
}

void postPopupMenu(const Menus& menus, XButtonEvent& press, bool keyboard)
{
    XmMenuPosition(menus.popup, &press);
    XtManageChild(menus.popup);
    const std::span<Widget> entries = entriesOf(menus.popup);
    const auto first = std::find_if(entries.begin(), entries.end(), XtIsSensitive);
    if (keyboard && first != entries.end())
        XmProcessTraversal(*first, XmTRAVERSE_CURRENT);
}

void showEntries(const Menus& menus, const Desk& desk)
{
    for (const Menus::Entry& entry : menus.entries) {
        XtSetSensitive(entry.widget, isEnabled(*entry.command, desk) ? True : False);
        if (entry.command->on)
            XmToggleButtonSetState(entry.widget, entry.command->on(desk) ? True : False, False);
    }
}

} // namespace viewer
