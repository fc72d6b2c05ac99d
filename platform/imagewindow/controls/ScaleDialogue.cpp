// SPDX-License-Identifier: MIT
#include "platform/imagewindow/controls/ScaleDialogue.h"

#include "platform/imagewindow/controls/Desk.h"
#include "platform/imagewindow/controls/LocalText.h"
#include "platform/imagewindow/controls/Tools.h"
#include "platform/imagewindow/controls/Widgets.h"
#include "platform/text/LocaleText.h"
#include "widgets/Scale.h"

#include <Xm/Form.h>
#include <Xm/Label.h>
#include <Xm/PushB.h>
#include <Xm/RowColumn.h>
#include <Xm/TextF.h>

#include <cmath>
#include <cstdio>
#include <optional>
#include <vector>

namespace viewer {

namespace {

constexpr int columns = 16;          // of a field
constexpr int maxTyped = 80;         // bytes
constexpr std::size_t hintLines = 2; // kept for a sentence about what was typed

// By Field; the widest of them gives the width of all.
constexpr std::array titles{"Pixel spacing in x", "in y", "in z, from section to section",
                            "or known length of the segment"};
constexpr std::array names{"x", "y", "z", "known"};
constexpr std::array hints{"", "empty: as in x", "empty: not known", ""};
constexpr const char* unitHint =
    "Lengths are in \u00b5m where no other unit is given: 107.5 nm, 0.2 mm, 0.01 inch.";

ScaleDialogue& dialogueOf(XtPointer client)
{
    return *static_cast<ScaleDialogue*>(client);
}

Widget makeText(Widget parent, const char* name, const std::string& text)
{
    const auto label = labelString(text);
    return XtVaCreateManagedWidget(name, xmLabelWidgetClass, parent, XmNlabelString, label.get(),
                                   XmNalignment, XmALIGNMENT_BEGINNING, nullptr);
}

} // namespace

ScaleDialogue::ScaleDialogue(Widget parent, Desk& desk) : desk(desk)
{
    dialogue = XmCreateFormDialog(parent, const_cast<char*>("scale"), nullptr, 0);
    const auto title = labelString("Scale of image window " + std::to_string(desk.shown.windowNumber));
    Widget column = XtVaCreateWidget("column", xmRowColumnWidgetClass, dialogue, XmNtopAttachment,
                                     XmATTACH_FORM, XmNleftAttachment, XmATTACH_FORM, XmNrightAttachment,
                                     XmATTACH_FORM, XmNbottomAttachment, XmATTACH_FORM, XmNmarginWidth,
                                     widgets::scaled(parent, 10), XmNmarginHeight, widgets::scaled(parent, 8),
                                     XmNspacing, widgets::scaled(parent, 6), nullptr);
    for (const Field field : {X, Y, Z, Known})
        fields[field] = addRow(column, field);
    makeText(column, "units", unitHint);
    message = makeText(column, "message", " ");
    XtVaSetValues(message, XmNrecomputeSize, False, XmNforeground,
                  allocateColor(message, textPalette[base::annotationColor]), XmNheight,
                  static_cast<int>(hintLines) * lineHeightOf(message) + widgets::scaled(message, 6), nullptr);
    XtAddCallback(
        fields[Known], XmNvalueChangedCallback,
        [](Widget, XtPointer client, XtPointer) { dialogueOf(client).takeKnownLength(); }, this);
    makeButtons(column);
    XtVaSetValues(dialogue, XmNdialogTitle, title.get(), XmNautoUnmanage, False, XmNnoResize, True,
                  XmNinitialFocus, fields[X], nullptr);
    XtManageChild(column);
}

ScaleDialogue::~ScaleDialogue()
{
    XtDestroyWidget(XtParent(dialogue));
}

// A title, the field, and what it means when it is empty. Return in the field sets the scale.
Widget ScaleDialogue::addRow(Widget column, Field field)
{
    Widget row = XtVaCreateManagedWidget("row", xmRowColumnWidgetClass, column, XmNorientation, XmHORIZONTAL,
                                         XmNspacing, widgets::scaled(column, 8), XmNmarginHeight, 0, nullptr);
    const auto index = static_cast<std::size_t>(field);
    Widget title = makeText(row, "title", titles[index]);
    XtVaSetValues(title, XmNrecomputeSize, False, XmNwidth,
                  measureOf(title)(titles[Known]) + widgets::scaled(title, 8), nullptr);
    Widget text = XtVaCreateManagedWidget(names[index], xmTextFieldWidgetClass, row, XmNcolumns, columns,
                                          XmNmaxLength, maxTyped, nullptr);
    XtAddCallback(
        text, XmNactivateCallback, [](Widget, XtPointer client, XtPointer) { dialogueOf(client).set(); },
        this);
    Widget hint = makeText(row, "hint", hints[index]);
    if (field == Known)
        segment = hint;
    return text;
}

void ScaleDialogue::makeButtons(Widget column)
{
    Widget buttons = XtVaCreateManagedWidget("buttons", xmRowColumnWidgetClass, column, XmNorientation,
                                             XmHORIZONTAL, XmNspacing, widgets::scaled(column, 8), nullptr);
    const auto addButton = [&](const char* text, XtCallbackProc pressed) {
        Widget button = XtVaCreateManagedWidget(text, xmPushButtonWidgetClass, buttons, XmNmarginWidth,
                                                widgets::scaled(buttons, 12), nullptr);
        XtAddCallback(button, XmNactivateCallback, pressed, this);
        return button;
    };
    addButton("Set", [](Widget, XtPointer client, XtPointer) { dialogueOf(client).set(); });
    removeButton =
        addButton("Remove", [](Widget, XtPointer client, XtPointer) { dialogueOf(client).remove(); });
    Widget close = addButton(
        "Close", [](Widget, XtPointer client, XtPointer) { XtUnmanageChild(dialogueOf(client).dialogue); });
    XtVaSetValues(dialogue, XmNcancelButton, close, nullptr);
}

void ScaleDialogue::fill(const UserScale& scale)
{
    const auto put = [&](Field field, const std::string& text) {
        XmTextFieldSetString(fields[field], const_cast<char*>(text::fromUtf8(text).c_str()));
    };
    put(X, lengthText(scale.x));
    put(Y, lengthText(scale.y));
    if (scale.z)
        put(Z, lengthText(*scale.z));
}

void ScaleDialogue::show()
{
    const Scale known = desk.shown.life.scale();
    XmTextFieldSetString(fields[Known], const_cast<char*>(""));
    if (const auto& set = desk.shown.life.chosen().set() ? desk.shown.life.chosen().set()
                                                         : desk.shown.life.chosen().former())
        fill(*set);
    else if (known.known)
        fill({known.spacing[0], known.spacing[1], {}});
    XtManageChild(dialogue);
    say(desk.shown.life.chosen().former()
            ? "This scale was set for an earlier version of the file. Set takes it again, Remove "
              "forgets it."
            : "");
    refresh();
    bringForward(dialogue);
}

void ScaleDialogue::refresh()
{
    if (!XtIsManaged(dialogue))
        return;
    const auto pixels = desk.overlays.lastLine();
    char text[64] = "draw one with a tool";
    if (pixels)
        std::snprintf(text, sizeof text, "of %.1f pixels", std::hypot((*pixels)[0], (*pixels)[1]));
    setLabel(segment, text);
    XtSetSensitive(fields[Known], pixels ? True : False);
    XtSetSensitive(removeButton,
                   desk.shown.life.chosen().set() || desk.shown.life.chosen().former() ? True : False);
    takeKnownLength();
}

// The pixels count as square.
void ScaleDialogue::takeKnownLength()
{
    const auto pixels = desk.overlays.lastLine();
    const TypedLength known = parseLength(text::fieldText(fields[Known]));
    if (!pixels || !known.microns)
        return;
    const double spacing = *known.microns / std::hypot((*pixels)[0], (*pixels)[1]);
    for (const Field field : {X, Y})
        XmTextFieldSetString(
            fields[field],
            const_cast<char*>(text::fromUtf8(lengthText(static_cast<float>(spacing))).c_str()));
}

bool ScaleDialogue::read(Field field, std::optional<float>& microns)
{
    const std::string typed = text::fieldText(fields[field]);
    if (typed.find_first_not_of(" \t") == std::string::npos)
        return true;
    const TypedLength length = parseLength(typed);
    if (!length.microns) {
        say(length.problem);
        XmProcessTraversal(fields[field], XmTRAVERSE_CURRENT);
        return false;
    }
    microns = length.microns;
    return true;
}

void ScaleDialogue::set()
{
    std::optional<float> x, y, z, known;
    if (!read(Known, known) || !read(X, x) || !read(Y, y) || !read(Z, z))
        return;
    if (!x) {
        say("Give the pixel spacing in x.");
        XmProcessTraversal(fields[X], XmTRAVERSE_CURRENT);
        return;
    }
    const bool toolsRun = !desk.tools.running().empty();
    const std::string problem = desk.actions.setScale({*x, y.value_or(*x), z}, toolsRun);
    say(problem);
    refresh();
    if (problem.empty())
        XtUnmanageChild(dialogue);
}

void ScaleDialogue::remove()
{
    say(desk.actions.removeScale(!desk.tools.running().empty()));
    for (Widget field : fields)
        XmTextFieldSetString(field, const_cast<char*>(""));
    refresh();
}

void ScaleDialogue::say(const std::string& sentence)
{
    Dimension width = 0;
    XtVaGetValues(message, XmNwidth, &width, nullptr);
    std::vector<std::string> lines = flow(wordsOf(sentence), " ", width, hintLines, measureOf(message));
    lines.resize(hintLines, " ");
    const auto text = labelString(lines);
    XtVaSetValues(message, XmNlabelString, text.get(), nullptr);
}

} // namespace viewer
