// SPDX-License-Identifier: MIT
#include "platform/plot/ProfilePlot.h"

#include "gauge/TickLayout.h"
#include "platform/text/Utf8.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>

namespace plot {

namespace {

constexpr double tickLength = 4, labelGap = 2, nameRoom = lineHeight;
constexpr base::Rgb ink{0, 0, 0}, ground{32, 32, 32};

// What the intensity axis shows: intensities, or their decimal logarithms.
struct Range {
    double low, high;
    Scaling scaling;

    // NaN for what has no place on the axis.
    double placeOf(double value) const
    {
        if (scaling == Scaling::Linear)
            return std::isfinite(value) ? value : NAN;
        return std::isfinite(value) && value > 0 ? std::log10(value) : NAN;
    }
};

void setColor(cairo_t* cairo, const base::Rgb& color)
{
    constexpr double full = 255;
    cairo_set_source_rgb(cairo, color.red / full, color.green / full, color.blue / full);
}

Range rangeOf(const ProfilePlot& plot)
{
    Range range{INFINITY, -INFINITY, plot.scaling};
    for (const Curve& curve : plot.curves)
        for (const float value : curve.values)
            if (const double place = range.placeOf(double{value}); !std::isnan(place)) {
                range.low = std::min(range.low, place);
                range.high = std::max(range.high, place);
            }
    if (!(range.low <= range.high))
        return {0, 1, plot.scaling};
    if (plot.scaling == Scaling::Logarithmic) {
        range.low = std::floor(range.low);
        range.high = std::max(std::ceil(range.high), range.low + 1);
    } else if (range.low == range.high) {
        range = {range.low - 1, range.high + 1, plot.scaling};
    }
    return range;
}

gauge::AxisRequest requestFor(cairo_t* cairo, double low, double high, double length, bool vertical)
{
    gauge::AxisRequest request;
    request.min = low;
    request.max = high;
    request.length = static_cast<int>(length);
    request.flipped = vertical;
    request.vertical = vertical;
    request.gap = static_cast<int>(textSize);
    request.labelRoom = request.baseRoom =
        static_cast<int>(vertical ? axisWidth - tickLength - nameRoom - 2 * labelGap : 2 * axisWidth);
    request.measure = [cairo, vertical](const std::string& text) {
        const int width = static_cast<int>(std::ceil(widthOf(cairo, text)));
        const int height = static_cast<int>(lineHeight);
        return vertical ? gauge::LabelSize{height, width} : gauge::LabelSize{width, height};
    };
    return request;
}

gauge::TickLayout intensityTicks(cairo_t* cairo, const Frame& frame, const Range& range)
{
    constexpr double mostDecades = 12; // that have a tick each
    gauge::AxisRequest request = requestFor(cairo, range.low, range.high, frame.height, true);
    if (range.scaling == Scaling::Logarithmic) {
        request.series.increment = std::ceil((range.high - range.low) / mostDecades);
        request.labelFunc = [](double exponent) {
            char text[32];
            std::snprintf(text, sizeof text, "%g", std::pow(10, std::round(exponent)));
            return std::string(text);
        };
    }
    return gauge::layoutTicks(request);
}

void drawMark(cairo_t* cairo, double x, double y, double dx, double dy)
{
    cairo_move_to(cairo, x, y);
    cairo_line_to(cairo, x + dx, y + dy);
    cairo_stroke(cairo);
}

void drawRightAligned(cairo_t* cairo, const Frame& frame, int start, const std::string& text)
{
    constexpr double baseLine = 0.75; // of the line
    drawText(cairo, frame.x - tickLength - labelGap - widthOf(cairo, text),
             frame.y + start + lineHeight * baseLine, text);
}

void drawIntensityAxis(cairo_t* cairo, const Frame& frame, const Range& range)
{
    const gauge::TickLayout layout = intensityTicks(cairo, frame, range);
    for (const gauge::Tick& tick : layout.ticks) {
        setColor(cairo, ink);
        drawMark(cairo, frame.x, frame.y + tick.pixel, -tickLength, 0);
        drawRightAligned(cairo, frame, tick.labelStart, tick.label);
    }
    for (std::size_t i = 0; i < layout.base.lines.size(); ++i)
        drawRightAligned(cairo, frame, layout.base.starts[i], layout.base.lines[i]);
    const std::string name = "Intensity";
    cairo_save(cairo);
    cairo_translate(cairo, frame.x - axisWidth + textSize * 0.8,
                    frame.y + (frame.height + widthOf(cairo, name)) / 2);
    cairo_rotate(cairo, -std::acos(0.0));
    drawText(cairo, 0, 0, name);
    cairo_restore(cairo);
}

// The steps of a decade between its ticks.
void drawMinorMarks(cairo_t* cairo, const Frame& frame, const Range& range)
{
    constexpr int steps = 10;
    setColor(cairo, ink);
    for (int decade = 0; decade < range.high - range.low; ++decade)
        for (int step = 2; step < steps; ++step) {
            const double share = (decade + std::log10(step)) / (range.high - range.low);
            drawMark(cairo, frame.x, frame.y + frame.height * (1 - share), -tickLength / 2, 0);
        }
}

void drawDistanceAxis(cairo_t* cairo, const Frame& frame, const ProfilePlot& plot)
{
    constexpr double baseLine = 0.8; // of the line
    const double bottom = frame.y + frame.height;
    for (const gauge::Tick& tick :
         gauge::layoutTicks(requestFor(cairo, 0, plot.length, frame.width, false)).ticks) {
        setColor(cairo, ink);
        drawMark(cairo, frame.x + tick.pixel, bottom, 0, tickLength);
        drawText(cairo, frame.x + tick.labelStart, bottom + tickLength + lineHeight * baseLine, tick.label);
    }
    const std::string name = "Distance (" + plot.unit + ")";
    drawText(cairo, frame.x + (frame.width - widthOf(cairo, name)) / 2, bottom + tickLength + 2 * lineHeight,
             name);
}

// Each sample stands at its distance from the start.
void drawCurve(cairo_t* cairo, const Frame& frame, const ProfilePlot& plot, const Curve& curve,
               const Range& range)
{
    const double perMicron = frame.width / plot.length;
    const double perValue = frame.height / (range.high - range.low);
    bool gap = true;
    for (std::size_t i = 0; i < curve.values.size(); ++i) {
        const double place = range.placeOf(double{curve.values[i]});
        const double x = frame.x + (plot.first + static_cast<double>(i) * plot.step) * perMicron;
        const double y = frame.y + frame.height - (place - range.low) * perValue;
        const bool there = !std::isnan(place);
        if (there && gap)
            cairo_move_to(cairo, x, y);
        else if (there)
            cairo_line_to(cairo, x, y);
        gap = !there && (gap || !plot.bridged);
    }
    setColor(cairo, curve.color);
    cairo_stroke(cairo);
}

} // namespace

void chooseFont(cairo_t* cairo)
{
    cairo_select_font_face(cairo, "Sans", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(cairo, textSize);
    cairo_font_options_t* options = cairo_font_options_create();
    cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
    cairo_set_font_options(cairo, options);
    cairo_font_options_destroy(options);
}

double widthOf(cairo_t* cairo, const std::string& text)
{
    cairo_text_extents_t extents;
    cairo_text_extents(cairo, text.c_str(), &extents);
    return extents.x_advance;
}

void drawText(cairo_t* cairo, double x, double y, const std::string& text)
{
    setColor(cairo, ink);
    cairo_move_to(cairo, x, y);
    cairo_show_text(cairo, text.c_str());
}

void drawPlot(cairo_t* cairo, const Frame& frame, const ProfilePlot& plot)
{
    const Range range = rangeOf(plot);
    setColor(cairo, ground);
    cairo_rectangle(cairo, frame.x, frame.y, frame.width, frame.height);
    cairo_fill(cairo);
    cairo_set_line_width(cairo, 0.75);
    cairo_set_line_join(cairo, CAIRO_LINE_JOIN_ROUND);
    for (const Curve& curve : plot.curves)
        drawCurve(cairo, frame, plot, curve, range);
    drawIntensityAxis(cairo, frame, range);
    if (plot.scaling == Scaling::Logarithmic)
        drawMinorMarks(cairo, frame, range);
    drawDistanceAxis(cairo, frame, plot);
}

void drawLegend(cairo_t* cairo, double x, double y, const std::vector<Curve>& curves)
{
    constexpr double swatch = 22, space = 4, high = 9;
    for (const Curve& curve : curves) {
        setColor(cairo, ground);
        cairo_rectangle(cairo, x, y - high + 1, swatch, high);
        cairo_fill(cairo);
        setColor(cairo, curve.color);
        cairo_set_line_width(cairo, 1.5);
        drawMark(cairo, x + 3, y - high / 2 + 1, swatch - 6, 0);
        const std::string name = text::shortened(curve.name, 24);
        drawText(cairo, x + swatch + space, y, name);
        x += swatch + 4 * space + widthOf(cairo, name);
    }
}

} // namespace plot
