// SPDX-License-Identifier: MIT
// The two axes of a plot with the resources that the line profile tool gives them, for the X tests of the
// gauges and for the gallery.
#pragma once

#include "gauge/XrtGauge.h"

#include <Xm/Xm.h>

#include <bit>

namespace axes {

struct Axis {
    Widget gauge, scale, ticks;
};

inline XtArgVal asArg(double value)
{
    return std::bit_cast<XtArgVal>(value);
}

// 60 pixels wide, values growing upwards, at (x, y) of the parent; the range is 0 to 0.
Axis createIntensityAxis(Widget parent, int x, int y, int height);
// 24 pixels high, values growing to the right; the range is 0 to 0.
Axis createDistanceAxis(Widget parent, int x, int y, int width);

void setRange(const Axis& axis, double min, double max);
// As after a drag of that many microns: margin of five pixels as offset, precision by length.
void setSegmentLength(const Axis& axis, float length, int width);

} // namespace axes
