#include "platform/imagewindow/ContrastDialogue.h"

#include "platform/imagewindow/Contrast.h"
#include "platform/imagewindow/ImageWindow.h"
#include "platform/imagewindow/LocalText.h"
#include "platform/imagewindow/Readout.h"

#include <Xm/Form.h>
#include <Xm/Label.h>
#include <Xm/PushB.h>
#include <Xm/RowColumn.h>
#include <Xm/Scale.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace viewer {

namespace {

constexpr int steps = 1000;                      // of a scale
constexpr int nameWidth = 110, scaleWidth = 220; // screen pixels

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

Widget makeScale(Widget row, const char* name, XtCallbackProc moved, XtPointer client)
{
    Widget scale =
        XtVaCreateManagedWidget(name, xmScaleWidgetClass, row, XmNorientation, XmHORIZONTAL, XmNminimum, 0,
                                XmNmaximum, steps, XmNscaleWidth, scaleWidth, XmNscaleHeight, 15, nullptr);
    XtAddCallback(scale, XmNvalueChangedCallback, moved, client);
    XtAddCallback(scale, XmNdragCallback, moved, client);
    return scale;
}

Widget makeLabel(Widget parent, const std::string& text, int width)
{
    const LabelText label(text);
    return XtVaCreateManagedWidget("label", xmLabelWidgetClass, parent, XmNlabelString,
                                   static_cast<XmString>(label), XmNwidth, width, XmNrecomputeSize, False,
                                   XmNalignment, XmALIGNMENT_BEGINNING, nullptr);
}

} // namespace

ContrastDialogue::ContrastDialogue(Widget parent, ImageWindow& window) : window(window)
{
    dialogue = XmCreateFormDialog(parent, const_cast<char*>("contrast"), nullptr, 0);
    const LabelText title("Contrast of image window " + std::to_string(window.windowNumber()));
    XtVaSetValues(dialogue, XmNdialogTitle, static_cast<XmString>(title), XmNnoResize, True, XmNautoUnmanage,
                  False, nullptr);
    Widget column = XtVaCreateWidget("column", xmRowColumnWidgetClass, dialogue, XmNtopAttachment,
                                     XmATTACH_FORM, XmNleftAttachment, XmATTACH_FORM, XmNrightAttachment,
                                     XmATTACH_FORM, XmNbottomAttachment, XmATTACH_FORM, XmNmarginWidth, 10,
                                     XmNmarginHeight, 8, XmNspacing, 6, nullptr);
    Widget heading = makeLine(column);
    makeLabel(heading, " ", nameWidth);
    makeLabel(heading, "black", scaleWidth);
    makeLabel(heading, "full brightness", scaleWidth);
    for (int wavelength : displayedWavelengths(window.currentView()))
        addRow(column, wavelength);
    Widget buttons = XtVaCreateManagedWidget("buttons", xmRowColumnWidgetClass, column, XmNorientation,
                                             XmHORIZONTAL, XmNspacing, 8, nullptr);
    const auto addButton = [&](const char* text, XtCallbackProc pressed) {
        Widget button =
            XtVaCreateManagedWidget(text, xmPushButtonWidgetClass, buttons, XmNmarginWidth, 12, nullptr);
        XtAddCallback(button, XmNactivateCallback, pressed, this);
    };
    addButton("Automatic", [](Widget, XtPointer client, XtPointer) {
        static_cast<ContrastDialogue*>(client)->window.setAutomaticContrast();
    });
    addButton("Close", [](Widget, XtPointer client, XtPointer) {
        XtUnmanageChild(static_cast<ContrastDialogue*>(client)->dialogue);
    });
    XtManageChild(column);
    refresh();
    XtManageChild(dialogue);
}

ContrastDialogue::~ContrastDialogue()
{
    XtDestroyWidget(XtParent(dialogue));
}

void ContrastDialogue::addRow(Widget column, int wavelength)
{
    const auto moved = [](Widget scale, XtPointer client, XtPointer call) {
        static_cast<ContrastDialogue*>(client)->scaleMoved(scale,
                                                           static_cast<XmScaleCallbackStruct*>(call)->value);
    };
    Widget line = makeLine(column);
    Row row;
    row.wavelength = wavelength;
    row.span = contrastSpan(window.contrast(wavelength), window.knownRange(wavelength));
    makeLabel(line, shortened(wavelengthName(window.image().info(), wavelength), 16), nameWidth);
    row.black = makeScale(line, "black", moved, this);
    row.white = makeScale(line, "white", moved, this);
    row.values = makeLabel(line, " ", 150);
    rows.push_back(row);
}

void ContrastDialogue::showRow(const Row& row)
{
    const ContrastLimits limits = window.contrast(row.wavelength);
    XmScaleSetValue(row.black, positionOf(limits.low, row.span));
    XmScaleSetValue(row.white, positionOf(limits.high, row.span));
    char text[64];
    std::snprintf(text, sizeof text, "%.5g to %.5g", static_cast<double>(limits.low),
                  static_cast<double>(limits.high));
    const LabelText label(text);
    XtVaSetValues(row.values, XmNlabelString, static_cast<XmString>(label), nullptr);
}

void ContrastDialogue::refresh()
{
    for (const Row& row : rows)
        showRow(row);
}

// The two limits of a wavelength stay at least one step apart: the one that moves pushes the other.
void ContrastDialogue::scaleMoved(Widget scale, int position)
{
    const auto row = std::find_if(rows.begin(), rows.end(),
                                  [&](const Row& r) { return r.black == scale || r.white == scale; });
    if (row == rows.end())
        return;
    ContrastLimits limits = window.contrast(row->wavelength);
    const float step = (row->span.high - row->span.low) / steps;
    if (scale == row->black) {
        limits.low = valueOf(position, row->span);
        limits.high = std::max(limits.high, limits.low + step);
    } else {
        limits.high = valueOf(position, row->span);
        limits.low = std::min(limits.low, limits.high - step);
    }
    window.setContrast(row->wavelength, limits);
    showRow(*row);
}

} // namespace viewer
