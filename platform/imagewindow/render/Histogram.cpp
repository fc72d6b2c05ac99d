// SPDX-License-Identifier: MIT
#include "platform/imagewindow/render/Histogram.h"

#include "platform/imagewindow/render/Contrast.h"

#include <algorithm>
#include <cmath>

namespace viewer {

namespace {

constexpr std::size_t keptSamples = 8; // more than are shown at a time, 4 MB each at most

struct Bins {
    double low, width;
    std::size_t count;
};

Bins binsFor(const ContrastLimits& from, bool integers, std::size_t most)
{
    if (!integers)
        return {from.low, (static_cast<double>(from.high) - from.low) / static_cast<double>(most), most};
    const double low = std::floor(from.low), values = std::floor(from.high) - low + 1;
    const double width = std::ceil(values / static_cast<double>(most));
    return {low, width, static_cast<std::size_t>(std::ceil(values / width))};
}

} // namespace

SectionSample readSample(image::ImageFile& file, const image::SectionIndex& section, long limit)
{
    SectionSample sample;
    sample.values = sampleSection(file, section, limit);
    sample.whole =
        static_cast<long>(sample.values.size()) == static_cast<long>(file.info().width) * file.info().height;
    std::erase_if(sample.values, [](float value) { return !std::isfinite(value); });
    if (!sample.values.empty()) {
        const auto [min, max] = std::minmax_element(sample.values.begin(), sample.values.end());
        sample.range = {*min, *max};
    }
    return sample;
}

Histogram histogramOf(std::span<const float> values, const ContrastLimits& from, bool integers,
                      std::size_t most)
{
    const Bins bins = binsFor(from, integers, most);
    Histogram histogram;
    histogram.counts.assign(bins.count, 0);
    histogram.axis = {static_cast<float>(bins.low),
                      static_cast<float>(bins.low + bins.width * static_cast<double>(bins.count))};
    const double perValue = 1 / bins.width;
    for (const float value : values) {
        if (!(value >= from.low && value <= from.high))
            continue;
        const auto bin = static_cast<std::size_t>((value - bins.low) * perValue);
        ++histogram.counts[std::min(bin, bins.count - 1)];
    }
    histogram.most = *std::max_element(histogram.counts.begin(), histogram.counts.end());
    return histogram;
}

double barShare(std::uint32_t count, std::uint32_t most, bool logarithmic)
{
    if (count == 0 || most == 0)
        return 0;
    return logarithmic ? std::log1p(count) / std::log1p(most) : static_cast<double>(count) / most;
}

SampleStore::Sample SampleStore::get(const Key& key, const std::function<SectionSample()>& read)
{
    const auto found =
        std::find_if(kept.begin(), kept.end(), [&](const auto& entry) { return entry.first == key; });
    if (found != kept.end())
        return found->second;
    if (kept.size() == keptSamples)
        kept.pop_front();
    kept.emplace_back(key, std::make_shared<const SectionSample>(read()));
    return kept.back().second;
}

} // namespace viewer
