// SPDX-License-Identifier: MIT
#include "shell/ToolWindow.h"

#include "gauge/XrtGauge.h"
#include "profile/Plot.h"
#include "profile/Profile.h"
#include "saved/SavedProfiles.h"
#include "segment/Handlers.h"
#include "shell/Message.h"
#include "shell/Settings.h"
#include "shell/Shutdown.h"

#include <WMEnh.h>
#include <Xm/DrawingA.h>
#include <Xm/Form.h>

#include <algorithm>
#include <bit>

// Module state.
ToolWindow toolWindow;

namespace {

// Large fonts make them larger.
constexpr Dimension leastIntensityGaugeWidth = 60, leastDistanceGaugeHeight = 24;

const WMMenuItem scalingItems[] = {{"Autoscale"}, {"Constant Min/Max"}};

// Pointer motion with a button held, button and key presses and releases all reach the input callback.
const char plotTranslations[] = "<BtnMotion>: DrawingAreaInput() \n"
                                "<BtnDown>: DrawingAreaInput() \n"
                                "<BtnUp>: DrawingAreaInput() \n"
                                "<KeyDown>: DrawingAreaInput() \n"
                                "<KeyUp>: DrawingAreaInput() \n";

XtArgVal doubleValue(double value)
{
    return std::bit_cast<XtArgVal>(value);
}

void addSettingsRow()
{
    WMAddInfoButton("Intensity Scaling", 0);
    WMAddOptionMenu(scalingItems, XtNumber(scalingItems), &settings.scaleMode, scalingChosen, nullptr, 0, 0);
    WMSetOffset(10, 0, 0, 0);
    WMAddToggleButton("Show Peak FWHM", &settings.showFwhm, fwhmToggled, nullptr, 0, 0);
    WMAddToolTip("Show the Full-Width Half-Max of the\nlargest peak in the view (microns)");
    WMSetOffset(0, 0, 0, 0);
}

// Gives a gauge the room that the labels of its font need.
void fitToLabels(Widget gauge)
{
    XtWidgetGeometry wish;
    XtQueryGeometry(gauge, nullptr, &wish);
    if (wish.request_mode & CWWidth)
        XtVaSetValues(gauge, XmNwidth, std::max(wish.width, leastIntensityGaugeWidth), nullptr);
    if (wish.request_mode & CWHeight)
        XtVaSetValues(gauge, XmNheight, std::max(wish.height, leastDistanceGaugeHeight), nullptr);
}

void addIntensityGauge()
{
    ToolWindow& w = toolWindow;
    w.intensityGauge = WMAddCustom("tick_gauge", xmXrtGaLinearGaugeWidgetClass, nullptr, 0);
    XtVaSetValues(w.intensityGauge, XmNwidth, leastIntensityGaugeWidth, XmNheight, plot.plotHeight,
                  XmNresizable, 1, nullptr);
    w.intensityScale = XtVaCreateWidget("tick_scale", xmXrtGaLinearScaleObjectClass, w.intensityGauge,
                                        XmNxrtGaMax, doubleValue(0.0), XmNxrtGaMin, doubleValue(0.0),
                                        XmNxrtGaOrientation, 1, XmNxrtGaDirection, 0, nullptr);
    w.intensityTicks = XtVaCreateWidget(
        "tick", xmXrtGaTickObjectClass, w.intensityGauge, XmNxrtGaScale, w.intensityScale, XmNwidth, 2,
        XmNxrtGaAutomatic, True, XmNxrtGaDrawLabels, True, XmNxrtGaLabelExtent, doubleValue(0.4),
        XmNxrtGaInnerExtent, doubleValue(1.0), XmNxrtGaOuterExtent, doubleValue(0.85), XtVaTypedArg,
        XmNbackground, XmRString, "black", sizeof "black", nullptr);
    fitToLabels(w.intensityGauge);
}

void addPlotArea()
{
    plot.plotArea = WMAddDrawingArea(plot.plotWidth, plot.plotHeight);
    WMAttachRightSide();
    XtAddCallback(plot.plotArea, XmNexposeCallback, plotExpose, nullptr);
    XtAddCallback(plot.plotArea, XmNinputCallback, plotInput, nullptr);
    XtAddCallback(plot.plotArea, XmNresizeCallback, plotResize, nullptr);
    XtOverrideTranslations(plot.plotArea, XtParseTranslationTable(plotTranslations));
    plot.plotGC =
        XCreateGC(XtDisplay(plot.plotArea), RootWindowOfScreen(XtScreen(plot.plotArea)), 0, nullptr);
}

void addDistanceGauge()
{
    ToolWindow& w = toolWindow;
    w.distanceGauge = WMAddCustom("tick_gauge", xmXrtGaLinearGaugeWidgetClass, nullptr, 0);
    // Attached beside the other gauge from the start: moved there only in attachAxes, it would widen the
    // window.
    XtVaSetValues(w.distanceGauge, XmNwidth, plot.plotWidth, XmNheight, leastDistanceGaugeHeight,
                  XmNresizable, 0, XmNtopAttachment, XmATTACH_NONE, XmNbottomAttachment, XmATTACH_FORM,
                  XmNrightAttachment, XmATTACH_FORM, XmNleftAttachment, XmATTACH_WIDGET, XmNleftWidget,
                  w.intensityGauge, nullptr);
    w.distanceScale =
        XtVaCreateWidget("tick_scale", xmXrtGaLinearScaleObjectClass, w.distanceGauge, XmNwidth, 0, XmNx, 0,
                         XmNheight, 8, XmNy, 0, XmNxrtGaMax, doubleValue(0.0), nullptr);
    w.distanceTicks = XtVaCreateWidget(
        "tick", xmXrtGaTickObjectClass, w.distanceGauge, XmNxrtGaScale, w.distanceScale, XmNwidth, 1,
        XmNxrtGaAutomatic, True, XmNxrtGaDrawLabels, True, XmNxrtGaLabelExtent, doubleValue(1.5),
        XmNxrtGaInnerExtent, doubleValue(0.0), XmNxrtGaOuterExtent, doubleValue(0.8), XtVaTypedArg,
        XmNbackground, XmRString, "black", sizeof "black", nullptr);
    fitToLabels(w.distanceGauge);
}

void addSavedCount()
{
    // The counter has no limits; the three limits of the field are bound to this.
    static int spare = 0;
    WMAddInfoButton("Saved:", 0);
    savedControls.savedCountField =
        WMAddIntField(&savedCount, 1, 4, 20, &spare, &spare, &spare, nullptr, nullptr, 0, 0);
    XtVaSetValues(savedControls.savedCountField, XmNeditable, False, nullptr);
}

void addButtonRow()
{
    WMAddDoneButton("Done", quitTool, nullptr, 0, 0);
    WMAddToolTip("Close this tool");
    WMAddFuncButton("Save", saveCurrentProfile, nullptr, 0, 0);
    WMAddToolTip("Save the current profile data in memory");
    addSavedCount();
    savedControls.clearButton = WMAddFuncButton("Clear", clearSavedProfiles, nullptr, 0, 0);
    WMAddToolTip("Forget saved profiles");
    savedControls.writeButton = WMAddFuncButton("Write To File...", writeSavedProfiles, nullptr, 0, 0);
    WMAddToolTip("Write saved profiles to\na spreadsheet-compatible file");
    WMAddHelpButton("LineProfile");
}

void addMessageArea()
{
    WMStartMainWindowMessageAreaForm(toolWindow.toolFrame);
    messageField = WMAddText(messageText, sizeof messageText, nullptr);
    WMAttachRightSide();
    WMNewRow();
    addButtonRow();
    WMEndMainWindowMessageAreaForm();
}

void shareWidgets()
{
    plot.intensityScale = toolWindow.intensityScale;
    segmentPlot = {drawProfile, plot.plotArea, toolWindow.distanceScale, toolWindow.distanceTicks};
}

} // namespace

