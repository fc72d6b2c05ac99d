// SPDX-License-Identifier: MIT
#include "platform/imagewindow/controls/HelpPage.h"

#include "platform/imagewindow/controls/Commands.h"
#include "platform/imagewindow/controls/LocalText.h"
#include "platform/imagewindow/controls/Widgets.h"
#include "widgets/Scale.h"

#include <Xm/Form.h>
#include <Xm/Label.h>
#include <Xm/PushB.h>
#include <Xm/RowColumn.h>

#include <algorithm>
#include <string>
#include <vector>

namespace viewer {

namespace {

constexpr const char* pageName = "helpPage";
constexpr int margin = 16, columnGap = 24, sectionGap = 10; // pixels at 96 dots per inch

Widget makeLines(Widget parent, const char* name, const std::string& text)
{
    const auto lines = labelString(text, LineFeeds::Kept);
    return XtVaCreateManagedWidget(name, xmLabelWidgetClass, parent, XmNlabelString, lines.get(),
                                   XmNalignment, XmALIGNMENT_BEGINNING, nullptr);
}

// Returns the left column, whose width all sections are to have in common.
Widget makeSection(Widget page, const InputSection& section)
{
    std::string inputs, meanings;
    for (const InputRow& row : section.rows) {
        inputs += (inputs.empty() ? "" : "\n") + row.input;
        meanings += (meanings.empty() ? "" : "\n") + row.meaning;
    }
    makeLines(page, "heading", section.title);
    Widget columns =
        XtVaCreateManagedWidget("columns", xmRowColumnWidgetClass, page, XmNorientation, XmHORIZONTAL,
                                XmNspacing, widgets::scaled(page, columnGap), XmNmarginWidth, 0, nullptr);
    Widget left = makeLines(columns, "inputs", inputs);
    makeLines(columns, "meanings", meanings);
    return left;
}

void alignColumns(const std::vector<Widget>& columns)
{
    Dimension widest = 0;
    for (Widget column : columns) {
        Dimension width = 0;
        XtVaGetValues(column, XmNwidth, &width, nullptr);
        widest = std::max(widest, width);
    }
    for (Widget column : columns)
        XtVaSetValues(column, XmNrecomputeSize, False, XmNwidth, widest, nullptr);
}

void fillPage(Widget page)
{
    std::vector<Widget> lefts;
    for (const InputSection& section : mouseAndKeys())
        lefts.push_back(makeSection(page, section));
    alignColumns(lefts);
    makeLines(page, "more", "The menus tell the keys, too. More: man imagewindow.");
}

Widget makePage(Widget shell)
{
    Widget dialogue = XmCreateFormDialog(shell, const_cast<char*>(pageName), nullptr, 0);
    const int edge = widgets::scaled(shell, margin);
    const auto title = labelString("Mouse and keys"), closeText = labelString("Close");
    Widget close =
        XtVaCreateManagedWidget("close", xmPushButtonWidgetClass, dialogue, XmNlabelString, closeText.get(),
                                XmNmarginWidth, edge, XmNbottomAttachment, XmATTACH_FORM, XmNbottomOffset,
                                edge, XmNrightAttachment, XmATTACH_FORM, XmNrightOffset, edge, nullptr);
    Widget page =
        XtVaCreateWidget("page", xmRowColumnWidgetClass, dialogue, XmNtopAttachment, XmATTACH_FORM,
                         XmNleftAttachment, XmATTACH_FORM, XmNrightAttachment, XmATTACH_FORM,
                         XmNbottomAttachment, XmATTACH_WIDGET, XmNbottomWidget, close, XmNmarginWidth, edge,
                         XmNmarginHeight, edge, XmNspacing, widgets::scaled(shell, sectionGap), nullptr);
    fillPage(page);
    XtManageChild(page);
    XtVaSetValues(dialogue, XmNdialogTitle, title.get(), XmNnoResize, True, XmNcancelButton, close,
                  XmNdefaultButton, close, nullptr);
    XtAddCallback(
        dialogue, XmNunmapCallback,
        [](Widget unmapped, XtPointer, XtPointer) { XtDestroyWidget(XtParent(unmapped)); }, nullptr);
    return dialogue;
}

} // namespace

void showHelpPage(Widget shell)
{
    Widget dialogue = XtNameToWidget(shell, (std::string("*") + pageName).c_str());
    if (!dialogue)
        dialogue = makePage(shell);
    bringForward(dialogue);
}

} // namespace viewer
