// SPDX-License-Identifier: MIT
// Where all marks and texts of a gauge lie, in gauge pixels, (0, 0) at the top left. Nothing here needs a
// window system, so a program without a display gets the same axes: it measures the labels and draws the
// result. Called by the tick object with each drawing, and by tests.
#pragma once

#include "gauge/TickLayout.h"

#include <functional>
#include <string>
#include <vector>

namespace gauge {

struct Box {
    int x, y, width, height;
};

struct TextSize {
    int width, height;
};

struct GaugeRequest {
    int width = 0; // of the gauge
    int height = 0;
    Box scale{};             // a width or height of 0 reaches to the gauge's edge
    bool vertical = false;   // the axis stands upright, values growing upwards; else they grow to the right
    bool descending = false; // the other way round
    // Positions across the scale as fractions of its thickness, from its top or left edge: the two ends of a
    // mark, and the middle of the labels.
    double innerExtent = 1.0;
    double outerExtent = 1.0;
    double labelExtent = 1.0;
    int digitWidth = 0;
    int digitHeight = 0;
    std::function<TextSize(const std::string&)> measure; // called with each candidate label
    // Range, offset, series, precision, labels and tick width. The rest follows from the fields above.
    AxisRequest axis;
};

// A label, or a line of the base that labels with a sign are to be added to.
struct GaugeText {
    std::string text;
    int x, y; // top left corner
    int width;
};

struct GaugeLayout {
    TickSeries series; // see TickLayout
    std::vector<Box> marks;
    std::vector<GaugeText> texts;
};

GaugeLayout layoutGauge(const GaugeRequest& request);

// The width of a vertical gauge, or the height of a horizontal one, at which labels of six characters find
// their room beside the marks. 0 where labels are off, or find it at no size.
int neededThickness(const GaugeRequest& request);

} // namespace gauge
