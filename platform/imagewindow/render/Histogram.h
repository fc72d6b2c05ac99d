// SPDX-License-Identifier: MIT
// How often each value occurs in a section: from a sample of bounded size, counted between any two values. No
// X.
#pragma once

#include "platform/image/ImageFile.h"
#include "platform/imagewindow/render/Composite.h"

#include <array>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <span>
#include <utility>
#include <vector>

namespace viewer {

constexpr long histogramValues = 1L << 20; // of a sample: a section of up to 1024 x 1024 pixels is whole

// Values of a section: all of them, or of rows spread evenly over it.
struct SectionSample {
    std::vector<float> values;  // finite ones; empty when the section cannot be read
    bool whole = false;         // every pixel of the section
    ContrastLimits range{0, 0}; // smallest and largest of the values
};
SectionSample readSample(image::ImageFile& file, const image::SectionIndex& section, long limit);

// Counts of values between from.low and from.high in bins of equal width; values beyond are in none.
struct Histogram {
    ContrastLimits axis{0, 1}; // from the lower edge of the first bin to the upper edge of the last one
    std::vector<std::uint32_t> counts;
    std::uint32_t most = 0; // in one bin
};

// At most that many bins. integers: the values are whole numbers, and each bin holds the same number of them,
// so that there are neither gaps nor spikes. from: low < high.
Histogram histogramOf(std::span<const float> values, const ContrastLimits& from, bool integers,
                      std::size_t bins);

// Height of a bar for a count, as a share of the highest one; logarithmic: 1 is still to be seen.
double barShare(std::uint32_t count, std::uint32_t most, bool logarithmic);

// The samples that were asked for last, each read once.
class SampleStore {
public:
    using Key = std::array<int, 6>;
    using Sample = std::shared_ptr<const SectionSample>;
    Sample get(const Key& key, const std::function<SectionSample()>& read);
    void clear() { kept.clear(); }

private:
    std::deque<std::pair<Key, Sample>> kept; // the oldest first
};

} // namespace viewer
