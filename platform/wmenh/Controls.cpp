// SPDX-License-Identifier: MIT
// The controls that can stand in a row, except the buttons.
#include "platform/include/WMEnh.h"
#include "platform/text/LocaleText.h"
#include "platform/wmenh/FieldRegistry.h"
#include "platform/wmenh/Keyboard.h"
#include "platform/wmenh/MainWindow.h"
#include "platform/wmenh/Toolkit.h"
#include "widgets/KvTip.h"

#include <Xm/DrawingA.h>
#include <Xm/Label.h>
#include <Xm/PushB.h>
#include <Xm/RowColumn.h>
#include <Xm/TextF.h>
#include <Xm/ToggleB.h>

#include <algorithm>
#include <charconv>
#include <climits>
#include <string>
#include <vector>

using namespace wmenh;

namespace {

Widget addLabel(const char* label)
{
    const MotifString text(text::fromMixed(label));
    const Widget control = XtVaCreateWidget("label", xmLabelWidgetClass, currentRows().parent(),
                                            XmNlabelString, text.get(), nullptr);
    currentRows().add(control);
    return control;
}

void itemChosen(Widget item, XtPointer data, XtPointer callData)
{
    Field& field = *static_cast<Field*>(data);
    XtVaSetValues(field.control, XmNmenuHistory, item, nullptr);
    fieldChanged(item, data, callData);
}

// The items of an option menu's pulldown, in order.
std::vector<Widget> menuItems(Widget pulldown)
{
    WidgetList children = nullptr;
    Cardinal count = 0;
    XtVaGetValues(pulldown, XmNchildren, &children, XmNnumChildren, &count, nullptr);
    return {children, children + count};
}

void showText(Widget control, const char* text)
{
    const std::string local = text::fromMixed(text);
    XmTextFieldSetString(control, const_cast<char*>(local.c_str()));
}

// An integer field's limits and its step: read from the program's ints at each use. They count only when they
// are different ints, min below max.
struct IntLimits {
    int* minimum;
    int* maximum;
    int* step;
    int increment;

    int clamp(int value) const
    {
        const bool given = minimum && maximum && minimum != maximum && *minimum < *maximum;
        return given ? std::clamp(value, *minimum, *maximum) : value;
    }
    int stepSize() const
    {
        return step && step != minimum && step != maximum && *step > 0 ? *step : increment;
    }
};

struct IntField {
    Widget control;
    int* value;
    int columns;
    IntLimits limits;

    // A number is never cut: the field grows with it.
    void show() const { write(*value); }
    void write(int number) const
    {
        const std::string digits = std::to_string(number);
        XtVaSetValues(control, XmNcolumns, std::max<int>(columns, static_cast<int>(digits.size())), nullptr);
        XmTextFieldSetString(control, const_cast<char*>(digits.c_str()));
    }
    // Takes what the user typed; anything but a number puts the present value back.
    bool take() const
    {
        const std::string text = text::fieldText(control);
        const char* const end = text.data() + text.size();
        const int before = *value;
        int typed = 0;
        const auto [stop, error] = std::from_chars(text.data(), end, typed);
        if (error == std::errc() && stop == end)
            *value = limits.clamp(typed);
        show();
        return *value != before;
    }
    void step(int direction) const
    {
        const long long next = *value + static_cast<long long>(direction) * limits.stepSize();
        write(limits.clamp(static_cast<int>(std::clamp<long long>(next, INT_MIN, INT_MAX))));
    }
};

// An insertion cursor where nothing can be typed is clutter.
void showCursor(Widget control, XtPointer, XtPointer)
{
    XtVaSetValues(control, XmNcursorPositionVisible, XmTextFieldGetEditable(control), nullptr);
}

void hideCursor(Widget control, XtPointer, XtPointer)
{
    XtVaSetValues(control, XmNcursorPositionVisible, False, nullptr);
}

void stepKey(Widget control, XtPointer data, XEvent* event, Boolean*)
{
    const KeySym key = XLookupKeysym(&event->xkey, 0);
    if (!XmTextFieldGetEditable(control) || (key != XK_Up && key != XK_Down))
        return;
    static_cast<Field*>(data)->step(key == XK_Up ? 1 : -1);
    fieldChanged(control, data, nullptr);
}

} // namespace

Widget WMAddInfoButton(const char* label, int)
{
    return addLabel(label);
}

