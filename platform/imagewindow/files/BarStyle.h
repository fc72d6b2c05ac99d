// SPDX-License-Identifier: MIT
// How scale bars look: length, corner and colour. Kept as a setting: the next window begins with it. No X.
#pragma once

#include "platform/base/DisplayColors.h"

#include <array>
#include <string>

namespace viewer {

enum class BarCorner { LowerRight, LowerLeft, UpperRight, UpperLeft };
inline constexpr std::array barCornerNames{"lower right", "lower left", "upper right", "upper left"};

// The display colours, and black for bright images.
inline constexpr auto barColors = [] {
    std::array<base::DisplayColor, base::displayColors.size() + 1> colors{};
    for (std::size_t i = 0; i < base::displayColors.size(); ++i)
        colors[i] = base::displayColors[i];
    colors.back() = {"black", {0, 0, 0}};
    return colors;
}();

struct BarStyle {
    double microns = 0; // 0: the longest round length that takes a quarter of a panel
    BarCorner corner = BarCorner::LowerRight;
    std::size_t color = base::White; // of barColors
    friend bool operator==(const BarStyle&, const BarStyle&) = default;
};

BarStyle loadBarStyle();
// A sentence when it could not be kept, else an empty text.
std::string keepBarStyle(const BarStyle& style);

} // namespace viewer
