// SPDX-License-Identifier: MIT
#include "platform/imagewindow/paint/Pixels.h"

#include <memory>

namespace viewer {

void paintOn(std::span<std::uint32_t> pixels, Size size, const std::function<void(cairo_t*)>& draw)
{
    constexpr int pixelBytes = 4; // and so each row starts where cairo wants it
    const std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)> surface(
        cairo_image_surface_create_for_data(reinterpret_cast<unsigned char*>(pixels.data()),
                                            CAIRO_FORMAT_RGB24, size.width, size.height,
                                            size.width * pixelBytes),
        cairo_surface_destroy);
    const std::unique_ptr<cairo_t, decltype(&cairo_destroy)> cairo(cairo_create(surface.get()),
                                                                   cairo_destroy);
    draw(cairo.get());
    cairo_surface_flush(surface.get());
}

} // namespace viewer
