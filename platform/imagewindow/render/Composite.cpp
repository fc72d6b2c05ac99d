// SPDX-License-Identifier: MIT
#include "platform/imagewindow/render/Composite.h"

#include <algorithm>
#include <cmath>

namespace viewer {

namespace {

// Pixels that are summed before the next channel is touched: the accumulator stays in the first-level cache.
constexpr std::size_t blockPixels = 2048;

float slopeOf(const ContrastLimits& limits, float steps)
{
    return limits.high > limits.low ? steps / (limits.high - limits.low) : 3.4e38f;
}

// 0 to steps. Comparisons are written so that not-a-number fails them and ends at 0. Half is added by hand:
// the library's rounding cannot be vectorised.
inline std::uint32_t level(float value, float low, float slope, float steps)
{
    const float scaled = (value - low) * slope;
    const float positive = scaled > 0.0f ? scaled : 0.0f;
    const float rounded =
        (positive < steps ? positive : steps) + 0.5f; // by the cast below, which cuts the fraction off
    return static_cast<std::uint32_t>(static_cast<std::int32_t>(rounded));
}

using Accumulator = std::array<std::uint16_t, blockPixels>;

void findLevels(const CompositeChannel& channel, std::size_t first, std::size_t count, Accumulator& levels)
{
    const float* values = channel.values.data() + first;
    const float steps = channel.gamma ? gammaSteps : 255;
    const float low = channel.limits.low, slope = slopeOf(channel.limits, steps);
    for (std::size_t i = 0; i < count; ++i)
        levels[i] = static_cast<std::uint16_t>(level(values[i], low, slope, steps));
    if (channel.gamma)
        for (std::size_t i = 0; i < count; ++i)
            levels[i] = (*channel.gamma)[levels[i]];
}

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

struct Sums {
    Accumulator red, green, blue;

    // pixels: none, or count.
    Sums(const std::uint32_t* pixels, std::size_t count)
    {
        if (!pixels)
            for (Accumulator* sum : {&red, &green, &blue})
                std::fill_n(sum->begin(), count, std::uint16_t{0});
        else
            for (std::size_t i = 0; i < count; ++i) {
                red[i] = static_cast<std::uint16_t>(pixels[i] >> 16 & 255);
                green[i] = static_cast<std::uint16_t>(pixels[i] >> 8 & 255);
                blue[i] = static_cast<std::uint16_t>(pixels[i] & 255);
            }
    }

    void pack(std::span<std::uint32_t> out) const
    {
        for (std::size_t i = 0; i < out.size(); ++i) {
            const std::uint32_t r = std::min<std::uint32_t>(red[i], 255),
                                g = std::min<std::uint32_t>(green[i], 255),
                                b = std::min<std::uint32_t>(blue[i], 255);
            out[i] = r << 16 | g << 8 | b;
        }
    }
};

void composeBlock(std::span<const CompositeChannel> channels, const std::uint32_t* base, std::size_t first,
                  std::span<std::uint32_t> out)
{
    Sums sums(base, out.size());
    Accumulator levels;
    for (const CompositeChannel& channel : channels) {
        findLevels(channel, first, out.size(), levels);
        addComponent(levels, out.size(), channel.color.red, sums.red);
        addComponent(levels, out.size(), channel.color.green, sums.green);
        addComponent(levels, out.size(), channel.color.blue, sums.blue);
    }
    sums.pack(out);
}

} // namespace

std::shared_ptr<const GammaTable> gammaTable(float gamma)
{
    if (gamma == 1)
        return nullptr;
    auto table = std::make_shared<GammaTable>();
    const double exponent = std::clamp(gamma, minGamma, maxGamma);
    for (std::size_t i = 0; i < table->size(); ++i)
        (*table)[i] = static_cast<std::uint8_t>(
            std::lround(255 * std::pow(static_cast<double>(i) / gammaSteps, exponent)));
    return table;
}

std::uint8_t brightness(float value, const ContrastLimits& limits)
{
    return static_cast<std::uint8_t>(level(value, limits.low, slopeOf(limits, 255), 255));
}

// Adding to a composite gives the same as composing all channels at once, even where it has saturated: a
// component at 255 stays there whatever is added.
void compose(std::span<const CompositeChannel> channels, std::span<const std::uint32_t> base,
             std::span<std::uint32_t> out)
{
    for (std::size_t first = 0; first < out.size(); first += blockPixels)
        composeBlock(channels, base.empty() ? nullptr : base.data() + first, first,
                     out.subspan(first, std::min(blockPixels, out.size() - first)));
}

} // namespace viewer
