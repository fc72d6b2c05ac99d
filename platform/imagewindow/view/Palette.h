// The display colours that wavelengths and overlay graphics name by index.
#pragma once

#include <array>
#include <cstdint>

namespace viewer {

struct Rgb {
    std::uint8_t red = 0, green = 0, blue = 0;
    friend bool operator==(const Rgb&, const Rgb&) = default;
};

constexpr int annotationColor = 7;

// 0 white, 1 red, 2 green, 3 yellow, 4 blue, 5 magenta, 6 cyan, 7 the annotation colour (amber).
constexpr std::array<Rgb, 8> palette{{{255, 255, 255},
                                      {255, 0, 0},
                                      {0, 255, 0},
                                      {255, 255, 0},
                                      {0, 0, 255},
                                      {255, 0, 255},
                                      {0, 255, 255},
                                      {255, 184, 28}}};

// The colours that a wavelength can have, by index.
inline constexpr std::array waveColorNames{"white", "red", "green", "yellow", "blue", "magenta", "cyan"};

// The same colours where they stand as text on the dark controls: pure red and blue are too dim there.
constexpr std::array<Rgb, 8> textPalette{{{240, 240, 240},
                                          {255, 110, 100},
                                          {90, 220, 110},
                                          {235, 215, 80},
                                          {120, 160, 255},
                                          {240, 130, 240},
                                          {90, 215, 225},
                                          {255, 184, 28}}};

// Text of what is switched off.
constexpr Rgb dimmedText{118, 122, 126};

// The index itself when it names a colour, else 0.
constexpr int colorIndexOrWhite(int index)
{
    return index >= 0 && index < static_cast<int>(palette.size()) ? index : 0;
}

} // namespace viewer
