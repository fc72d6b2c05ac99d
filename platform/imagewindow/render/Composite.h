// SPDX-License-Identifier: MIT
// The additive composite: pixel values of several wavelengths, each stretched between its two contrast
// limits, bent by its gamma and tinted with its display colour, summed into packed 0x00RRGGBB pixels. Pure
// arithmetic; called by Renderer.
#pragma once

#include "platform/imagewindow/view/Palette.h"

#include <array>
#include <cstdint>
#include <memory>
#include <span>

namespace viewer {

// The values that become black and full brightness; the same unit as the pixels. low < high, else a step at
// low.
struct ContrastLimits {
    float low = 0, high = 255;
    friend bool operator==(const ContrastLimits&, const ContrastLimits&) = default;
};

// How what is between the limits becomes bright: share of full brightness = share of the way from low to
// high, to the power of gamma. Below 1 what is dark becomes brighter.
constexpr float minGamma = 0.1F, maxGamma = 10;

// The brightness, 0 to 255, at each of equal steps from the one limit to the other.
constexpr int gammaSteps = 1 << 14; // a small gamma is steep near black
using GammaTable = std::array<std::uint8_t, gammaSteps + 1>;
std::shared_ptr<const GammaTable> gammaTable(float gamma);

struct CompositeChannel {
    std::span<const float> values; // one per pixel
    ContrastLimits limits;
    Rgb color;
    std::shared_ptr<const GammaTable> gamma{}; // null: 1
};

// Brightness 0 to 255 of a value: linear between the limits, rounded to nearest; not-a-number is black.
std::uint8_t brightness(float value, const ContrastLimits& limits);

// Fills out with the sum of all channels, each component saturating at 255. Every channel has out.size()
// values. A colour component c at brightness b adds round(b * c / 255). base: pixels that the channels are
// added to, out.size() or none; a composite of some channels can be given instead of these channels.
void compose(std::span<const CompositeChannel> channels, std::span<const std::uint32_t> base,
             std::span<std::uint32_t> out);
inline void compose(std::span<const CompositeChannel> channels, std::span<std::uint32_t> out)
{
    compose(channels, {}, out);
}

} // namespace viewer
