// SPDX-License-Identifier: MIT
#include "platform/imagewindow/controls/EmptyWindow.h"

#include "platform/imagewindow/controls/LocalText.h"
#include "platform/imagewindow/controls/OpenDialogue.h"
#include "platform/imagewindow/files/RecentFiles.h"
#include "platform/text/LocaleText.h"
#include "widgets/KvPushButton.h"
#include "widgets/KvTip.h"
#include "widgets/Scale.h"

#include <Xm/CascadeB.h>
#include <Xm/Form.h>
#include <Xm/Label.h>
#include <Xm/Protocols.h>
#include <Xm/PushB.h>
#include <Xm/RowColumn.h>
#include <Xm/Separator.h>

#include <filesystem>
#include <utility>
#include <vector>

namespace viewer {

namespace {

constexpr int margin = 40, spacing = 10; // pixels at 96 dots per inch

Widget makeLabel(Widget parent, const char* name, const std::string& text, unsigned char alignment)
{
    const auto label = labelString(text);
    return XtVaCreateManagedWidget(name, xmLabelWidgetClass, parent, XmNlabelString, label.get(),
                                   XmNalignment, alignment, nullptr);
}

void makeSpace(Widget page, unsigned char line)
{
    XtVaCreateManagedWidget("separator", xmSeparatorWidgetClass, page, XmNseparatorType, line, XmNheight,
                            widgets::scaled(page, 2 * spacing), nullptr);
}

} // namespace

EmptyWindow::EmptyWindow(Display* display, const std::string& geometry, Services given)
    : services(std::move(given))
{
    shell = XtVaAppCreateShell("imagewindow", "ImageWindow", applicationShellWidgetClass, display,
                               XmNdeleteResponse, XmDO_NOTHING, XmNtitle, "Open images", XmNiconName,
                               "Open images", nullptr);
    if (!geometry.empty())
        XtVaSetValues(shell, XmNgeometry, geometry.c_str(), nullptr);
    const auto close = [](Widget, XtPointer self, XtPointer) {
        static_cast<EmptyWindow*>(self)->services.close();
    };
    XmAddWMProtocolCallback(shell, XInternAtom(display, "WM_DELETE_WINDOW", False), close, this);
    Widget form = XtVaCreateWidget("emptyPage", xmFormWidgetClass, shell, nullptr);
    makeMenu(form);
    makePage(form);
    XtManageChild(form);
    XtRealizeWidget(shell);
    intake.emplace(Entrance{shell, services.open});
}

EmptyWindow::~EmptyWindow()
{
    intake.reset();
    XtDestroyWidget(shell);
}

void EmptyWindow::makeMenu(Widget form)
{
    bar = XmCreateMenuBar(form, const_cast<char*>("menuBar"), nullptr, 0);
    XtVaSetValues(bar, XmNtopAttachment, XmATTACH_FORM, XmNleftAttachment, XmATTACH_FORM, XmNrightAttachment,
                  XmATTACH_FORM, nullptr);
    Widget menu = XmCreatePulldownMenu(bar, const_cast<char*>("File"), nullptr, 0);
    addEntry(menu, "open", "Open...", "Ctrl+O", "Ctrl<Key>o", [](EmptyWindow& self) { self.choose(); });
    addEntry(menu, "paste", "Paste path", "Ctrl+V", "Ctrl<Key>v",
             [](EmptyWindow& self) { self.intake->paste(); });
    addEntry(menu, "close", "Close", "Ctrl+W", "Ctrl<Key>w",
             [](EmptyWindow& self) { self.services.close(); });
    addEntry(menu, "quit", "Quit", "Ctrl+Q", "Ctrl<Key>q", [](EmptyWindow& self) { self.services.close(); });
    const auto title = labelString("File");
    XtVaCreateManagedWidget("File", xmCascadeButtonWidgetClass, bar, XmNlabelString, title.get(), XmNmnemonic,
                            KeySym{'F'}, XmNsubMenuId, menu, nullptr);
    XtManageChild(bar);
}

void EmptyWindow::addEntry(Widget menu, const char* name, const char* label, const char* keys,
                           const char* accelerator, Action action)
{
    const auto text = labelString(label), keyText = labelString(keys);
    Widget item =
        XtVaCreateManagedWidget(name, xmPushButtonWidgetClass, menu, XmNlabelString, text.get(), XmNmnemonic,
                                static_cast<KeySym>(*label), XmNaccelerator, accelerator, XmNacceleratorText,
                                keyText.get(), XmNuserData, this, nullptr);
    const auto chosen = [](Widget self, XtPointer action, XtPointer) {
        XtPointer window = nullptr;
        XtVaGetValues(self, XmNuserData, &window, nullptr);
        reinterpret_cast<Action>(action)(*static_cast<EmptyWindow*>(window));
    };
    XtAddCallback(item, XmNactivateCallback, chosen, reinterpret_cast<XtPointer>(action));
}

void EmptyWindow::makePage(Widget form)
{
    Widget page =
        XtVaCreateManagedWidget("page", xmRowColumnWidgetClass, form, XmNtopAttachment, XmATTACH_WIDGET,
                                XmNtopWidget, bar, XmNleftAttachment, XmATTACH_FORM, XmNrightAttachment,
                                XmATTACH_FORM, XmNbottomAttachment, XmATTACH_FORM, XmNmarginWidth,
                                widgets::scaled(form, margin), XmNmarginHeight, widgets::scaled(form, margin),
                                XmNspacing, widgets::scaled(form, spacing), XmNisAligned, False, nullptr);
    makeLabel(page, "heading", "Drop image files here", XmALIGNMENT_CENTER);
    makeLabel(page, "hint",
              "or paste the path of one with Ctrl+V, or choose from the files:", XmALIGNMENT_CENTER);
    Widget line = XtVaCreateManagedWidget("line", xmFormWidgetClass, page, XmNfractionBase, 3, nullptr);
    const auto label = labelString("Open...");
    Widget button =
        XtVaCreateManagedWidget("open", xmPushButtonWidgetClass, line, XmNlabelString, label.get(),
                                XmNleftAttachment, XmATTACH_POSITION, XmNleftPosition, 1, XmNrightAttachment,
                                XmATTACH_POSITION, XmNrightPosition, 2, nullptr);
    const auto pressed = [](Widget, XtPointer self, XtPointer) { static_cast<EmptyWindow*>(self)->choose(); };
    XtAddCallback(button, XmNactivateCallback, pressed, this);
    addRecent(page);
}

void EmptyWindow::addRecent(Widget page)
{
    const std::vector<std::filesystem::path> files = recentFiles();
    if (files.empty())
        return;
    makeSpace(page, XmSHADOW_ETCHED_IN);
    makeLabel(page, "recentHeading", "Opened last", XmALIGNMENT_BEGINNING);
    for (const std::filesystem::path& path : files) {
        const auto label = labelString(shownPath(path));
        Widget button = XtVaCreateManagedWidget("recent", xmKvPushButtonWidgetClass, page, XmNlabelType,
                                                XmSTRING, XmNlabelString, label.get(), XmNalignment,
                                                XmALIGNMENT_BEGINNING, XmNuserData, this, nullptr);
        if (shownPath(path) != path.string())
            XmKvTipSet(button, text::fromUtf8(path.string()).c_str());
        const auto chosen = [](Widget self, XtPointer path, XtPointer) {
            XtPointer window = nullptr;
            XtVaGetValues(self, XmNuserData, &window, nullptr);
            openAll({XtParent(XtParent(XtParent(self))), static_cast<EmptyWindow*>(window)->services.open},
                    {static_cast<const char*>(path)});
        };
        const auto forget = [](Widget, XtPointer path, XtPointer) { XtFree(static_cast<char*>(path)); };
        char* const copy = XtNewString(path.c_str());
        XtAddCallback(button, XmNactivateCallback, chosen, copy);
        XtAddCallback(button, XmNdestroyCallback, forget, copy);
    }
}

void EmptyWindow::choose()
{
    const std::vector<std::filesystem::path> files = recentFiles();
    chooseFiles({shell, services.open}, files.empty() ? "" : files.front().parent_path());
}

} // namespace viewer
