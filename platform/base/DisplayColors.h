// SPDX-License-Identifier: MIT
// The display colours that wavelengths and overlay graphics name by index.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace base {

struct Rgb {
    std::uint8_t red = 0, green = 0, blue = 0;
    friend bool operator==(const Rgb&, const Rgb&) = default;
};

// Indices of displayColors.
enum ColorIndex { White, Red, Green, Yellow, Blue, Magenta, Cyan };

struct DisplayColor {
    const char* name;
    Rgb rgb;
};
inline constexpr std::array<DisplayColor, 7> displayColors{{{"white", {255, 255, 255}},
                                                            {"red", {255, 0, 0}},
                                                            {"green", {0, 255, 0}},
                                                            {"yellow", {255, 255, 0}},
                                                            {"blue", {0, 0, 255}},
                                                            {"magenta", {255, 0, 255}},
                                                            {"cyan", {0, 255, 255}}}};

// Overlay graphics have one colour more: amber, which no wavelength is shown in.
constexpr int annotationColor = static_cast<int>(displayColors.size());
constexpr Rgb annotationRgb{255, 184, 28};

// The same colours where they stand as text or curves on a dark ground: pure red and blue are too dim there.
inline constexpr std::array<Rgb, displayColors.size() + 1> textColors{{{240, 240, 240},
                                                                       {255, 110, 100},
                                                                       {90, 220, 110},
                                                                       {235, 215, 80},
                                                                       {120, 160, 255},
                                                                       {240, 130, 240},
                                                                       {90, 215, 225},
                                                                       annotationRgb}};

// Whether an overlay graphic can have the colour.
constexpr bool isGraphicsColor(int index)
{
    return index >= 0 && index <= annotationColor;
}

// "0 white, 1 red, ...": for help texts.
inline std::string listOfDisplayColors()
{
    std::string list;
    for (std::size_t i = 0; i < displayColors.size(); ++i)
        list += (i > 0 ? ", " : "") + std::to_string(i) + " " + displayColors[i].name;
    return list;
}

} // namespace base
