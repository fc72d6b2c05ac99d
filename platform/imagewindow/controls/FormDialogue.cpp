// SPDX-License-Identifier: MIT
#include "platform/imagewindow/controls/FormDialogue.h"

#include "platform/imagewindow/controls/LocalText.h"
#include "platform/imagewindow/controls/Widgets.h"
#include "widgets/KvAligner.h"
#include "widgets/Scale.h"

#include <Xm/Form.h>
#include <Xm/Label.h>
#include <Xm/PushB.h>
#include <Xm/RowColumn.h>
#include <Xm/TextF.h>
#include <Xm/ToggleB.h>

#include <algorithm>
#include <utility>

namespace viewer {

namespace {

constexpr int marginWidth = 10, marginHeight = 8, spacing = 8; // pixels of 96 dots per inch
constexpr int maxTyped = 40;                                   // bytes
constexpr std::size_t sentenceLines = 2;

Widget makeLabel(Widget parent, const char* name, const std::string& text)
{
    const auto label = labelString(text);
    return XtVaCreateManagedWidget(name, xmLabelWidgetClass, parent, XmNlabelString, label.get(),
                                   XmNalignment, XmALIGNMENT_BEGINNING, nullptr);
}

Widget makeRow(Widget parent, const char* name)
{
    return XtVaCreateManagedWidget(name, xmRowColumnWidgetClass, parent, XmNorientation, XmHORIZONTAL,
                                   XmNspacing, widgets::scaled(parent, spacing), XmNmarginWidth, 0,
                                   XmNmarginHeight, 0, nullptr);
}

} // namespace

FormDialogue::FormDialogue(Widget parent, const char* name, const std::string& title)
{
    const auto text = labelString(title);
    dialogue = XmCreateFormDialog(parent, const_cast<char*>(name), nullptr, 0);
    XtVaSetValues(dialogue, XmNdialogTitle, text.get(), XmNautoUnmanage, False, XmNnoResize, True, nullptr);
    column = XtVaCreateWidget(
        "column", xmRowColumnWidgetClass, dialogue, XmNtopAttachment, XmATTACH_FORM, XmNleftAttachment,
        XmATTACH_FORM, XmNrightAttachment, XmATTACH_FORM, XmNbottomAttachment, XmATTACH_FORM, XmNmarginWidth,
        widgets::scaled(parent, marginWidth), XmNmarginHeight, widgets::scaled(parent, marginHeight),
        XmNspacing, widgets::scaled(parent, spacing), nullptr);
    rows = XtVaCreateManagedWidget("rows", xmKvAlignerWidgetClass, column, XmNkvColumns, 3, XmNmarginWidth, 0,
                                   XmNmarginHeight, 0, nullptr);
}

FormDialogue::~FormDialogue()
{
    XtDestroyWidget(XtParent(dialogue));
}

void FormDialogue::call(Widget widget, const char* callback, Action action)
{
    actions.push_back(std::move(action));
    const auto run = [](Widget, XtPointer client, XtPointer) { (*static_cast<Action*>(client))(); };
    XtAddCallback(widget, callback, run, &actions.back());
}

FormDialogue::Choice FormDialogue::addChoice(const char* title, const std::vector<std::string>& items,
                                             Action changed)
{
    makeLabel(rows, "title", title);
    const Widget cell = makeRow(rows, "cell");
    XtVaSetValues(cell, XmNkvSpan, 2, XmNradioBehavior, True, XmNradioAlwaysOne, True, nullptr);
    Choice choice;
    for (const std::string& item : items) {
        const auto text = labelString(item);
        const Widget button =
            XtVaCreateManagedWidget("choice", xmToggleButtonWidgetClass, cell, XmNlabelString, text.get(),
                                    XmNindicatorType, XmONE_OF_MANY, nullptr);
        const auto chosen = [button, changed] {
            if (XmToggleButtonGetState(button))
                changed();
        };
        call(button, XmNvalueChangedCallback, chosen);
        choice.buttons.push_back(button);
    }
    return choice;
}

int FormDialogue::Choice::chosen() const
{
    const auto on = std::find_if(buttons.begin(), buttons.end(), XmToggleButtonGetState);
    return on == buttons.end() ? 0 : static_cast<int>(on - buttons.begin());
}

void FormDialogue::Choice::choose(int item)
{
    for (std::size_t i = 0; i < buttons.size(); ++i)
        XmToggleButtonSetState(buttons[i], static_cast<int>(i) == item ? True : False, False);
}

void FormDialogue::Choice::enable(int item, bool enabled)
{
    XtSetSensitive(buttons[static_cast<std::size_t>(item)], enabled ? True : False);
}

Widget FormDialogue::addField(const char* name, const char* title, const char* hint, int columns,
                              Action entered)
{
    makeLabel(rows, "title", title);
    const Widget field = XtVaCreateManagedWidget(name, xmTextFieldWidgetClass, rows, XmNcolumns, columns,
                                                 XmNmaxLength, maxTyped, nullptr);
    makeLabel(rows, "hint", hint);
    call(field, XmNactivateCallback, std::move(entered));
    if (!firstField)
        firstField = field;
    return field;
}

Widget FormDialogue::addText(const char* name, const std::string& text)
{
    const Widget label = makeLabel(column, name, text);
    XtVaSetValues(label, XmNrecomputeSize, False, nullptr);
    return label;
}

Widget FormDialogue::addButtons(const char* label, Action pressed)
{
    message = addText("message", " ");
    XtVaSetValues(message, XmNforeground, allocateColor(message, textPalette[base::annotationColor]),
                  XmNheight, static_cast<int>(sentenceLines) * lineHeightOf(message), nullptr);
    const Widget buttons = makeRow(column, "buttons");
    const auto addButton = [&](const char* text, Action action) {
        const Widget button = XtVaCreateManagedWidget(text, xmPushButtonWidgetClass, buttons, XmNmarginWidth,
                                                      widgets::scaled(buttons, 12), nullptr);
        call(button, XmNactivateCallback, std::move(action));
        return button;
    };
    const Widget first = addButton(label, std::move(pressed));
    const Widget close = addButton("Close", [this] { XtUnmanageChild(dialogue); });
    XtVaSetValues(dialogue, XmNcancelButton, close, nullptr);
    XtManageChild(column);
    return first;
}

void FormDialogue::show()
{
    XtManageChild(dialogue);
    bringForward(dialogue);
    if (firstField)
        XmProcessTraversal(firstField, XmTRAVERSE_CURRENT);
}

void FormDialogue::say(const std::string& sentence)
{
    Dimension width = 0;
    XtVaGetValues(message, XmNwidth, &width, nullptr);
    std::vector<std::string> lines = flow(wordsOf(sentence), " ", width, sentenceLines, measureOf(message));
    lines.resize(sentenceLines, " ");
    const auto text = labelString(lines);
    XtVaSetValues(message, XmNlabelString, text.get(), nullptr);
}

} // namespace viewer
