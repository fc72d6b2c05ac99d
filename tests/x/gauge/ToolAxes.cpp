#include "tests/x/gauge/ToolAxes.h"

namespace axes {

Axis createIntensityAxis(Widget parent, int x, int y, int height)
{
    Axis axis;
    axis.gauge = XtVaCreateManagedWidget("tick_gauge", xmXrtGaLinearGaugeWidgetClass, parent, XmNx, x, XmNy,
                                         y, XmNwidth, 60, XmNheight, height, nullptr);
    axis.scale =
        XtVaCreateWidget("tick_scale", xmXrtGaLinearScaleObjectClass, axis.gauge, XmNxrtGaMax, asArg(0.0),
                         XmNxrtGaMin, asArg(0.0), XmNxrtGaOrientation, 1, XmNxrtGaDirection, 0, nullptr);
    axis.ticks = XtVaCreateWidget(
        "tick", xmXrtGaTickObjectClass, axis.gauge, XmNxrtGaScale, axis.scale, XmNwidth, 2, XmNxrtGaAutomatic,
        True, XmNxrtGaDrawLabels, True, XmNxrtGaLabelExtent, asArg(0.4), XmNxrtGaInnerExtent, asArg(1.0),
        XmNxrtGaOuterExtent, asArg(0.85), XtVaTypedArg, XmNbackground, XmRString, "black", 6, nullptr);
    return axis;
}

Axis createDistanceAxis(Widget parent, int x, int y, int width)
{
    Axis axis;
    axis.gauge = XtVaCreateManagedWidget("tick_gauge", xmXrtGaLinearGaugeWidgetClass, parent, XmNx, x, XmNy,
                                         y, XmNwidth, width, XmNheight, 24, nullptr);
    axis.scale = XtVaCreateWidget("tick_scale", xmXrtGaLinearScaleObjectClass, axis.gauge, XmNwidth, 0, XmNx,
                                  0, XmNheight, 8, XmNy, 0, XmNxrtGaMax, asArg(0.0), nullptr);
    axis.ticks = XtVaCreateWidget(
        "tick", xmXrtGaTickObjectClass, axis.gauge, XmNxrtGaScale, axis.scale, XmNwidth, 1, XmNxrtGaAutomatic,
        True, XmNxrtGaDrawLabels, True, XmNxrtGaLabelExtent, asArg(1.5), XmNxrtGaInnerExtent, asArg(0.0),
        XmNxrtGaOuterExtent, asArg(0.8), XtVaTypedArg, XmNbackground, XmRString, "black", 6, nullptr);
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
    XtVaSetValues(axis.scale, XmNxrtGaMin, asArg(margin), XmNxrtGaMax, asArg(length + margin), nullptr);
}

double doubleOf(Widget object, const char* name)
{
    double value = -1.0;
    XtVaGetValues(object, name, &value, nullptr);
    return value;
}

} // namespace axes
