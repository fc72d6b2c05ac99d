// SPDX-License-Identifier: MIT
// The additive composite: pixel values of several wavelengths, each stretched between its two contrast limits
// and tinted with its display colour, summed into packed 0x00RRGGBB pixels. Pure arithmetic; called by
// Renderer.
#pragma once

#include "platform/imagewindow/view/Palette.h"

#include <cstdint>
#include <span>

namespace viewer {

// The values that become black and full brightness; the same unit as the pixels. low < high, else a step at
// low.
struct ContrastLimits {
    float low = 0, high = 255;
    friend bool operator==(const ContrastLimits&, const ContrastLimits&) = default;
};

struct CompositeChannel {
    std::span<const float> values; // one per pixel
    ContrastLimits limits;
    Rgb color;
};

// Brightness 0 to 255 of a value: linear between the limits, rounded to nearest; not-a-number is black.
std::uint8_t brightness(float value, const ContrastLimits& limits);

// Fills out with the sum of all channels, each component saturating at 255. Every channel has out.size()
// values. A colour component c at brightness b adds round(b * c / 255).
void compose(std::span<const CompositeChannel> channels, std::span<std::uint32_t> out);

} // namespace viewer
