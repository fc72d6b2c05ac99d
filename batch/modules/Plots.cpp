// SPDX-License-Identifier: MIT
// The module that draws plots: a page with the curves of a line in one section, axes, legend and the line's
// figures.
#include "batch/results/Modules.h"
#include "platform/plot/ProfilePlot.h"
#include "platform/text/Utf8.h"
#include "widgets/picture/Codecs.h"
#include "widgets/picture/OutputFile.h"
#include "widgets/picture/VectorFile.h"

#include <cairo-pdf.h>

#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace {

using batch::Record;

// Points, 1/72 inch.
constexpr double margin = 24, plotWidth = 420, plotHeight = 200, pngScale = 150.0 / 72;
constexpr std::size_t maxTitle = 80, maxCurves = 32; // characters; channels of a plot

plot::ProfilePlot plotOf(const batch::PlotOrder& order)
{
    const Record::Facts& facts = order.channels.front().facts;
    const auto count = static_cast<double>(order.channels.front().values.size());
    plot::ProfilePlot plot;
    plot.length = double{facts.length};
    plot.step = facts.band ? plot.length / facts.pixelLength : plot.length / count;
    plot.first = facts.band ? plot.step / 2 : 0;
    plot.unit = facts.calibrated ? "\u00b5m" : "pixels";
    plot.scaling = order.logAxis ? plot::Scaling::Logarithmic : plot::Scaling::Linear;
    plot.bridged = facts.band;
    for (const Record& channel : order.channels) {
        const std::string name =
            channel.channel.empty() ? "channel " + std::to_string(channel.facts.w + 1) : channel.channel;
        const auto color = static_cast<std::size_t>(channel.facts.colorIndex);
        plot.curves.push_back(
            {name, base::textColors[color < base::textColors.size() ? color : 0], channel.values});
        if (plot.curves.size() == maxCurves)
            break;
    }
    return plot;
}

std::string titleOf(const Record& record)
{
    const std::string where = "   p " + std::to_string(record.facts.p + 1) + "  t " +
                              std::to_string(record.facts.t + 1) + "  z " +
                              std::to_string(record.facts.z + 1);
    return text::shortened(std::filesystem::path(record.image).filename().string(), maxTitle / 2) + "   " +
           text::shortened(record.line, maxTitle / 2) + where;
}

std::string notesOf(const Record& record)
{
    char notes[160];
    std::snprintf(notes, sizeof notes, "Length %.5g %s, angle %.4g\u00b0, %zu %s",
                  double{record.facts.length}, record.facts.calibrated ? "\u00b5m" : "pixels",
                  double{record.facts.angle}, record.values.size(), record.facts.band ? "bins" : "samples");
    return notes;
}

void drawPage(cairo_t* cairo, const batch::PlotOrder& order)
{
    const plot::ProfilePlot plot = plotOf(order);
    const plot::Frame frame{margin + plot::axisWidth, margin + 3 * plot::lineHeight, plotWidth, plotHeight};
    cairo_set_source_rgb(cairo, 1, 1, 1);
    cairo_paint(cairo);
    plot::chooseFont(cairo);
    plot::drawText(cairo, margin, margin, titleOf(order.channels.front()));
    plot::drawLegend(cairo, frame.x, frame.y - plot::lineHeight / 2, plot.curves);
    plot::drawPlot(cairo, frame, plot);
    plot::drawText(cairo, margin, frame.y + frame.height + 4 * plot::lineHeight,
                   notesOf(order.channels.front()));
}

// A page that is drawn again is the same to the byte: cairo notes the time of drawing in a PDF.
void leaveOutTime(cairo_t* cairo)
{
    if (cairo_surface_t* const target = cairo_get_target(cairo);
        cairo_surface_get_type(target) == CAIRO_SURFACE_TYPE_PDF)
        cairo_pdf_surface_set_metadata(target, CAIRO_PDF_METADATA_CREATE_DATE, "");
}

// cairo names the page of an SVG by the number of surfaces that the process has made; nothing refers to it.
void leaveOutSurfaceNumber(std::vector<std::byte>& svg)
{
    constexpr std::string_view name = " id=\"surface";
    const std::string_view text(reinterpret_cast<const char*>(svg.data()), svg.size());
    const std::size_t at = text.find(name);
    if (at == std::string_view::npos)
        return;
    const auto begin = svg.begin() + static_cast<std::ptrdiff_t>(at);
    const auto length = text.find('"', at + name.size()) + 1 - at;
    svg.erase(begin, begin + static_cast<std::ptrdiff_t>(length));
}

std::vector<std::byte> encoded(const batch::PlotOrder& order)
{
    const picture::PageSize page{plotWidth + plot::axisWidth + 2 * margin,
                                 plotHeight + 2 * margin + 7 * plot::lineHeight};
    const auto draw = [&](cairo_t* cairo) {
        leaveOutTime(cairo);
        drawPage(cairo, order);
    };
    if (const auto format = picture::vectorFormatOfName(order.path)) {
        std::vector<std::byte> bytes = picture::encodeVector(*format, page, draw);
        if (*format == picture::VectorFormat::Svg)
            leaveOutSurfaceNumber(bytes);
        return bytes;
    }
    return picture::encodePng(picture::rasterize(page, pngScale, draw));
}

} // namespace

// C linkage for a plain name alone: program and module are both of this C++.
// NOLINTNEXTLINE(clang-diagnostic-return-type-c-linkage)
extern "C" std::string batchWritePlot(const batch::PlotOrder& order)
{
    try {
        return picture::replaceFile(order.path, encoded(order));
    } catch (const std::exception& error) {
        return error.what();
    }
}
