// SPDX-License-Identifier: MIT
#include "platform/imagewindow/paint/NavigatorPaint.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace viewer {

namespace {

constexpr double smallestMark = 5; // canvas pixels at 96 dots per inch

void drawImage(cairo_t* cairo, const Navigator& place, const Overview::Image& image)
{
    cairo_rectangle(cairo, place.x, place.y, place.width, place.height);
    cairo_set_source_rgb(cairo, 0.1, 0.1, 0.1);
    cairo_fill(cairo);
    if (image.pixels.empty())
        return;
    // Cairo reads the pixels alone, and not beyond this function.
    auto* data = reinterpret_cast<unsigned char*>(const_cast<std::uint32_t*>(image.pixels.data()));
    cairo_surface_t* surface = cairo_image_surface_create_for_data(data, CAIRO_FORMAT_RGB24, image.size.width,
                                                                   image.size.height, image.size.width * 4);
    cairo_save(cairo);
    cairo_translate(cairo, place.x, place.y);
    cairo_scale(cairo, static_cast<double>(place.width) / image.size.width,
                static_cast<double>(place.height) / image.size.height);
    cairo_set_source_surface(cairo, surface, 0, 0);
    cairo_pattern_set_filter(cairo_get_source(cairo), CAIRO_FILTER_NEAREST);
    cairo_paint(cairo);
    cairo_restore(cairo);
    cairo_surface_destroy(surface);
}

// A light line between dark ones, on whole pixels.
void drawFrame(cairo_t* cairo, const Navigator::Part& part, double light, double scale)
{
    const double line = std::max(1.0, std::round(scale));
    const double left = std::round(part.x), top = std::round(part.y);
    const double width = std::round(part.width), height = std::round(part.height);
    const auto draw = [&](double grey, double thickness) {
        cairo_set_source_rgb(cairo, grey, grey, grey);
        cairo_set_line_width(cairo, thickness);
        cairo_rectangle(cairo, left + line / 2, top + line / 2, width - line, height - line);
        cairo_stroke(cairo);
    };
    draw(0, 3 * line);
    draw(light, line);
}

} // namespace

void paintNavigator(cairo_t* cairo, const ShownNavigator& navigator, double screenScale)
{
    const Navigator& place = navigator.place;
    const double line = std::max(1.0, std::round(screenScale));
    Navigator::Part mark = place.visible;
    for (const auto side : {&Navigator::Part::width, &Navigator::Part::height})
        mark.*side = std::max(mark.*side, smallestMark * screenScale);
    mark.x = std::min(mark.x, place.x + place.width - mark.width);
    mark.y = std::min(mark.y, place.y + place.height - mark.height);
    cairo_save(cairo);
    drawFrame(cairo, {place.x - line, place.y - line, place.width + 2 * line, place.height + 2 * line}, 0.5,
              screenScale);
    drawImage(cairo, place, navigator.image);
    drawFrame(cairo, mark, 1, screenScale);
    cairo_restore(cairo);
}

} // namespace viewer
