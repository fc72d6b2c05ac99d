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

// The same on the dark controls.
inline constexpr const auto& textPalette = base::textColors;

// Text of what is switched off.
constexpr Rgb dimmedText{118, 122, 126};

// The index itself when it names a colour, else 0.
constexpr int colorIndexOrWhite(int index)
{
    return index >= 0 && index < static_cast<int>(palette.size()) ? index : 0;
}

} // namespace viewer
