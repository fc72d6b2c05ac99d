// SPDX-License-Identifier: MIT
// Pictures of at most 256 colours.
#pragma once

#include "widgets/picture/Picture.h"

#include <vector>

namespace picture {

struct Palette {
    std::vector<std::uint32_t> colors; // 0xRRGGBB, at most 256
    int transparent = -1;              // index of the transparent entry, -1: none
    std::vector<std::uint8_t> indices; // of each pixel
};

// The picture's own colours where they are few enough, else chosen ones. A pixel that is less than half
// opaque is transparent.
Palette paletteOf(const Picture& picture);

inline bool isTransparent(const std::uint8_t* pixel)
{
    return pixel[3] < 128;
}

inline std::uint32_t colorOf(const std::uint8_t* pixel)
{
    return static_cast<std::uint32_t>(pixel[0] << 16 | pixel[1] << 8 | pixel[2]);
}

} // namespace picture
