// SPDX-License-Identifier: MIT
// Where the ticks of an axis stand and what their labels say, along the axis. No window system here: sizes of
// labels come from the caller. Called by the layout of the whole gauge (GaugeLayout.h), and by tests.
//
// Frame: values are those of the labels; pixels count along the axis from the left or top end of the scale.
#pragma once

#include "gauge/TickSeries.h"

#include <functional>
#include <string>
#include <vector>

namespace gauge {

// The precision of a tick object whose precision was not set.
inline constexpr int defaultPrecision = -15;

struct LabelSize {
    int along;  // pixels in the direction of the axis
    int across; // pixels at right angles to it
};

struct AxisRequest {
    double min = 0.0; // of the scale; a tick labelled v stands where the scale has v + offset
    double max = 0.0;
    double offset = 0.0;
    int length = 0;             // of the scale in pixels
    bool flipped = false;       // values grow towards pixel 0
    TickSeries series;          // what the application has set
    bool align = true;          // align a start that was set
    bool rangePrecision = true; // as many decimals as the increment needs; else `precision`
    int precision = defaultPrecision;
    bool labels = true;
    int tickWidth = 1; // pixels
    int gap = 0;       // least distance between two labels in pixels
    int labelRoom =
        0; // largest LabelSize::across (vertical axis) or ::along (horizontal) that a label may have
    int baseRoom = 0; // the same for a line of the base
    bool vertical = false;
    std::function<LabelSize(const std::string&)> measure; // called with each candidate label
    std::function<std::string(double)> labelFunc;         // in place of the label rule, when set
};

struct Tick {
    double value;
    int pixel;         // of the tick's line, 0 .. length - 1
    std::string label; // empty: no label here
    int labelStart;    // first pixel of the label along the axis
    LabelSize size;
};

// The number to which labels that begin with a sign are added. It stands on the axis's first pixels; ticks
// there are left out.
struct LabelBase {
    std::vector<std::string> lines; // of one number; several only on a vertical axis. Empty: there is no base
    std::vector<int> starts;        // first pixel of each line along the axis
};

struct TickLayout {
    TickSeries series;       // as set, the rest computed; unset on an empty scale
    std::vector<Tick> ticks; // by pixel, first to last
    LabelBase base;
};

// Ticks at 1, 2 or 5 times a power of ten within the scale unless the application says otherwise. Labels lie
// within the scale and keep their distance; where an end of the axis leaves no room for one, it is moved
// inwards or dropped. A range that is empty, reversed, not finite, or too narrow for the doubles near it has
// no ticks.
//
// With rangePrecision, labels say whole values as long as three of them have room; where that is not so,
// because values share their leading digits, labels with a sign and a base may take their place.
TickLayout layoutTicks(const AxisRequest& request);

} // namespace gauge
