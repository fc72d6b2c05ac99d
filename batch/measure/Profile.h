// SPDX-License-Identifier: MIT
// The values along one line in one section, and the figures that are made of them.
#pragma once

#include "profile/Walk.h"

#include <cstdint>
#include <vector>

namespace batch {

// Sample i of a digital line is the value of pixels[i]. Sample i of a band is what its bin i, one pixel of
// length from i to i + 1 along the line, has been reduced to: not a number where no pixel fell into it.
struct Profile {
    std::vector<float> values;
    std::vector<double> exact;        // of a band: the values in double precision; else empty
    std::vector<std::int32_t> counts; // of a band: pixels in each bin; else empty
    std::vector<PixelPoint> pixels;   // of a digital line; else empty
    std::int64_t pixelCount = 0;      // that were read

    std::size_t size() const { return values.size(); }
    bool isBand() const { return !counts.empty(); }
    double valueAt(std::size_t i) const { return exact.empty() ? double{values[i]} : exact[i]; }
};

// Of all samples that are numbers; not a number where there is none.
struct Figures {
    double minimum, maximum, mean, sum;
    std::int64_t numbers = 0; // samples that are numbers
    double baseline = 0;      // the level from which the peak's height counts
    double peak = 0;
    std::int32_t peakSample = 0;
    float fwhm = 0; // microns; 0: the curve has no peak that could be measured
};

// step: microns between samples.
Figures figuresOf(const Profile& profile, float step);

} // namespace batch
