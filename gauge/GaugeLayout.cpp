// SPDX-License-Identifier: MIT
#include "gauge/GaugeLayout.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace gauge {

namespace {

constexpr int markDistance = 1; // pixels between a mark and its label
constexpr int edgeDistance = 1; // pixels between labels and the gauge's edge in neededThickness()

// A part of the gauge at right angles to the axis, in gauge pixels; end is not included.
struct Span {
    int begin;
    int end;

    int size() const { return end - begin; }
};

// An axis as it lies in its gauge. "Across" is x on a vertical axis and y on a horizontal one.
struct Axis {
    int start;        // of the scale along the axis, gauge pixels
    int length;       // of the scale along the axis
    int thickness;    // of the gauge across the axis
    Span marks;       // across
    Span labels;      // across: room beside the marks
    int labelMiddle;  // across: where the labels are wanted
    bool labelsFirst; // they stand before (left of, above) the marks
};

// An extent that is no number counts as 0.
int across(double extent, int origin, int thickness)
{
    const double position = origin + extent * thickness;
    return std::isnan(position) ? origin
                                : static_cast<int>(std::lround(std::clamp(position, -32768.0, 32767.0)));
}

int filled(int size, int start, int whole)
{
    return size > 0 ? size : std::max(0, whole - start);
}

Axis axisOf(const GaugeRequest& request)
{
    const Box& scale = request.scale;
    const int width = filled(scale.width, scale.x, request.width);
    const int height = filled(scale.height, scale.y, request.height);
    Axis axis;
    axis.start = request.vertical ? scale.y : scale.x;
    axis.length = request.vertical ? height : width;
    axis.thickness = request.vertical ? request.width : request.height;
    auto position = [&](double extent) {
        return request.vertical ? across(extent, scale.x, width) : across(extent, scale.y, height);
    };
    const int inner = position(request.innerExtent), outer = position(request.outerExtent);
    axis.marks = {std::min(inner, outer), std::max(inner, outer)};
    axis.labelMiddle = position(request.labelExtent);
    const int marksMiddle2 = inner + outer;
    axis.labelsFirst = 2 * axis.labelMiddle != marksMiddle2 ? 2 * axis.labelMiddle < marksMiddle2
                                                            : marksMiddle2 >= axis.thickness;
    axis.labels = axis.labelsFirst ? Span{0, std::min(axis.thickness, axis.marks.begin - markDistance)}
                                   : Span{std::max(0, axis.marks.end + markDistance), axis.thickness};
    return axis;
}

AxisRequest axisRequestOf(const GaugeRequest& request, const Axis& axis)
{
    AxisRequest along = request.axis;
    along.length = axis.length;
    along.vertical = request.vertical;
    along.flipped = request.vertical != request.descending;
    along.gap = request.vertical ? request.digitHeight : request.digitWidth;
    along.labelRoom = request.vertical ? axis.labels.size() : axis.length / 3;
    along.baseRoom = request.vertical ? axis.thickness : axis.length / 3;
    along.measure = [&request](const std::string& text) {
        const TextSize size = request.measure(text);
        return request.vertical ? LabelSize{size.height, size.width} : LabelSize{size.width, size.height};
    };
    return along;
}

Box markAt(const GaugeRequest& request, const Axis& axis, int pixel)
{
    const int lineWidth = std::min(request.axis.tickWidth, axis.length);
    const int along = axis.start + std::clamp(pixel - lineWidth / 2, 0, axis.length - lineWidth);
    return request.vertical ? Box{axis.marks.begin, along, axis.marks.size(), lineWidth}
                            : Box{along, axis.marks.begin, lineWidth, axis.marks.size()};
}

// The labels of a vertical axis form a column, aligned at the side of the marks and as far off the edges as
// the wanted middle and the room allow.
Span labelColumn(const Axis& axis, int size)
{
    int begin = axis.labelMiddle - size / 2;
    begin = std::max(std::min(begin, axis.labels.end - size), axis.labels.begin);
    return {begin, begin + size};
}

GaugeText textAt(const GaugeRequest& request, const Axis& axis, const Span& column, const std::string& text,
                 int alongStart)
{
    const TextSize size = request.measure(text);
    const int along = axis.start + alongStart;
    if (!request.vertical)
        return {text, along, axis.labelsFirst ? column.end - size.height : column.begin, size.width};
    const int x = axis.labelsFirst ? column.end - size.width : column.begin;
    return {text, std::max(0, std::min(x, request.width - size.width)), along, size.width};
}

} // namespace

GaugeLayout layoutGauge(const GaugeRequest& request)
{
    const Axis axis = axisOf(request);
    const TickLayout ticks = layoutTicks(axisRequestOf(request, axis));
    GaugeLayout layout{ticks.series, {}, {}};
    int widest = 0;
    for (const Tick& tick : ticks.ticks)
        widest = std::max(widest, tick.label.empty() ? 0 : tick.size.across);
    const Span column = labelColumn(axis, widest);
    for (const Tick& tick : ticks.ticks) {
        if (axis.marks.size() > 0 && request.axis.tickWidth > 0)
            layout.marks.push_back(markAt(request, axis, tick.pixel));
        if (!tick.label.empty())
            layout.texts.push_back(textAt(request, axis, column, tick.label, tick.labelStart));
    }
    for (std::size_t line = 0; line < ticks.base.lines.size(); ++line)
        layout.texts.push_back(
            textAt(request, axis, column, ticks.base.lines[line], ticks.base.starts[line]));
    return layout;
}

int neededThickness(const GaugeRequest& request)
{
    constexpr int largest = 4096; // pixels: no screen has room for more
    if (!request.axis.labels)
        return 0;
    const int room = request.vertical
                         ? std::max(request.measure("000000").width, request.measure("+00000").width)
                         : request.digitHeight + edgeDistance;
    GaugeRequest sized = request;
    int& thickness = request.vertical ? sized.width : sized.height;
    for (thickness = 1; thickness <= largest; ++thickness)
        if (axisOf(sized).labels.size() >= room)
            return thickness;
    return 0;
}

} // namespace gauge
