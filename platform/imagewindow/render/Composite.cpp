// SPDX-License-Identifier: MIT
#include "platform/imagewindow/render/Composite.h"

#include <algorithm>
#include <array>

namespace viewer {

namespace {

// Pixels that are summed before the next channel is touched: the accumulator stays in the first-level cache.
constexpr std::size_t blockPixels = 2048;

float slopeOf(const ContrastLimits& limits)
{
    return limits.high > limits.low ? 255.0f / (limits.high - limits.low) : 3.4e38f;
}

// Comparisons are written so that not-a-number fails them and ends at 0. Half is added by hand: the library's
// rounding cannot be vectorised.
inline std::uint32_t level(float value, float low, float slope)
{
    const float scaled = (value - low) * slope;
    const float positive = scaled > 0.0f ? scaled : 0.0f;
    return static_cast<std::uint32_t>(
        static_cast<std::int32_t>((positive < 255.0f ? positive : 255.0f) + 0.5f));
}

using Accumulator = std::array<std::uint16_t, blockPixels>;

// Full components need no product, which is every component of every wavelength colour.
void addComponent(const Accumulator& levels, std::size_t count, std::uint8_t component, Accumulator& sum)
{
    if (component == 0)
        return;
    if (component == 255) {
        for (std::size_t i = 0; i < count; ++i)
            sum[i] = static_cast<std::uint16_t>(sum[i] + levels[i]);
        return;
    }
    for (std::size_t i = 0; i < count; ++i)
        sum[i] = static_cast<std::uint16_t>(sum[i] + (levels[i] * component + 127) / 255);
}

void composeBlock(std::span<const CompositeChannel> channels, std::size_t first, std::span<std::uint32_t> out)
{
    Accumulator red{}, green{}, blue{}, levels;
    for (const CompositeChannel& channel : channels) {
        const float* values = channel.values.data() + first;
        const float low = channel.limits.low, slope = slopeOf(channel.limits);
        for (std::size_t i = 0; i < out.size(); ++i)
            levels[i] = static_cast<std::uint16_t>(level(values[i], low, slope));
        addComponent(levels, out.size(), channel.color.red, red);
        addComponent(levels, out.size(), channel.color.green, green);
        addComponent(levels, out.size(), channel.color.blue, blue);
    }
    for (std::size_t i = 0; i < out.size(); ++i) {
        const std::uint32_t r = std::min<std::uint32_t>(red[i], 255),
                            g = std::min<std::uint32_t>(green[i], 255),
                            b = std::min<std::uint32_t>(blue[i], 255);
        out[i] = r << 16 | g << 8 | b;
    }
}

} // namespace

std::uint8_t brightness(float value, const ContrastLimits& limits)
{
    return static_cast<std::uint8_t>(level(value, limits.low, slopeOf(limits)));
}

void compose(std::span<const CompositeChannel> channels, std::span<std::uint32_t> out)
{
    for (std::size_t first = 0; first < out.size(); first += blockPixels)
        composeBlock(channels, first, out.subspan(first, std::min(blockPixels, out.size() - first)));
}

} // namespace viewer