void buildToolWindow()
{
    WMSetShellResize(1);
    Widget form = WMInitMainWindow("Arbitrary Line Profile");
    toolWindow.toolFrame = XtParent(form);
    toolWindow.toolShell = XtParent(toolWindow.toolFrame);
    WMAdjustToFixedFont(0);
    addSettingsRow();
    WMNewRow();
    addIntensityGauge();
    addPlotArea();
    WMNewRow();
    addDistanceGauge();
    addMessageArea();
    shareWidgets();
    WMDisableField(savedControls.clearButton);
    WMDisableField(savedControls.writeButton);
}

void attachAxes()
{
    const ToolWindow& w = toolWindow;
    Dimension distanceGaugeHeight;
    XtVaGetValues(w.distanceGauge, XmNheight, &distanceGaugeHeight, nullptr);
    XtVaSetValues(w.distanceGauge, XmNleftAttachment, XmATTACH_WIDGET, XmNleftWidget, w.intensityGauge,
                  nullptr);
    XtVaSetValues(w.intensityGauge, XmNbottomAttachment, XmATTACH_FORM, XmNbottomOffset, distanceGaugeHeight,
                  nullptr);
    XtVaSetValues(plot.plotArea, XmNbottomAttachment, XmATTACH_WIDGET, XmNbottomWidget, w.distanceGauge,
                  nullptr);
}
