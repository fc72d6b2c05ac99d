// SPDX-License-Identifier: MIT
// Pictures of the screen.
#include "drive/Screen.h"

#include <X11/Xutil.h>
#include <png.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <utility>

namespace drive {

bool Picture::save(const std::string& path) const
{
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(width);
    image.height = static_cast<png_uint_32>(height);
    image.format = PNG_FORMAT_RGB;
    return png_image_write_to_file(&image, path.c_str(), 0, pixels.data(), 0, nullptr) != 0;
}

namespace {

struct FreeImage {
    void operator()(XImage* image) const { XDestroyImage(image); }
};
using Image = std::unique_ptr<XImage, FreeImage>;

Rect wholeScreen(Display* display)
{
    return {0, 0, DisplayWidth(display, DefaultScreen(display)),
            DisplayHeight(display, DefaultScreen(display))};
}

// What the screen shows in the area, which must lie on it.
Image grab(Display* display, const Rect& area)
{
    Image image(XGetImage(display, DefaultRootWindow(display), area.x, area.y,
                          static_cast<unsigned>(area.width), static_cast<unsigned>(area.height), AllPlanes,
                          ZPixmap));
    if (!image || image->bits_per_pixel != 32)
        throw std::runtime_error("the screen has no pixels of 32 bits");
    return image;
}

std::span<const char> bytesOf(const Image& image)
{
    return {image->data, static_cast<size_t>(image->bytes_per_line) * static_cast<size_t>(image->height)};
}

Pixel pixelOf(std::uint32_t value)
{
    return {static_cast<unsigned char>(value >> 16), static_cast<unsigned char>(value >> 8),
            static_cast<unsigned char>(value)};
}

} // namespace

Picture Screen::capture(const Rect& area)
{
    const Rect whole = wholeScreen(display);
    const int left = std::max(area.x, 0), top = std::max(area.y, 0);
    Picture picture;
    picture.width = std::min(area.x + area.width, whole.width) - left;
    picture.height = std::min(area.y + area.height, whole.height) - top;
    if (picture.width <= 0 || picture.height <= 0)
        return {};
    const Image image = grab(display, {left, top, picture.width, picture.height});
    picture.pixels.resize(static_cast<size_t>(picture.width) * static_cast<size_t>(picture.height));
    const auto* const values = reinterpret_cast<const std::uint32_t*>(image->data);
    std::transform(values, values + picture.pixels.size(), picture.pixels.begin(), pixelOf);
    return picture;
}

Picture Screen::capture(Window window)
{
    return capture(geometry(window));
}

Picture Screen::captureScreen()
{
    return capture(wholeScreen(display));
}

bool waitUntilCalm(Screen& screen)
{
    constexpr int looks = 8;
    constexpr Milliseconds betweenLooks{15};
    Image last = grab(screen.x(), wholeScreen(screen.x()));
    int equal = 0;
    return waitUntil(
        [&] {
            Image now = grab(screen.x(), wholeScreen(screen.x()));
            equal = std::ranges::equal(bytesOf(now), bytesOf(last)) ? equal + 1 : 0;
            last = std::move(now);
            return equal >= looks;
        },
        patience, betweenLooks);
}

} // namespace drive
