// SPDX-License-Identifier: MIT
#include "platform/imagewindow/paint/Labels.h"

#include "platform/imagewindow/paint/Panels.h"
#include "platform/imagewindow/view/Palette.h"
#include "platform/text/Utf8.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace viewer {

namespace {

constexpr std::size_t maxCaption = 200; // characters: a name from a file may be of any length

// At 96 dots per inch, canvas pixels.
constexpr double textSize = 12; // that of the widgets: 9 points
constexpr double haloWidth = 1; // dark pixels around what is light
constexpr double captionLeft = 6, captionTop = 4;
constexpr double barHeight = 4, barMargin = 12, barToText = 5;

void setFont(cairo_t* cairo, double size)
{
    cairo_select_font_face(cairo, "Sans", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(cairo, size);
    // No subpixel rendering: made for one screen, it shows as coloured seams on others and in files.
    cairo_font_options_t* options = cairo_font_options_create();
    cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
    if (cairo_surface_get_type(cairo_get_target(cairo)) != CAIRO_SURFACE_TYPE_IMAGE)
        cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
    cairo_set_font_options(cairo, options);
    cairo_font_options_destroy(options);
}

constexpr Rgb white{255, 255, 255}, black{0, 0, 0};

void setColor(cairo_t* cairo, const Rgb& color)
{
    constexpr double full = 255;
    cairo_set_source_rgb(cairo, color.red / full, color.green / full, color.blue / full);
}

const Rgb& haloOf(const Rgb& color)
{
    return color == black ? white : black;
}

// (x, y): left end of the base line. The halo is an outline, the text itself stays text in a document.
void drawText(cairo_t* cairo, double x, double y, const std::string& text, double scale,
              const Rgb& color = white)
{
    cairo_move_to(cairo, x, y);
    cairo_text_path(cairo, text.c_str());
    setColor(cairo, haloOf(color));
    cairo_set_line_width(cairo, 2 * haloWidth * scale);
    cairo_set_line_join(cairo, CAIRO_LINE_JOIN_ROUND);
    cairo_stroke(cairo);
    cairo_move_to(cairo, x, y);
    setColor(cairo, color);
    cairo_show_text(cairo, text.c_str());
}

void drawCaption(cairo_t* cairo, const Box& panel, const std::string& caption, double scale)
{
    cairo_font_extents_t font;
    cairo_font_extents(cairo, &font);
    drawText(cairo, panel.x + std::round(captionLeft * scale),
             panel.y + std::round(captionTop * scale + font.ascent), caption, scale);
}

// The bar in its corner, its label centred above; under the caption where both are in the same corner.
void drawScaleBar(cairo_t* cairo, const Box& panel, const ScaleBar& bar, bool captioned, double scale)
{
    cairo_text_extents_t text;
    cairo_text_extents(cairo, bar.label.c_str(), &text);
    cairo_font_extents_t font;
    cairo_font_extents(cairo, &font);
    const bool atLeft = bar.corner == BarCorner::LowerLeft || bar.corner == BarCorner::UpperLeft;
    const bool atTop = bar.corner == BarCorner::UpperRight || bar.corner == BarCorner::UpperLeft;
    const double margin = std::round(barMargin * scale), height = std::round(barHeight * scale);
    const double toText = std::round(barToText * scale), halo = haloWidth * scale;
    const double room = std::max<double>(bar.width, text.x_advance);
    const double caption = captioned && atLeft ? std::round(captionTop * scale + font.height) : 0;
    const double top = atTop ? panel.y + margin + caption + std::round(font.ascent) + toText
                             : panel.y + panel.height - margin - height;
    const double right = atLeft ? panel.x + margin + std::ceil(room) : panel.x + panel.width - margin;
    const double left = right - std::floor((room + bar.width) / 2);
    setColor(cairo, haloOf(bar.color));
    cairo_rectangle(cairo, left - halo, top - halo, bar.width + 2 * halo, height + 2 * halo);
    cairo_fill(cairo);
    setColor(cairo, bar.color);
    cairo_rectangle(cairo, left, top, bar.width, height);
    cairo_fill(cairo);
    drawText(cairo, std::round(right - (room + text.x_advance) / 2), top - toText, bar.label, scale,
             bar.color);
}

// Inside the panel's edge.
void drawPlotted(cairo_t* cairo, const Box& panel, double scale)
{
    const double line = std::max(1.0, std::round(scale));
    setColor(cairo, base::annotationRgb);
    cairo_set_line_width(cairo, line);
    cairo_set_line_join(cairo, CAIRO_LINE_JOIN_MITER);
    cairo_rectangle(cairo, panel.x + line / 2, panel.y + line / 2, panel.width - line, panel.height - line);
    cairo_stroke(cairo);
}

} // namespace

void paintLabels(cairo_t* cairo, const Scene& scene)
{
    cairo_save(cairo);
    setFont(cairo, textSize * scene.screenScale);
    for (int panel = 0; panel < static_cast<int>(scene.panels.size()); ++panel) {
        const std::string caption =
            text::shortened(scene.panels[static_cast<std::size_t>(panel)].caption, maxCaption);
        const Box box = panelBox(scene.geometry, panel);
        cairo_save(cairo);
        cairo_rectangle(cairo, box.x, box.y, box.width, box.height);
        cairo_clip(cairo);
        if (std::count(scene.plotted.begin(), scene.plotted.end(), panel) > 0)
            drawPlotted(cairo, box, scene.screenScale);
        if (!caption.empty())
            drawCaption(cairo, box, caption, scene.screenScale);
        if (scene.bar)
            drawScaleBar(cairo, box, *scene.bar, !caption.empty(), scene.screenScale);
        cairo_restore(cairo);
    }
    cairo_restore(cairo);
}

} // namespace viewer