Widget WMAddOptionMenu(const WMMenuItem* items, int count, int* value, XtCallbackProc changed,
                       XtPointer clientData, int, int)
{
    const Widget form = currentRows().parent(), before = currentRows().last();
    const Widget pulldown = XmCreatePulldownMenu(form, const_cast<char*>("choices"), nullptr, 0);
    for (int i = 0; i < count; ++i) {
        const MotifString text(text::fromMixed(items[i].label));
        XtVaCreateManagedWidget("choice", xmPushButtonWidgetClass, pulldown, XmNlabelString, text.get(),
                                nullptr);
    }
    Arg args[] = {{const_cast<char*>(XmNsubMenuId), reinterpret_cast<XtArgVal>(pulldown)},
                  {const_cast<char*>(XmNmarginWidth), 0},
                  {const_cast<char*>(XmNmarginHeight), 0}};
    const Widget menu = XmCreateOptionMenu(form, const_cast<char*>("menu"), args, XtNumber(args));
    XtUnmanageChild(XmOptionLabelGadget(menu));
    if (before && XtClass(before) == xmLabelWidgetClass)
        offerMnemonic(before, XmOptionButtonGadget(menu), MnemonicRank::Label);

    Field field{.control = menu, .changed = changed, .clientData = clientData};
    field.show = [menu, pulldown, value] {
        const auto choices = menuItems(pulldown);
        if (*value >= 0 && *value < static_cast<int>(choices.size()))
            XtVaSetValues(menu, XmNmenuHistory, choices[static_cast<size_t>(*value)], nullptr);
    };
    field.take = [menu, pulldown, value] {
        Widget chosen = nullptr;
        XtVaGetValues(menu, XmNmenuHistory, &chosen, nullptr);
        const auto choices = menuItems(pulldown);
        *value = static_cast<int>(std::find(choices.begin(), choices.end(), chosen) - choices.begin());
        return true;
    };
    Field& bound = bindField(std::move(field));
    for (const Widget choice : menuItems(pulldown))
        XtAddCallback(choice, XmNactivateCallback, itemChosen, &bound);
    bound.show();
    currentRows().add(menu);
    return menu;
}

Widget WMAddToggleButton(const char* label, int* value, XtCallbackProc changed, XtPointer clientData, int,
                         int)
{
    const MotifString text(text::fromMixed(label));
    const Widget toggle =
        XtVaCreateWidget("toggle", xmToggleButtonWidgetClass, currentRows().parent(), XmNlabelString,
                         text.get(), XmNnavigationType, XmTAB_GROUP, nullptr);
    offerMnemonic(toggle, toggle, MnemonicRank::Toggle);
    Field field{.control = toggle, .changed = changed, .clientData = clientData};
    field.show = [toggle, value] { XmToggleButtonSetState(toggle, *value ? True : False, False); };
    field.take = [toggle, value] {
        *value = XmToggleButtonGetState(toggle) ? 1 : 0;
        return true;
    };
    Field& bound = bindField(std::move(field));
    XtAddCallback(toggle, XmNvalueChangedCallback, fieldChanged, &bound);
    bound.show();
    currentRows().add(toggle);
    return toggle;
}

Widget WMAddText(char* buffer, int columns, XtCallbackProc changed)
{
    const Widget text =
        XtVaCreateWidget("text", xmTextFieldWidgetClass, currentRows().parent(), XmNcolumns, columns,
                         XmNeditable, False, XmNcursorPositionVisible, False, XmNtraversalOn, False, nullptr);
    Field field{.control = text, .changed = changed};
    field.show = [text, buffer] { showText(text, buffer); };
    bindField(std::move(field)).show();
    currentRows().add(text);
    return text;
}

// NOLINTNEXTLINE(readability-function-size): WMEnh.h has that many parameters
Widget WMAddIntField(int* value, int increment, int columns, int maxLength, int* minimum, int* maximum,
                     int* step, XtCallbackProc changed, XtPointer clientData, int, int)
{
    const Widget text =
        XtVaCreateWidget("number", xmTextFieldWidgetClass, currentRows().parent(), XmNcolumns, columns,
                         XmNmaxLength, maxLength, XmNcursorPositionVisible, False, nullptr);
    const IntField number{text, value, columns, {minimum, maximum, step, increment}};
    Field field{.control = text, .changed = changed, .clientData = clientData};
    field.show = [number] { number.show(); };
    field.take = [number] { return number.take(); };
    field.step = [number](int direction) { number.step(direction); };
    Field& bound = bindField(std::move(field));
    XtAddCallback(text, XmNfocusCallback, showCursor, nullptr);
    XtAddCallback(text, XmNlosingFocusCallback, hideCursor, nullptr);
    XtAddCallback(text, XmNactivateCallback, fieldChanged, &bound);
    XtAddCallback(text, XmNlosingFocusCallback, fieldChanged, &bound);
    XtAddEventHandler(text, KeyPressMask, False, stepKey, &bound);
    bound.show();
    currentRows().add(text);
    return text;
}

Widget WMAddCustom(const char* name, WidgetClass widgetClass, ArgList args, Cardinal count)
{
    const Widget widget = XtCreateWidget(name, widgetClass, currentRows().parent(), args, count);
    currentRows().add(widget, RowLayout::Kind::Canvas);
    return widget;
}

Widget WMAddDrawingArea(int width, int height)
{
    const Widget area =
        XtVaCreateWidget("canvas", xmDrawingAreaWidgetClass, currentRows().parent(), XmNwidth, width,
                         XmNheight, height, XmNmarginWidth, 0, XmNmarginHeight, 0, nullptr);
    addToTraversal(area);
    currentRows().add(area, RowLayout::Kind::Canvas);
    return area;
}

void WMAddToolTip(const char* text)
{
    const Widget last = currentRows().last();
    if (!last)
        return;
    XmKvTipSet(last, text::fromMixed(text).c_str());
}

void WMDisableField(Widget control)
{
    if (control)
        XtSetSensitive(control, False);
}

void WMEnableField(Widget control)
{
    if (control)
        XtSetSensitive(control, True);
}

void WMUpdateField(Widget control)
{
    if (const Field* const field = findField(control))
        field->show();
}
