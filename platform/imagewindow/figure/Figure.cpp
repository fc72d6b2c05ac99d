// SPDX-License-Identifier: MIT
#include "platform/imagewindow/figure/Figure.h"

#include "platform/plot/ProfilePlot.h"
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
constexpr double pageWidth = 480, margin = 24;
constexpr double maxImageHeight = 400, plotHeight = 180;
constexpr double pngScale = 300.0 / 72;
constexpr std::size_t maxTitle = 90; // characters

using plot::axisWidth;
using plot::drawText;
using plot::Frame;
using plot::lineHeight;

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

void drawView(cairo_t* cairo, const SavedView& view, const Frame& frame)
{
    cairo_save(cairo);
    cairo_translate(cairo, frame.x, frame.y);
    cairo_scale(cairo, frame.width / view.canvas.width, frame.height / view.canvas.height);
    paintView(cairo, view);
    cairo_restore(cairo);
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
    plot::chooseFont(cairo);
    drawText(cairo, margin, margin + plot::textSize / 2, text::shortened(figure.title, maxTitle));
    drawView(cairo, figure.view, layout.image);
    plot::drawLegend(cairo, layout.plot.x, layout.legend, figure.profile.curves);
    const SegmentProfile& profile = figure.profile;
    plot::drawPlot(cairo, layout.plot, {profile.curves, profile.length, 0, profile.step, profile.unit()});
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
