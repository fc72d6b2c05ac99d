// SPDX-License-Identifier: MIT
#include "tests/x/gauge/ToolAxes.h"

namespace axes {
namespace {

Widget createGauge(Widget parent, int x, int y, int width, int height)
{
    return XtVaCreateManagedWidget("tick_gauge", xmXrtGaLinearGaugeWidgetClass, parent, XmNx, x, XmNy, y,
                                   XmNwidth, width, XmNheight, height, nullptr);
}

Widget createTicks(const Axis& axis, int width, double label, double inner, double outer)
{
    return XtVaCreateWidget("tick", xmXrtGaTickObjectClass, axis.gauge, XmNxrtGaScale, axis.scale, XmNwidth,
                            width, XmNxrtGaDrawLabels, True, XmNxrtGaLabelExtent, asArg(label),
                            XmNxrtGaInnerExtent, asArg(inner), XmNxrtGaOuterExtent, asArg(outer),
                            XtVaTypedArg, XmNbackground, XmRString, "black", sizeof "black", nullptr);
}

} // namespace

Axis createIntensityAxis(Widget parent, int x, int y, int height)
{
    Axis axis{};
    axis.gauge = createGauge(parent, x, y, 60, height);
    axis.scale = XtVaCreateWidget("tick_scale", xmXrtGaLinearScaleObjectClass, axis.gauge, XmNxrtGaMax,
                                  asArg(0.0), XmNxrtGaOrientation, XRTGA_VERTICAL, nullptr);
    axis.ticks = createTicks(axis, 2, 0.4, 1.0, 0.85);
    return axis;
}

Axis createDistanceAxis(Widget parent, int x, int y, int width)
{
    Axis axis{};
    axis.gauge = createGauge(parent, x, y, width, 24);
    axis.scale = XtVaCreateWidget("tick_scale", xmXrtGaLinearScaleObjectClass, axis.gauge, XmNheight, 8,
                                  XmNxrtGaMax, asArg(0.0), nullptr);
    axis.ticks = createTicks(axis, 1, 1.5, 0.0, 0.8);
    return axis;
}

void setRange(const Axis& axis, double min, double max)
{
    XtVaSetValues(axis.scale, XmNxrtGaMin, asArg(min), XmNxrtGaMax, asArg(max), nullptr);
}

void setSegmentLength(const Axis& axis, float length, int width)
{
    float margin = length / static_cast<float>(width) * 5.0f;
    int precision = length < 1.0f ? 2 : length < 10.0f ? 1 : 0;
    XtVaSetValues(axis.ticks, XmNxrtGaPrecision, precision, XmNxrtGaOffset, asArg(margin), nullptr);
    setRange(axis, margin, length + margin);
}

} // namespace axes
