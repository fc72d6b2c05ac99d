// SPDX-License-Identifier: MIT
#include "platform/imagewindow/controls/ContrastDialogue.h"

#include "platform/imagewindow/controls/Desk.h"
#include "platform/imagewindow/controls/LocalText.h"
#include "platform/imagewindow/controls/Widgets.h"
#include "platform/imagewindow/render/Contrast.h"
#include "platform/imagewindow/view/Placement.h"
#include "platform/imagewindow/view/Readout.h"
#include "platform/text/Utf8.h"

#include <Xm/Form.h>
#include <Xm/Label.h>
#include <Xm/PushB.h>
#include <Xm/RowColumn.h>
#include <Xm/Scale.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>
#include <utility>

namespace viewer {

namespace {

bool holdsIntegers(const image::ImageInfo& info)
{
    return info.pixelType != image::PixelType::Float32 && info.pixelType != image::PixelType::Float64;
}

// 0 to 0 when nothing is known.
ContrastLimits knownLimits(const image::ValueRange& range)
{
    return {range.min, range.max};
}

constexpr int steps = 1000; // of a scale
constexpr std::size_t nameLength = 16;
constexpr int scaleLines = 13; // length of a scale in heights of a line

// Texts that are as wide as the columns must be at least.
constexpr const char *widestName = "Wavelength name", *widestValues = "10000 to 65535",
                     *widestColor = "magenta of";
constexpr int colorFrame = 28; // screen pixels that the option menu has around its text and its mark

int positionOf(float value, const ContrastLimits& span)
{
    return std::clamp(static_cast<int>(std::lround((value - span.low) / (span.high - span.low) * steps)), 0,
                      steps);
}

float valueOf(int position, const ContrastLimits& span)
{
    return span.low + (span.high - span.low) * static_cast<float>(position) / steps;
}

Widget makeLine(Widget column)
{
    return XtVaCreateManagedWidget("line", xmRowColumnWidgetClass, column, XmNorientation, XmHORIZONTAL,
                                   XmNspacing, 8, XmNmarginHeight, 0, nullptr);
}

// As high as the row's other controls: the row gives all of them one height, and a scale that is lower
// would stand at the bottom of it.
Widget makeScale(Widget row, const char* name, int length, XtCallbackProc moved, XtPointer client)
{
    XtWidgetGeometry preferred{};
    XtQueryGeometry(row, nullptr, &preferred);
    Widget scale = XtVaCreateManagedWidget(name, xmScaleWidgetClass, row, XmNorientation, XmHORIZONTAL,
                                           XmNminimum, 0, XmNmaximum, steps, XmNscaleWidth, length,
                                           XmNscaleHeight, preferred.height, nullptr);
    XtAddCallback(scale, XmNvalueChangedCallback, moved, client);
    XtAddCallback(scale, XmNdragCallback, moved, client);
    return scale;
}

Widget makeLabel(Widget parent, const std::string& text, int width)
{
    const LabelText label(text);
    Widget widget = XtVaCreateManagedWidget("label", xmLabelWidgetClass, parent, XmNlabelString,
                                            static_cast<XmString>(label), XmNrecomputeSize, False,
                                            XmNalignment, XmALIGNMENT_BEGINNING, nullptr);
    XtVaSetValues(widget, XmNwidth, width, nullptr);
    return widget;
}

// As wide as the widest text, in the label's own font.
Widget makeLabel(Widget parent, const std::string& text, const char* widest)
{
    Widget label = makeLabel(parent, text, 1);
    XtVaSetValues(label, XmNwidth, measureOf(label)(widest), nullptr);
    return label;
}

// A label in which numbers stand grows rather than cutting one.
void setGrowingLabel(Widget label, const std::string& text)
{
    Dimension width = 0;
    XtVaGetValues(label, XmNwidth, &width, nullptr);
    const int needed = measureOf(label)(text);
    setLabel(label, text);
    if (needed + 4 > width)
        XtVaSetValues(label, XmNwidth, needed + 4, nullptr);
}

} // namespace

ContrastDialogue::ContrastDialogue(Widget parent, Desk& desk) : desk(desk)
{
    dialogue = XmCreateFormDialog(parent, const_cast<char*>("contrast"), nullptr, 0);
    const LabelText title("Contrast and colours of image window " + std::to_string(desk.shown.windowNumber));
    XtVaSetValues(dialogue, XmNdialogTitle, static_cast<XmString>(title), XmNnoResize, True, XmNautoUnmanage,
                  False, nullptr);
    column = XtVaCreateWidget("column", xmRowColumnWidgetClass, dialogue, XmNtopAttachment, XmATTACH_FORM,
                              XmNleftAttachment, XmATTACH_FORM, XmNrightAttachment, XmATTACH_FORM,
                              XmNbottomAttachment, XmATTACH_FORM, XmNmarginWidth, 10, XmNmarginHeight, 8,
                              XmNspacing, 6, nullptr);
    Widget heading = makeLine(column);
    makeLabel(heading, " ", widestName);
    Widget color = makeLabel(heading, "colour", 1);
    XtVaSetValues(color, XmNwidth, lineHeightOf(color) + measureOf(color)(widestColor) + colorFrame, nullptr);
    scaleWidth = scaleLines * lineHeightOf(color);
    makeLabel(heading, "black", scaleWidth);
    makeLabel(heading, "full brightness", scaleWidth);
    Widget buttons = XtVaCreateManagedWidget("buttons", xmRowColumnWidgetClass, column, XmNorientation,
                                             XmHORIZONTAL, XmNspacing, 8, nullptr);
    const auto addButton = [&](const char* text, XtCallbackProc pressed) {
        Widget button =
            XtVaCreateManagedWidget(text, xmPushButtonWidgetClass, buttons, XmNmarginWidth, 12, nullptr);
        XtAddCallback(button, XmNactivateCallback, pressed, this);
        return button;
    };
    addButton("Automatic contrast", [](Widget, XtPointer client, XtPointer) {
        static_cast<ContrastDialogue*>(client)->desk.actions.setAutomaticContrast();
    });
    Widget close = addButton("Close", [](Widget, XtPointer client, XtPointer) {
        XtUnmanageChild(static_cast<ContrastDialogue*>(client)->dialogue);
    });
    XtVaSetValues(dialogue, XmNcancelButton, close, nullptr);
    XtManageChild(column);
}

ContrastDialogue::~ContrastDialogue()
{
    XtDestroyWidget(XtParent(dialogue));
}

void ContrastDialogue::makeRows()
{
    if (lines) {
        XtUnmanageChild(lines);
        XtDestroyWidget(lines);
    }
    rows.clear();
    lines = XtVaCreateWidget("lines", xmRowColumnWidgetClass, column, XmNpositionIndex, 1, XmNmarginWidth, 0,
                             XmNmarginHeight, 0, XmNspacing, 4, nullptr);
    for (int wavelength : displayedWavelengths(desk.shown.view))
        addRow(wavelength);
    XtManageChild(lines);
}

void ContrastDialogue::addRow(int wavelength)
{
    const auto moved = [](Widget scale, XtPointer client, XtPointer call) {
        static_cast<ContrastDialogue*>(client)->scaleMoved(scale,
                                                           static_cast<XmScaleCallbackStruct*>(call)->value);
    };
    Widget line = makeLine(lines);
    Row row;
    row.wavelength = wavelength;
    makeLabel(line, text::shortened(wavelengthName(desk.shown.info(), wavelength), nameLength), widestName);
    addColorMenu(row, line);
    row.black = makeScale(line, "black", scaleWidth, moved, this);
    row.white = makeScale(line, "white", scaleWidth, moved, this);
    row.values = makeLabel(line, " ", widestValues);
    rows.push_back(row);
}

void ContrastDialogue::addColorMenu(Row& row, Widget line)
{
    const auto chosen = [](Widget button, XtPointer client, XtPointer) {
        static_cast<ContrastDialogue*>(client)->colorChosen(button);
    };
    row.swatch =
        XtVaCreateManagedWidget("swatch", xmLabelWidgetClass, line, XmNrecomputeSize, False, nullptr);
    setLabel(row.swatch, " ");
    XtVaSetValues(row.swatch, XmNwidth, lineHeightOf(row.swatch), nullptr);
    row.colors = XmCreatePulldownMenu(line, const_cast<char*>("colors"), nullptr, 0);
    for (std::size_t color = 0; color < base::displayColors.size(); ++color) {
        Widget button =
            XtVaCreateManagedWidget(base::displayColors[color].name, xmPushButtonWidgetClass, row.colors,
                                    XmNforeground, allocateColor(line, textPalette[color]), XmNuserData,
                                    reinterpret_cast<XtPointer>(color), nullptr);
        XtAddCallback(button, XmNactivateCallback, chosen, this);
    }
    row.color = XmCreateOptionMenu(line, const_cast<char*>("color"), nullptr, 0);
    XtVaSetValues(row.color, XmNsubMenuId, row.colors, XmNmarginWidth, 0, XmNmarginHeight, 0, nullptr);
    XtUnmanageChild(XmOptionLabelGadget(row.color));
    XtManageChild(row.color);
}

void ContrastDialogue::colorChosen(Widget button)
{
    XtPointer color = nullptr;
    XtVaGetValues(button, XmNuserData, &color, nullptr);
    for (const Row& row : rows)
        if (row.colors == XtParent(button))
            desk.actions.setColor(row.wavelength, static_cast<int>(reinterpret_cast<std::intptr_t>(color)));
}

void ContrastDialogue::showRow(Row& row)
{
    const ContrastLimits limits = desk.shown.renderer.limits(row.wavelength);
    if (limits.low < row.span.low || limits.high > row.span.high || row.span.low >= row.span.high)
        row.span = contrastSpan(limits, knownLimits(desk.shown.life.range(row.wavelength)));
    XmScaleSetValue(row.black, positionOf(limits.low, row.span));
    XmScaleSetValue(row.white, positionOf(limits.high, row.span));
    char text[64];
    std::snprintf(text, sizeof text, holdsIntegers(desk.shown.info()) ? "%.0f to %.0f" : "%.5g to %.5g",
                  static_cast<double>(limits.low), static_cast<double>(limits.high));
    setGrowingLabel(row.values, text);
    const auto color =
        static_cast<std::size_t>(desk.shown.view.colors[static_cast<std::size_t>(row.wavelength)]);
    XtVaSetValues(row.swatch, XmNbackground, allocateColor(row.swatch, palette[color]), nullptr);
    XtVaSetValues(row.color, XmNmenuHistory, XtNameToWidget(row.colors, base::displayColors[color].name),
                  nullptr);
}

void ContrastDialogue::show()
{
    makeRows();
    for (Row& row : rows)
        showRow(row);
    if (!std::exchange(placed, true))
        placeOnScreen();
    XtManageChild(dialogue);
    keepOnScreen();
    XMapRaised(XtDisplay(dialogue), XtWindow(XtParent(dialogue)));
}

void ContrastDialogue::placeOnScreen()
{
    Widget image = XtParent(XtParent(dialogue));
    XtWidgetGeometry own{};
    XtQueryGeometry(column, nullptr, &own); // all that is in the dialogue, which has no size of its own yet
    Dimension width = 0, height = 0;
    XtVaGetValues(image, XmNwidth, &width, XmNheight, &height, nullptr);
    Position left = 0, top = 0;
    XtTranslateCoords(image, 0, 0, &left, &top);
    const Place place = placeBeside({left, top}, {width, height}, {own.width, own.height}, screenSize());
    XtVaSetValues(dialogue, XmNdefaultPosition, False, XmNx, place.left, XmNy, place.top, nullptr);
}

void ContrastDialogue::refresh()
{
    if (!XtIsManaged(dialogue))
        return;
    const std::vector<int> displayed = displayedWavelengths(desk.shown.view);
    if (!std::equal(rows.begin(), rows.end(), displayed.begin(), displayed.end(),
                    [](const Row& row, int wavelength) { return row.wavelength == wavelength; }))
        makeRows();
    for (Row& row : rows)
        showRow(row);
    keepOnScreen();
}

// More rows, and longer numbers, make the dialogue larger where it stands.
void ContrastDialogue::keepOnScreen()
{
    Dimension width = 0, height = 0;
    XtVaGetValues(dialogue, XmNwidth, &width, XmNheight, &height, nullptr);
    const Size size{width, height}, before = std::exchange(keptSize, size);
    if (size.width <= before.width && size.height <= before.height)
        return;
    Position left = 0, top = 0;
    XtTranslateCoords(dialogue, 0, 0, &left, &top);
    const Place place = placeWithin({left, top}, size, screenSize());
    if (place != Place{left, top})
        XtVaSetValues(dialogue, XmNx, place.left, XmNy, place.top, nullptr);
}

Size ContrastDialogue::screenSize() const
{
    return {WidthOfScreen(XtScreen(dialogue)), HeightOfScreen(XtScreen(dialogue))};
}

// The two limits of a wavelength stay at least one step apart: the one that moves pushes the other.
void ContrastDialogue::scaleMoved(Widget scale, int position)
{
    const auto row = std::find_if(rows.begin(), rows.end(),
                                  [&](const Row& r) { return r.black == scale || r.white == scale; });
    if (row == rows.end())
        return;
    ContrastLimits limits = desk.shown.renderer.limits(row->wavelength);
    const float smallest = (row->span.high - row->span.low) / steps;
    const float step = holdsIntegers(desk.shown.info()) ? std::max(1.0F, smallest) : smallest;
    const float value = valueOf(position, row->span);
    const float wanted = holdsIntegers(desk.shown.info()) ? std::round(value) : value;
    if (scale == row->black) {
        limits.low = wanted;
        limits.high = std::max(limits.high, limits.low + step);
    } else {
        limits.high = wanted;
        limits.low = std::min(limits.low, limits.high - step);
    }
    desk.actions.setContrast(row->wavelength, limits);
    showRow(*row);
}

} // namespace viewer
