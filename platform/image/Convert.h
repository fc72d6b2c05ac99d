// SPDX-License-Identifier: MIT
// Stored samples to floats: the inner loops of every read.
#pragma once

#include "platform/image/TiffStructure.h"

#include <cstddef>
#include <span>

namespace image {

// A rectangle inside a decoded block. Rows start rowBytes apart; a pixel has `samples` samples of which
// number `sample` is wanted. first is the block's first byte; x and y are counted from the block's top left
// pixel.
struct SampleSource {
    const std::byte* first = nullptr;
    std::size_t rowBytes = 0;
    int samples = 1, sample = 0;
    int bits = 8; // of one sample
    int x = 0, y = 0, width = 0, height = 0;
};

// Writes row by row to out; rows of out start outStride values apart.
using Converter = void (*)(const SampleSource& source, float* out, std::size_t outStride);

Converter converterOf(SampleType type);

int bytesOf(SampleType type); // of one sample; 0 for packed bits

// Reverses the bytes of every sample in place. Packed bits stay.
void swapSamples(std::span<std::byte> data, SampleType type);

// out[i] = out[i] * gain + offset
void rescale(std::span<float> values, float gain, float offset);

// Smallest and largest finite value; false when there is none.
bool finiteRange(std::span<const float> values, float& min, float& max);

} // namespace image
