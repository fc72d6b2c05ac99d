// SPDX-License-Identifier: MIT
// The values of a picture as its file holds them, for who measures in it: no gamma, no scaling to 8 bits, no
// background under what is transparent. Every byte of a file is untrusted.
#pragma once

#include "widgets/picture/Codecs.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace picture {

// Row by row from the top left, the values of a pixel together.
struct Samples {
    int width = 0, height = 0;
    int perPixel = 1; // 1: grey; 3: red, green, blue
    int bits = 8;     // of a value; above 8 it takes two bytes, in the machine's order
    std::vector<std::byte> bytes;

    std::size_t bytesPerValue() const { return bits > 8 ? 2 : 1; }
};

// More is refused.
constexpr std::size_t maxSampleBytes = std::size_t{1} << 29;

// Opacity is left out. Colour tables are looked up; a picture of which all colours are grey is grey. Throw
// FormatError.
Samples samplesOfPng(Bytes bytes);
Samples samplesOfJpeg(Bytes bytes);
Samples samplesOfGif(Bytes bytes); // the first image of an animation

// Room for the values, after a check of the size. Throws FormatError.
void allot(Samples& samples, std::uint64_t width, std::uint64_t height);

// Red, green and blue of 8 bits each become one value where they are equal in all pixels.
void reduceGrey(Samples& samples);

} // namespace picture
