// SPDX-License-Identifier: MIT
#include "platform/imagewindow/controls/Icons.h"

#include "widgets/picture/VectorFile.h"

#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace viewer {

namespace {

constexpr double thickness = 1.6; // of the lines; all figures are in a square of iconSide units
constexpr double pi = std::numbers::pi;
constexpr base::Rgb accent{143, 180, 230};

void setColor(cairo_t* cairo, const base::Rgb& color, double opacity = 1)
{
    cairo_set_source_rgba(cairo, color.red / 255.0, color.green / 255.0, color.blue / 255.0, opacity);
}

// A line through points: x, y, x, y...
void line(cairo_t* cairo, std::initializer_list<double> points, bool closed = false)
{
    for (const double* p = points.begin(); p != points.end(); p += 2)
        cairo_line_to(cairo, p[0], p[1]);
    if (closed)
        cairo_close_path(cairo);
    cairo_stroke(cairo);
}

void area(cairo_t* cairo, std::initializer_list<double> points)
{
    for (const double* p = points.begin(); p != points.end(); p += 2)
        cairo_line_to(cairo, p[0], p[1]);
    cairo_close_path(cairo);
    cairo_fill(cairo);
}

void box(cairo_t* cairo, double x, double y, double width, double height)
{
    cairo_rectangle(cairo, x, y, width, height);
    cairo_stroke(cairo);
}

void filledBox(cairo_t* cairo, double x, double y, double width, double height)
{
    cairo_rectangle(cairo, x, y, width, height);
    cairo_fill(cairo);
}

void circle(cairo_t* cairo, double x, double y, double radius)
{
    cairo_new_sub_path(cairo);
    cairo_arc(cairo, x, y, radius, 0, 2 * pi);
    cairo_stroke(cairo);
}

void drawOpen(cairo_t* cairo, const base::Rgb&)
{
    line(cairo, {2.5, 16.5, 2.5, 4.5, 7.5, 4.5, 9.5, 6.5, 15.5, 6.5, 15.5, 9});
    line(cairo, {2.5, 16.5, 5.5, 9, 18, 9, 15, 16.5}, true);
}

void drawSave(cairo_t* cairo, const base::Rgb&)
{
    line(cairo, {2.5, 11.5, 2.5, 17, 17.5, 17, 17.5, 11.5});
    line(cairo, {10, 2.5, 10, 12.5});
    line(cairo, {6, 8.5, 10, 12.5, 14, 8.5});
}

void drawCopy(cairo_t* cairo, const base::Rgb&)
{
    line(cairo, {6, 13.5, 2.5, 13.5, 2.5, 2.5, 13.5, 2.5, 13.5, 6});
    box(cairo, 6.5, 6.5, 11, 11);
}

void drawLens(cairo_t* cairo)
{
    circle(cairo, 8.5, 8.5, 6);
    cairo_set_line_width(cairo, 2.4);
    line(cairo, {13.2, 13.2, 17.5, 17.5});
    cairo_set_line_width(cairo, thickness);
}

void drawZoomOut(cairo_t* cairo, const base::Rgb&)
{
    drawLens(cairo);
    line(cairo, {5.5, 8.5, 11.5, 8.5});
}

void drawZoomIn(cairo_t* cairo, const base::Rgb& ink)
{
    drawZoomOut(cairo, ink);
    line(cairo, {8.5, 5.5, 8.5, 11.5});
}

void drawOneToOne(cairo_t* cairo, const base::Rgb&)
{
    cairo_set_line_width(cairo, 2);
    for (const double x : {5.5, 15.5})
        line(cairo, {x - 2.5, 6.5, x, 4.5, x, 15.5});
    for (const double y : {6.8, 11.4})
        filledBox(cairo, 9.2, y, 2, 2);
}

void drawFit(cairo_t* cairo, const base::Rgb&)
{
    for (const double x : {-1.0, 1.0})
        for (const double y : {-1.0, 1.0})
            line(cairo, {10 + x * 3, 10 + y * 7.5, 10 + x * 7.5, 10 + y * 7.5, 10 + x * 7.5, 10 + y * 3});
    filledBox(cairo, 6.5, 7, 7, 6);
}

void drawSinglePanel(cairo_t* cairo, const base::Rgb& ink)
{
    box(cairo, 3, 3, 14, 14);
    setColor(cairo, ink, 0.35);
    filledBox(cairo, 5.5, 5.5, 9, 9);
}

void drawPanels(cairo_t* cairo)
{
    for (const double x : {2.5, 11.0})
        for (const double y : {2.5, 11.0})
            box(cairo, x, y, 6.5, 6.5);
}

// Sections one behind the other.
void drawZPanels(cairo_t* cairo, const base::Rgb& ink)
{
    drawPanels(cairo);
    setColor(cairo, accent);
    cairo_set_line_width(cairo, 1.3);
    for (const double y : {13.0, 15.5})
        line(cairo, {12.6, y, 15.9, y});
    setColor(cairo, ink, 0.6);
    for (const double y : {4.5, 7.0})
        line(cairo, {4.1, y, 7.4, y});
}

void drawWavelengthPanels(cairo_t* cairo, const base::Rgb&)
{
    constexpr struct {
        double x, y;
        base::Rgb color;
    } places[] = {{3.4, 3.4, {255, 96, 90}},
                  {11.9, 3.4, {84, 208, 100}},
                  {3.4, 11.9, {110, 150, 255}},
                  {11.9, 11.9, {235, 215, 80}}};
    drawPanels(cairo);
    for (const auto& place : places) {
        setColor(cairo, place.color);
        filledBox(cairo, place.x, place.y, 4.7, 4.7);
    }
}

// A clock's hands in the last of the panels.
void drawTimePanels(cairo_t* cairo, const base::Rgb&)
{
    line(cairo, {9, 2.5, 2.5, 2.5, 2.5, 9, 9, 9}, true);
    line(cairo, {17.5, 6, 17.5, 2.5, 12, 2.5});
    line(cairo, {6, 17.5, 2.5, 17.5, 2.5, 12});
    setColor(cairo, accent);
    circle(cairo, 12.8, 12.8, 5);
    line(cairo, {12.8, 9.8, 12.8, 12.8, 15, 14});
}

void drawScaleBar(cairo_t* cairo, const base::Rgb&)
{
    filledBox(cairo, 2, 12, 16, 3.4);
    line(cairo, {3, 5, 3, 9});
    line(cairo, {17, 5, 17, 9});
    line(cairo, {3, 7, 17, 7});
}

void drawContrast(cairo_t* cairo, const base::Rgb&)
{
    circle(cairo, 10, 10, 7);
    cairo_arc(cairo, 10, 10, 7, -pi / 2, pi / 2);
    cairo_fill(cairo);
}

// A half disc, and the letter that stands for automatic.
void drawAutomaticContrast(cairo_t* cairo, const base::Rgb&)
{
    cairo_arc(cairo, 8, 8, 5.8, pi / 8, 1.5 * pi + pi / 2.6);
    cairo_stroke(cairo);
    cairo_arc(cairo, 8, 8, 5.8, pi / 2, 1.5 * pi);
    cairo_fill(cairo);
    setColor(cairo, accent);
    cairo_set_line_width(cairo, 1.9);
    line(cairo, {10.2, 18, 14.2, 8.6, 18.2, 18});
    line(cairo, {11.8, 15, 16.6, 15});
}

void drawSidePanel(cairo_t* cairo, const base::Rgb& ink)
{
    box(cairo, 2.5, 3.5, 15, 13);
    setColor(cairo, accent);
    filledBox(cairo, 11.8, 4.6, 4.8, 10.8);
    setColor(cairo, ink);
    line(cairo, {11, 3.5, 11, 16.5});
}

void drawLineProfile(cairo_t* cairo, const base::Rgb&)
{
    line(cairo, {2.8, 2.5, 2.8, 17.2, 18, 17.2});
    setColor(cairo, accent);
    cairo_move_to(cairo, 4.5, 14.5);
    cairo_curve_to(cairo, 9, 14.5, 8, 4, 10.5, 4);
    cairo_curve_to(cairo, 13, 4, 12, 14.5, 17.5, 13);
    cairo_stroke(cairo);
}

void drawPlay(cairo_t* cairo, const base::Rgb&)
{
    area(cairo, {5, 3, 16.5, 10, 5, 17});
}

void drawPause(cairo_t* cairo, const base::Rgb&)
{
    filledBox(cairo, 4.5, 3.5, 4, 13);
    filledBox(cairo, 11.5, 3.5, 4, 13);
}

void drawMontage(cairo_t* cairo, const base::Rgb&)
{
    for (const double x : {2.4, 8.0, 13.6})
        for (const double y : {2.4, 8.0, 13.6})
            filledBox(cairo, x, y, 4, 4);
}

// Sections that fall onto one.
void drawProjection(cairo_t* cairo, const base::Rgb&)
{
    for (const double y : {3.0, 6.5})
        line(cairo, {4, y, 16, y});
    line(cairo, {10, 8.8, 10, 13});
    line(cairo, {7.3, 10.6, 10, 13.2, 12.7, 10.6});
    setColor(cairo, accent);
    filledBox(cairo, 3, 15, 14, 2.6);
}

void drawNavigator(cairo_t* cairo, const base::Rgb&)
{
    box(cairo, 2.5, 3.5, 15, 13);
    setColor(cairo, accent);
    box(cairo, 9, 8.5, 6, 5.5);
}

void drawPrevious(cairo_t* cairo, const base::Rgb&)
{
    cairo_set_line_width(cairo, 2.2);
    line(cairo, {12.5, 3.5, 6, 10, 12.5, 16.5});
}

void drawNext(cairo_t* cairo, const base::Rgb&)
{
    cairo_set_line_width(cairo, 2.2);
    line(cairo, {7.5, 3.5, 14, 10, 7.5, 16.5});
}

// Three quarters around, and an arrowhead.
void drawReset(cairo_t* cairo, const base::Rgb&)
{
    cairo_arc(cairo, 10, 10.5, 6.5, -pi / 2, pi);
    cairo_stroke(cairo);
    area(cairo, {10.5, 0.8, 10.5, 7.2, 5.8, 4});
}

void drawMetadata(cairo_t* cairo, const base::Rgb&)
{
    circle(cairo, 10, 10, 7.5);
    cairo_set_line_width(cairo, 2.2);
    line(cairo, {10, 9.4, 10, 14.4});
    filledBox(cairo, 8.8, 5, 2.4, 2.4);
}

using Drawing = void (*)(cairo_t*, const base::Rgb& ink);

constexpr struct {
    std::string_view name;
    Drawing draw;
} icons[] = {
    {"open", drawOpen},
    {"save", drawSave},
    {"copy", drawCopy},
    {"zoomIn", drawZoomIn},
    {"zoomOut", drawZoomOut},
    {"oneToOne", drawOneToOne},
    {"fit", drawFit},
    {"singlePanel", drawSinglePanel},
    {"zPanels", drawZPanels},
    {"wavelengthPanels", drawWavelengthPanels},
    {"timePanels", drawTimePanels},
    {"scaleBar", drawScaleBar},
    {"contrast", drawContrast},
    {"automaticContrast", drawAutomaticContrast},
    {"sidePanel", drawSidePanel},
    {"lineProfile", drawLineProfile},
    {"play", drawPlay},
    {"pause", drawPause},
    {"montage", drawMontage},
    {"projection", drawProjection},
    {"navigator", drawNavigator},
    {"previous", drawPrevious},
    {"next", drawNext},
    {"reset", drawReset},
    {"metadata", drawMetadata},
};

Drawing drawingOf(std::string_view name)
{
    const auto found =
        std::find_if(std::begin(icons), std::end(icons), [&](const auto& icon) { return icon.name == name; });
    return found == std::end(icons) ? nullptr : found->draw;
}

} // namespace

bool hasIcon(std::string_view name)
{
    return drawingOf(name) != nullptr;
}

picture::Picture iconPicture(std::string_view name, const base::Rgb& ink, double scale)
{
    // Whole pixels, whatever the scale.
    const double side = std::round(iconSide * scale);
    return picture::rasterize({side, side}, 1, [&](cairo_t* cairo) {
        cairo_scale(cairo, side / iconSide, side / iconSide);
        cairo_set_line_width(cairo, thickness);
        cairo_set_line_cap(cairo, CAIRO_LINE_CAP_ROUND);
        cairo_set_line_join(cairo, CAIRO_LINE_JOIN_ROUND);
        setColor(cairo, ink);
        drawingOf(name)(cairo, ink);
    });
}

} // namespace viewer
