// SPDX-License-Identifier: MIT
#include "platform/imagewindow/render/Contrast.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

namespace viewer {

namespace {

constexpr double flatFraction = 0.8;        // of the neighbours in a label image are equal, at least
constexpr float underlayBrightness = 0.25F; // of full brightness

float valueAtFraction(std::vector<float>& values, double fraction)
{
    const auto rank =
        static_cast<std::ptrdiff_t>(std::llround(fraction * static_cast<double>(values.size() - 1)));
    std::nth_element(values.begin(), values.begin() + rank, values.end());
    return values[static_cast<std::size_t>(rank)];
}

// Interleaved colour arrives as three 8-bit wavelengths in red, green and blue that name no emission.
bool isBrightField(const image::ImageInfo& info)
{
    if (info.sizeW != 3 || info.pixelType != image::PixelType::UInt8)
        return false;
    const auto& w = info.wavelengths;
    const auto anonymous = [](const image::Wavelength& wave) { return wave.nanometres <= 0; };
    return w[0].colorIndex == 1 && w[1].colorIndex == 2 && w[2].colorIndex == 4 &&
           std::all_of(w.begin(), w.end(), anonymous);
}

// The smallest level that still has a quarter of the values asked for.
int sampleLevel(const image::ImageFile& file, long limit)
{
    for (int level = file.levelCount() - 1; level > 0; --level)
        if (static_cast<long>(file.levelWidth(level)) * file.levelHeight(level) >= limit / 4)
            return level;
    return 0;
}

} // namespace

bool hasFlatAreas(const std::vector<float>& values, float low)
{
    std::size_t pairs = 0, equal = 0;
    for (std::size_t i = 1; i < values.size(); ++i)
        if (values[i] > low && values[i - 1] > low) {
            ++pairs;
            equal += values[i] == values[i - 1];
        }
    return pairs > 0 && static_cast<double>(equal) > flatFraction * static_cast<double>(pairs);
}

ContrastLimits automaticLimits(std::vector<float>& values)
{
    std::erase_if(values, [](float value) { return !std::isfinite(value); });
    if (values.empty())
        return {0, 1};
    ContrastLimits limits{valueAtFraction(values, darkFraction), valueAtFraction(values, brightFraction)};
    const float median = valueAtFraction(values, 0.5);
    if (median < limits.high && median - limits.low < (limits.high - limits.low) / 3)
        limits.low = median;
    // A sparse image has its few bright pixels above the upper fraction: show those rather than nothing.
    if (limits.low == limits.high) {
        const auto [min, max] = std::minmax_element(values.begin(), values.end());
        limits = {*min, *max};
    }
    if (limits.low == limits.high)
        limits.high = std::nextafter(limits.low + 1.0f, std::numeric_limits<float>::max());
    return limits;
}

ContrastLimits underlayLimits(const std::vector<float>& values, const ContrastLimits& limits)
{
    std::vector<float> bright;
    std::copy_if(values.begin(), values.end(), std::back_inserter(bright),
                 [&](float value) { return std::isfinite(value) && value > limits.low; });
    const bool flat = hasFlatAreas(values, limits.low);
    const bool mostly = bright.size() > values.size() * 3 / 4;
    if (bright.empty() || (!flat && !mostly))
        return limits;
    const float usual = flat ? limits.high : valueAtFraction(bright, 0.5);
    return {limits.low, std::max(limits.high, limits.low + (usual - limits.low) / underlayBrightness)};
}

std::optional<ContrastLimits> fixedLimits(const image::ImageInfo& info, int wavelength)
{
    const image::Wavelength& wave = info.wavelengths.at(static_cast<std::size_t>(wavelength));
    if (wave.displayMin && wave.displayMax && *wave.displayMin < *wave.displayMax)
        return ContrastLimits{*wave.displayMin, *wave.displayMax};
    if (isBrightField(info))
        return ContrastLimits{0, 255};
    if (info.pixelType == image::PixelType::Bit)
        return ContrastLimits{0, 1};
    return std::nullopt;
}

ContrastLimits contrastSpan(const ContrastLimits& limits, const ContrastLimits& range)
{
    const float width = limits.high - limits.low;
    ContrastLimits span{limits.low - width, limits.high + 2 * width};
    if (range.low < range.high) {
        span.low = std::min(limits.low, std::max(span.low, range.low));
        span.high = std::max(limits.high, std::min(span.high, range.high));
    }
    return span;
}

ContrastLimits withLow(ContrastLimits limits, float low, float step)
{
    return {low, std::max(limits.high, low + step)};
}

ContrastLimits withHigh(ContrastLimits limits, float high, float step)
{
    return {std::min(limits.low, high - step), high};
}

std::vector<float> sampleSection(image::ImageFile& file, const image::SectionIndex& section, long limit)
{
    if (!file.hasSection(section))
        return {};
    const int level = sampleLevel(file, limit);
    const long width = file.levelWidth(level), height = file.levelHeight(level);
    const long rowStep = std::max(1L, (width * height + limit - 1) / limit);
    const long columnStep = std::max(1L, width / limit);
    std::vector<float> values, row(static_cast<std::size_t>(width));
    for (long y = rowStep / 2; y < height; y += rowStep) {
        const image::PixelRect rect{0, static_cast<int>(y), static_cast<int>(width) - 1, static_cast<int>(y)};
        if (!file.readLevel(section, level, rect, row))
            return {};
        for (long x = 0; x < width; x += columnStep)
            values.push_back(row[static_cast<std::size_t>(x)]);
    }
    return values;
}

} // namespace viewer
