// SPDX-License-Identifier: MIT
// The colours of wavelengths and overlay graphics as the viewer shows them.
#pragma once

#include "platform/base/DisplayColors.h"

#include <array>
#include <cstddef>

namespace viewer {

using base::Rgb;

// The display colours and after them the annotation colour, by index.
constexpr auto palette = [] {
    std::array<Rgb, base::displayColors.size() + 1> colors{};
    for (std::size_t i = 0; i < base::displayColors.size(); ++i)
        colors[i] = base::displayColors[i].rgb;
    colors[base::annotationColor] = base::annotationRgb;
    return colors;
}();

// The same colours where they stand as text on the dark controls: pure red and blue are too dim there.
constexpr std::array<Rgb, palette.size()> textPalette{{{240, 240, 240},
                                                       {255, 110, 100},
                                                       {90, 220, 110},
                                                       {235, 215, 80},
                                                       {120, 160, 255},
                                                       {240, 130, 240},
                                                       {90, 215, 225},
                                                       base::annotationRgb}};

// Text of what is switched off.
constexpr Rgb dimmedText{118, 122, 126};

// The index itself when it names a colour, else 0.
constexpr int colorIndexOrWhite(int index)
{
    return index >= 0 && index < static_cast<int>(palette.size()) ? index : 0;
}

} // namespace viewer
