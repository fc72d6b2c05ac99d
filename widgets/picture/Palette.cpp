// SPDX-License-Identifier: MIT
#include "widgets/picture/Palette.h"

#include <algorithm>
#include <gif_lib.h>
#include <unordered_map>
#include <vector>

namespace picture {

namespace {

constexpr std::size_t maxColors = 256;

// False when the picture has more colours than the palette may hold.
bool takeExact(const Picture& picture, Palette& palette)
{
    std::unordered_map<std::uint32_t, std::uint8_t> known;
    for (std::size_t i = 0; i < picture.pixelCount(); ++i) {
        const std::uint8_t* pixel = &picture.rgba[i * 4];
        if (isTransparent(pixel)) {
            palette.indices.push_back(static_cast<std::uint8_t>(palette.transparent));
            continue;
        }
        const auto [entry, added] =
            known.try_emplace(colorOf(pixel), static_cast<std::uint8_t>(palette.colors.size()));
        if (added && palette.colors.size() == maxColors)
            return false;
        if (added)
            palette.colors.push_back(entry->first);
        palette.indices.push_back(entry->second);
    }
    return true;
}

// giflib wants red, green and blue in planes of their own.
Palette quantised(const Picture& picture)
{
    const std::size_t count = picture.pixelCount();
    std::vector<GifByteType> red(count), green(count), blue(count);
    for (std::size_t i = 0; i < count; ++i) {
        red[i] = picture.rgba[i * 4];
        green[i] = picture.rgba[i * 4 + 1];
        blue[i] = picture.rgba[i * 4 + 2];
    }
    Palette palette;
    palette.indices.resize(count);
    int size = static_cast<int>(maxColors) - 1; // one is left for what is transparent
    GifColorType colors[maxColors] = {};
    if (GifQuantizeBuffer(static_cast<unsigned>(picture.width), static_cast<unsigned>(picture.height), &size,
                          red.data(), green.data(), blue.data(), palette.indices.data(), colors) == GIF_ERROR)
        throw PictureError("There is no memory to choose the colours of the picture.");
    for (int i = 0; i < size; ++i)
        palette.colors.push_back(
            static_cast<std::uint32_t>(colors[i].Red << 16 | colors[i].Green << 8 | colors[i].Blue));
    return palette;
}

void markTransparent(const Picture& picture, Palette& palette)
{
    palette.transparent = static_cast<int>(palette.colors.size());
    palette.colors.push_back(0);
    for (std::size_t i = 0; i < picture.pixelCount(); ++i)
        if (isTransparent(&picture.rgba[i * 4]))
            palette.indices[i] = static_cast<std::uint8_t>(palette.transparent);
}

bool hasTransparency(const Picture& picture)
{
    for (std::size_t i = 0; i < picture.pixelCount(); ++i)
        if (isTransparent(&picture.rgba[i * 4]))
            return true;
    return false;
}

} // namespace

Palette paletteOf(const Picture& picture)
{
    const bool transparency = hasTransparency(picture);
    Palette palette;
    palette.indices.reserve(picture.pixelCount());
    if (transparency) {
        palette.transparent = 0;
        palette.colors.push_back(0);
    }
    if (takeExact(picture, palette))
        return palette;
    palette = quantised(picture);
    if (transparency)
        markTransparent(picture, palette);
    return palette;
}

} // namespace picture
