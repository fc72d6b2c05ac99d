// SPDX-License-Identifier: MIT
#include "platform/imagewindow/figure/Figure.h"

#include "gauge/TickLayout.h"
#include "platform/text/Utf8.h"
#include "widgets/picture/VectorFile.h"

#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>
#include <vector>

namespace viewer {

namespace {

// Points, 1/72 inch, on the page.
constexpr double pageWidth = 480, margin = 24, textSize = 9, lineHeight = 13;
constexpr double maxImageHeight = 400, plotHeight = 180, axisWidth = 52, tickLength = 4;
constexpr double pngScale = 300.0 / 72;
constexpr std::size_t maxTitle = 90; // characters
constexpr base::Rgb ink{0, 0, 0}, plotGround{32, 32, 32};

struct Frame {
    double x, y, width, height;
};

struct Layout {
    Frame image, plot;
    double legend, notes; // base lines
    picture::PageSize page;
};

Layout layOut(const Figure& figure)
{
    const Size canvas = figure.view.canvas;
    const double room = pageWidth - 2 * margin;
    const double scale = std::min(room / canvas.width, maxImageHeight / canvas.height);
    Layout layout{};
    layout.image = {margin, margin + lineHeight, canvas.width * scale, canvas.height * scale};
    layout.legend = layout.image.y + layout.image.height + 2 * lineHeight;
    layout.plot = {margin + axisWidth, layout.legend + lineHeight / 2, room - axisWidth, plotHeight};
    layout.notes = layout.plot.y + plotHeight + 4 * lineHeight;
    const int notes = figure.profile.calibrated ? 1 : 2;
    layout.page = {pageWidth, layout.notes + (notes - 1) * lineHeight + margin};
    return layout;
}

void setColor(cairo_t* cairo, const base::Rgb& color)
{
    constexpr double full = 255;
    cairo_set_source_rgb(cairo, color.red / full, color.green / full, color.blue / full);
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

void drawView(cairo_t* cairo, const SavedView& view, const Frame& frame)
{
    cairo_save(cairo);
    cairo_translate(cairo, frame.x, frame.y);
    cairo_scale(cairo, frame.width / view.canvas.width, frame.height / view.canvas.height);
    paintView(cairo, view);
    cairo_restore(cairo);
}

std::pair<float, float> rangeOf(const SegmentProfile& profile)
{
    float low = INFINITY, high = -INFINITY;
    for (const ProfileCurve& curve : profile.curves)
        for (const float value : curve.values)
            if (std::isfinite(value)) {
                low = std::min(low, value);
                high = std::max(high, value);
            }
    if (!(low <= high))
        return {0.0F, 1.0F};
    return low < high ? std::pair(low, high) : std::pair(low - 1, high + 1);
}

gauge::TickLayout ticksOf(cairo_t* cairo, double low, double high, double length, bool vertical)
{
    gauge::AxisRequest request;
    request.min = low;
    request.max = high;
    request.length = static_cast<int>(length);
    request.flipped = vertical;
    request.vertical = vertical;
    request.gap = static_cast<int>(textSize);
    request.labelRoom = request.baseRoom =
        static_cast<int>(vertical ? axisWidth - tickLength - lineHeight - 4 : 2 * axisWidth);
    request.measure = [cairo, vertical](const std::string& text) {
        const int width = static_cast<int>(std::ceil(widthOf(cairo, text)));
        const int height = static_cast<int>(lineHeight);
        return vertical ? gauge::LabelSize{height, width} : gauge::LabelSize{width, height};
    };
    return gauge::layoutTicks(request);
}

void drawMark(cairo_t* cairo, double x, double y, double dx, double dy)
{
    cairo_move_to(cairo, x, y);
    cairo_line_to(cairo, x + dx, y + dy);
    cairo_stroke(cairo);
}

void drawIntensityAxis(cairo_t* cairo, const Frame& plot, std::pair<float, float> range)
{
    const gauge::TickLayout layout = ticksOf(cairo, range.first, range.second, plot.height, true);
    for (const gauge::Tick& tick : layout.ticks) {
        setColor(cairo, ink);
        drawMark(cairo, plot.x, plot.y + tick.pixel, -tickLength, 0);
        drawText(cairo, plot.x - tickLength - 2 - widthOf(cairo, tick.label),
                 plot.y + tick.labelStart + lineHeight * 0.75, tick.label);
    }
    for (std::size_t i = 0; i < layout.base.lines.size(); ++i)
        drawText(cairo, plot.x - tickLength - 2 - widthOf(cairo, layout.base.lines[i]),
                 plot.y + layout.base.starts[i] + lineHeight * 0.75, layout.base.lines[i]);
    const std::string name = "Intensity";
    cairo_save(cairo);
    cairo_translate(cairo, margin + textSize * 0.8, plot.y + (plot.height + widthOf(cairo, name)) / 2);
    cairo_rotate(cairo, -std::acos(0.0));
    drawText(cairo, 0, 0, name);
    cairo_restore(cairo);
}

void drawDistanceAxis(cairo_t* cairo, const Frame& plot, const SegmentProfile& profile)
{
    const double bottom = plot.y + plot.height;
    for (const gauge::Tick& tick : ticksOf(cairo, 0, profile.length, plot.width, false).ticks) {
        setColor(cairo, ink);
        drawMark(cairo, plot.x + tick.pixel, bottom, 0, tickLength);
        drawText(cairo, plot.x + tick.labelStart, bottom + tickLength + lineHeight * 0.8, tick.label);
    }
    const std::string name = "Distance (" + std::string(profile.unit()) + ")";
    drawText(cairo, plot.x + (plot.width - widthOf(cairo, name)) / 2, bottom + tickLength + 2 * lineHeight,
             name);
}

// Each sample stands at its distance from the start; what is no number leaves a gap.
void drawCurve(cairo_t* cairo, const Frame& plot, const SegmentProfile& profile, const ProfileCurve& curve,
               std::pair<float, float> range)
{
    const double perMicron = plot.width / profile.length;
    const double perValue = plot.height / (static_cast<double>(range.second) - range.first);
    bool gap = true;
    for (std::size_t i = 0; i < curve.values.size(); ++i) {
        const bool finite = std::isfinite(curve.values[i]);
        const double x = plot.x + profile.distanceOf(i) * perMicron;
        const double y = plot.y + plot.height - (curve.values[i] - range.first) * perValue;
        if (finite && gap)
            cairo_move_to(cairo, x, y);
        else if (finite)
            cairo_line_to(cairo, x, y);
        gap = !finite;
    }
    setColor(cairo, curve.color);
    cairo_stroke(cairo);
}

void drawPlot(cairo_t* cairo, const Frame& plot, const SegmentProfile& profile)
{
    const std::pair<float, float> range = rangeOf(profile);
    setColor(cairo, plotGround);
    cairo_rectangle(cairo, plot.x, plot.y, plot.width, plot.height);
    cairo_fill(cairo);
    cairo_set_line_width(cairo, 0.75);
    cairo_set_line_join(cairo, CAIRO_LINE_JOIN_ROUND);
    for (const ProfileCurve& curve : profile.curves)
        drawCurve(cairo, plot, profile, curve, range);
    drawIntensityAxis(cairo, plot, range);
    drawDistanceAxis(cairo, plot, profile);
}

// A line of each curve's colour on the plot's ground, and the name of its wavelength.
void drawLegend(cairo_t* cairo, double x, double y, const std::vector<ProfileCurve>& curves)
{
    constexpr double swatch = 22, space = 4, high = 9;
    for (const ProfileCurve& curve : curves) {
        setColor(cairo, plotGround);
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

void drawNotes(cairo_t* cairo, double y, const SegmentProfile& profile)
{
    char text[160];
    std::snprintf(text, sizeof text, "Segment: length %.5g %s, angle %.4g\u00b0, %zu samples",
                  static_cast<double>(profile.length), profile.unit(), static_cast<double>(profile.angle),
                  profile.pixels.size());
    drawText(cairo, margin, y, text);
    if (!profile.calibrated)
        drawText(cairo, margin, y + lineHeight, "The image is not calibrated: lengths are in pixels.");
}

void drawPage(cairo_t* cairo, const Figure& figure, const Layout& layout)
{
    cairo_set_source_rgb(cairo, 1, 1, 1);
    cairo_paint(cairo);
    cairo_select_font_face(cairo, "Sans", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(cairo, textSize);
    cairo_font_options_t* options = cairo_font_options_create();
    cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
    cairo_set_font_options(cairo, options);
    cairo_font_options_destroy(options);
    drawText(cairo, margin, margin + textSize / 2, text::shortened(figure.title, maxTitle));
    drawView(cairo, figure.view, layout.image);
    drawLegend(cairo, layout.plot.x, layout.legend, figure.profile.curves);
    drawPlot(cairo, layout.plot, figure.profile);
    drawNotes(cairo, layout.notes, figure.profile);
}

bool isPng(const std::filesystem::path& path)
{
    return picture::formatOfName(path) == picture::Format::Png;
}

} // namespace

bool hasFigureEnding(const std::filesystem::path& path)
{
    const auto vectors = picture::vectorFormatOfName(path);
    return isPng(path) || (vectors && vectors != picture::VectorFormat::PostScript);
}

void saveFigure(const Figure& figure, const std::filesystem::path& path)
{
    const Layout layout = layOut(figure);
    const auto draw = [&](cairo_t* cairo) { drawPage(cairo, figure, layout); };
    if (isPng(path))
        picture::write(picture::rasterize(layout.page, pngScale, draw), path);
    else
        picture::writeVector(path, layout.page, draw);
}

} // namespace viewer
