// SPDX-License-Identifier: MIT
#include "gauge/ClassRecord.h"
#include "gauge/LinearScaleP.h"
#include "gauge/TickP.h"

#include <cstring>

namespace {

const double nought = 0.0;
const double one = 1.0;
const double unset = gauge::unsetValue;

TickRec* asTick(Widget widget)
{
    return reinterpret_cast<TickRec*>(widget);
}

// Marks are drawn in the gauge's foreground unless the application says otherwise.
void foregroundOfGauge(Widget widget, int, XrmValue* value)
{
    static Pixel pixel;
    Widget parent = XtParent(widget);
    pixel = XtIsSubclass(parent, xmPrimitiveWidgetClass)
                ? reinterpret_cast<LinearGaugeRec*>(parent)->primitive.foreground
                : BlackPixelOfScreen(XtScreenOfObject(widget));
    value->size = sizeof pixel;
    value->addr = reinterpret_cast<XPointer>(&pixel);
}

#define TICK_FIELD(name) XtOffsetOf(TickRec, tick.name)

XtResource resources[] = {
    pointerRow(XmNxrtGaScale, "XrtGaScale", XmRXrtGaScale, TICK_FIELD(scale)),
    flagRow(XmNxrtGaAutomatic, "XrtGaAutomatic", TICK_FIELD(automatic), true),
    doubleRow(XmNxrtGaIncrementValue, "XrtGaIncrementValue", TICK_FIELD(increment), &unset),
    doubleRow(XmNxrtGaStartValue, "XrtGaStartValue", TICK_FIELD(start), &unset),
    doubleRow(XmNxrtGaStopValue, "XrtGaStopValue", TICK_FIELD(stop), &unset),
    flagRow(XmNxrtGaDrawLabels, "XrtGaDrawLabels", TICK_FIELD(drawLabels), false),
    pointerRow(XmNxrtGaLabelFunc, "XrtGaLabelFunc", XmRFunction, TICK_FIELD(labelFunc)),
    intRow(XmNxrtGaPrecision, "XrtGaPrecision", TICK_FIELD(precision), gauge::defaultPrecision),
    enumerationRow(XmNxrtGaPrecisionUseDefault, "XrtGaPrecisionUseDefault", XmRXrtGaPrecisionUse,
                   TICK_FIELD(precisionUseDefault), XRTGA_PRECISION_IF_DEFAULT),
    doubleRow(XmNxrtGaOffset, "XrtGaOffset", TICK_FIELD(offset), &nought),
    doubleRow(XmNxrtGaInnerExtent, "XrtGaInnerExtent", TICK_FIELD(innerExtent), &one),
    doubleRow(XmNxrtGaOuterExtent, "XrtGaOuterExtent", TICK_FIELD(outerExtent), &one),
    doubleRow(XmNxrtGaLabelExtent, "XrtGaLabelExtent", TICK_FIELD(labelExtent), &one),
    flagRow(XmNxrtGaIsShowing, "XrtGaIsShowing", TICK_FIELD(isShowing), true),
    intRow(XmNxrtGaTickType, "XrtGaTickType", TICK_FIELD(tickType), 0),
    dimensionRow(XmNwidth, XmCWidth, XmRDimension, TICK_FIELD(width), 1),
    computedRow(XmNbackground, XmCBackground, XmRPixel, sizeof(Pixel), TICK_FIELD(background),
                foregroundOfGauge),
};

// A tick follows scales of its own gauge only: that gauge resets the tick when the scale is
// destroyed.
void checkScale(Widget widget)
{
    Widget& scale = asTick(widget)->tick.scale;
    if (!scale || (XtIsSubclass(scale, xmXrtGaLinearScaleObjectClass) && XtParent(scale) == XtParent(widget)))
        return;
    scale = nullptr;
    XtAppWarningMsg(XtWidgetToApplicationContext(widget), "scale", "tick", "XmXrtGaError",
                    "xrtGaScale takes a linear scale of the same gauge; the tick object has none now.",
                    nullptr, nullptr);
}

void initialize(Widget, Widget created, ArgList, Cardinal*)
{
    checkScale(created);
    asTick(created)->tick.color.known = False;
    gaugeAdopt(created);
}

// The bits are compared, padding included: the old record is a copy of this one.
Boolean setValues(Widget old, Widget, Widget widget, ArgList, Cardinal*)
{
    checkScale(widget);
    // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison)
    if (std::memcmp(&asTick(old)->tick, &asTick(widget)->tick, sizeof(TickPart)) != 0)
        gaugeChanged(widget);
    return False;
}

void getValuesHook(Widget widget, ArgList args, Cardinal* count)
{
    for (Cardinal i = 0; i < *count; ++i) {
        double gauge::TickSeries::*member = nullptr;
        if (std::strcmp(args[i].name, XmNxrtGaIncrementValue) == 0)
            member = &gauge::TickSeries::increment;
        else if (std::strcmp(args[i].name, XmNxrtGaStartValue) == 0)
            member = &gauge::TickSeries::start;
        else if (std::strcmp(args[i].name, XmNxrtGaStopValue) == 0)
            member = &gauge::TickSeries::stop;
        if (member)
            *reinterpret_cast<double*>(args[i].value) = computedSeries(asTick(widget)).*member;
    }
}

} // namespace

TickClassRec tickClassRec = {
    .object_class =
        childClassPart("XmXrtGaTick", sizeof(TickRec), resources, initialize, setValues, getValuesHook),
    .tick_class = {.extension = nullptr},
};

WidgetClass xmXrtGaTickObjectClass = reinterpret_cast<WidgetClass>(&tickClassRec);
