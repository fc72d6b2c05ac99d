// SPDX-License-Identifier: MIT
#include "platform/imagewindow/controls/ScaleBarDialogue.h"

#include "platform/imagewindow/controls/Desk.h"
#include "platform/imagewindow/controls/LocalText.h"
#include "platform/imagewindow/controls/Widgets.h"
#include "platform/imagewindow/files/Scale.h"
#include "platform/imagewindow/paint/ScaleBar.h"
#include "platform/text/LocaleText.h"
#include "widgets/KvComboBox.h"
#include "widgets/Scale.h"

#include <Xm/ComboBox.h>
#include <Xm/Form.h>
#include <Xm/Label.h>
#include <Xm/PushB.h>
#include <Xm/RowColumn.h>
#include <Xm/TextF.h>

#include <algorithm>
#include <vector>

namespace viewer {

namespace {

constexpr int columns = 16;          // of the field
constexpr int maxTyped = 80;         // bytes
constexpr std::size_t hintLines = 2; // kept for a sentence about what was typed

constexpr const char* noScale =
    "The image has no scale, so that no bar is shown: View, Set scale... sets one.";
constexpr const char* noRoom =
    "A bar of that length does not fit here: where it does not, it has the automatic length.";

ScaleBarDialogue& dialogueOf(XtPointer client)
{
    return *static_cast<ScaleBarDialogue*>(client);
}

std::string cornerItems()
{
    std::string items;
    for (const char* name : barCornerNames)
        items += (items.empty() ? "" : "|") + std::string(name);
    return items;
}

std::string colorItems()
{
    std::string items;
    for (const base::DisplayColor& color : barColors)
        items += (items.empty() ? "" : "|") + std::string(color.name);
    return items;
}

Widget makeText(Widget parent, const char* name, const char* text)
{
    Widget label = XtVaCreateManagedWidget(name, xmLabelWidgetClass, parent, XmNalignment,
                                           XmALIGNMENT_BEGINNING, nullptr);
    setLabel(label, text);
    return label;
}

// A title, as wide as the widest, and what follows it.
Widget makeRow(Widget column, const char* title)
{
    Widget row = XtVaCreateManagedWidget("row", xmRowColumnWidgetClass, column, XmNorientation, XmHORIZONTAL,
                                         XmNspacing, widgets::scaled(column, 8), XmNmarginHeight, 0, nullptr);
    Widget label = makeText(row, "title", title);
    XtVaSetValues(label, XmNrecomputeSize, False, XmNwidth,
                  measureOf(label)("Length") + widgets::scaled(label, 8), nullptr);
    return row;
}

int selectedIn(Widget choice)
{
    int position = 0;
    XtVaGetValues(choice, XmNselectedPosition, &position, nullptr);
    return std::max(0, position);
}

} // namespace

ScaleBarDialogue::ScaleBarDialogue(Widget parent, Desk& desk) : desk(desk)
{
    dialogue = XmCreateFormDialog(parent, const_cast<char*>("scaleBar"), nullptr, 0);
    const auto title = labelString("Scale bar of image window " + std::to_string(desk.shown.windowNumber));
    Widget column = XtVaCreateWidget("column", xmRowColumnWidgetClass, dialogue, XmNtopAttachment,
                                     XmATTACH_FORM, XmNleftAttachment, XmATTACH_FORM, XmNrightAttachment,
                                     XmATTACH_FORM, XmNbottomAttachment, XmATTACH_FORM, XmNmarginWidth,
                                     widgets::scaled(parent, 10), XmNmarginHeight, widgets::scaled(parent, 8),
                                     XmNspacing, widgets::scaled(parent, 6), nullptr);
    makeRows(column);
    message = makeText(column, "message", " ");
    XtVaSetValues(message, XmNrecomputeSize, False, XmNforeground,
                  allocateColor(message, textPalette[base::annotationColor]), XmNheight,
                  static_cast<int>(hintLines) * lineHeightOf(message) + widgets::scaled(message, 6), nullptr);
    makeClose(column);
    XtVaSetValues(dialogue, XmNdialogTitle, title.get(), XmNautoUnmanage, False, XmNnoResize, True,
                  XmNinitialFocus, length, nullptr);
    XtManageChild(column);
}

ScaleBarDialogue::~ScaleBarDialogue()
{
    XtDestroyWidget(XtParent(dialogue));
}

void ScaleBarDialogue::makeRows(Widget column)
{
    const auto ended = [](Widget, XtPointer client, XtPointer) { dialogueOf(client).typed(); };
    Widget row = makeRow(column, "Length");
    length = XtVaCreateManagedWidget("length", xmTextFieldWidgetClass, row, XmNcolumns, columns, XmNmaxLength,
                                     maxTyped, nullptr);
    makeText(row, "hint", "such as 20 \u00b5m or 0.5 mm; empty: automatic");
    XtAddCallback(length, XmNactivateCallback, ended, this);
    XtAddCallback(length, XmNlosingFocusCallback, ended, this);
    corner = makeChoice(makeRow(column, "Corner"), "corner", cornerItems());
    color = makeChoice(makeRow(column, "Colour"), "color", colorItems());
}

Widget ScaleBarDialogue::makeChoice(Widget row, const char* name, const std::string& items)
{
    const int count = static_cast<int>(std::count(items.begin(), items.end(), '|')) + 1;
    Widget choice = XtVaCreateManagedWidget(name, xmKvComboBoxWidgetClass, row, XmNkvItems, items.c_str(),
                                            XmNvisibleItemCount, count, XmNcolumns, columns - 4, nullptr);
    XtAddCallback(
        choice, XmNselectionCallback,
        [](Widget, XtPointer client, XtPointer) { dialogueOf(client).chosen(); }, this);
    return choice;
}

void ScaleBarDialogue::makeClose(Widget column)
{
    Widget buttons = XtVaCreateManagedWidget("buttons", xmRowColumnWidgetClass, column, XmNorientation,
                                             XmHORIZONTAL, nullptr);
    Widget close = XtVaCreateManagedWidget("Close", xmPushButtonWidgetClass, buttons, XmNmarginWidth,
                                           widgets::scaled(buttons, 12), nullptr);
    XtAddCallback(
        close, XmNactivateCallback,
        [](Widget, XtPointer client, XtPointer) { XtUnmanageChild(dialogueOf(client).dialogue); }, this);
    XtVaSetValues(dialogue, XmNcancelButton, close, nullptr);
}

void ScaleBarDialogue::show()
{
    fill();
    XtManageChild(dialogue);
    say(desk.shown.life.scale().known ? "" : noScale);
    bringForward(dialogue);
}

void ScaleBarDialogue::fill()
{
    const BarStyle& style = desk.shown.barStyle;
    filled = text::fromUtf8(style.microns > 0 ? lengthText(static_cast<float>(style.microns)) : "");
    XmTextFieldSetString(length, const_cast<char*>(filled.c_str()));
    XtVaSetValues(corner, XmNselectedPosition, static_cast<int>(style.corner), nullptr);
    XtVaSetValues(color, XmNselectedPosition, static_cast<int>(style.color), nullptr);
}

void ScaleBarDialogue::typed()
{
    const std::string text = text::fieldText(length);
    if (text::fromUtf8(text) == filled)
        return;
    BarStyle style = desk.shown.barStyle;
    style.microns = 0;
    if (text.find_first_not_of(" \t") != std::string::npos) {
        const TypedLength typed = parseLength(text);
        if (!typed.microns)
            return say(typed.problem);
        style.microns = *typed.microns;
    }
    take(style);
}

void ScaleBarDialogue::chosen()
{
    BarStyle style = desk.shown.barStyle;
    style.corner = static_cast<BarCorner>(selectedIn(corner));
    style.color = static_cast<std::size_t>(selectedIn(color));
    if (style != desk.shown.barStyle)
        take(style);
}

void ScaleBarDialogue::take(const BarStyle& style)
{
    desk.actions.setBarStyle(style);
    fill();
    const bool fits = barFits(style, desk.shown.life.scale().spacing[0], desk.shown.arrangement.geometry,
                              widgets::screenScale(XtDisplay(dialogue)));
    say(!desk.shown.life.scale().known ? noScale : fits ? "" : noRoom);
}

void ScaleBarDialogue::say(const std::string& sentence)
{
    Dimension width = 0;
    XtVaGetValues(message, XmNwidth, &width, nullptr);
    std::vector<std::string> lines = flow(wordsOf(sentence), " ", width, hintLines, measureOf(message));
    lines.resize(hintLines, " ");
    const auto text = labelString(lines);
    XtVaSetValues(message, XmNlabelString, text.get(), nullptr);
}

} // namespace viewer
