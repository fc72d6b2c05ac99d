// SPDX-License-Identifier: MIT
#include "gauge/ClassRecord.h"
#include "gauge/LinearScaleP.h"

#include <cstring>

namespace {

const double nought = 0.0;
const double one = 1.0;

#define SCALE_FIELD(name) XtOffsetOf(LinearScaleRec, scale.name)

XtResource resources[] = {
    dimensionRow(XmNx, XmCPosition, XmRPosition, SCALE_FIELD(x), 0),
    dimensionRow(XmNy, XmCPosition, XmRPosition, SCALE_FIELD(y), 0),
    dimensionRow(XmNwidth, XmCWidth, XmRDimension, SCALE_FIELD(width), 0),
    dimensionRow(XmNheight, XmCHeight, XmRDimension, SCALE_FIELD(height), 0),
    flagRow(XmNxrtGaAllowTransform, "XrtGaAllowTransform", SCALE_FIELD(allowTransform), true),
    flagRow(XmNxrtGaDebug, "XrtGaDebug", SCALE_FIELD(debug), false),
    enumerationRow(XmNxrtGaDirection, "XrtGaDirection", XmRXrtGaDirection, SCALE_FIELD(direction),
                   XRTGA_ASCENDING),
    enumerationRow(XmNxrtGaOrientation, "XrtGaOrientation", XmRXrtGaOrientation, SCALE_FIELD(orientation),
                   XRTGA_HORIZONTAL),
    doubleRow(XmNxrtGaMax, "XrtGaMax", SCALE_FIELD(max), &one),
    doubleRow(XmNxrtGaMin, "XrtGaMin", SCALE_FIELD(min), &nought),
    callbackRow(XmNxrtGaTransformCallback, SCALE_FIELD(transformCallback)),
};

LinearScaleRec* asScale(Widget widget)
{
    return reinterpret_cast<LinearScaleRec*>(widget);
}

void initialize(Widget, Widget created, ArgList, Cardinal*)
{
    gaugeAdopt(created);
}

// The bits are compared, padding included: the old record is a copy of this one, and a range of NaN is no
// change of a range of NaN.
Boolean setValues(Widget old, Widget, Widget widget, ArgList, Cardinal*)
{
    // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison)
    if (std::memcmp(&asScale(old)->scale, &asScale(widget)->scale, sizeof(LinearScalePart)) != 0)
        gaugeChanged(widget);
    return False;
}

} // namespace

LinearScaleClassRec linearScaleClassRec = {
    .object_class = childClassPart("XmXrtGaLinearScale", sizeof(LinearScaleRec), resources, initialize,
                                   setValues, nullptr),
    .scale_class = {.extension = nullptr},
};

WidgetClass xmXrtGaLinearScaleObjectClass = reinterpret_cast<WidgetClass>(&linearScaleClassRec);
