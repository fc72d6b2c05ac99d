// SPDX-License-Identifier: MIT
#include "batch/measure/Profile.h"
#include "profile/Fwhm.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <span>
#include <vector>

namespace batch {

namespace {

// Four sums side by side do not wait for each other; which sample goes to which is always the same.
constexpr std::size_t lanes = 4;

struct Totals {
    double sum = 0, minimum = std::numeric_limits<double>::infinity(), maximum = -minimum;
    std::int64_t numbers = 0;
};

// False when a value is no number, or infinite: then *totals are not complete.
template<class Value> bool totalsOfNumbers(std::span<const Value> values, Totals& totals)
{
    double sums[lanes] = {};
    Value low[lanes], high[lanes];
    std::fill_n(low, lanes, std::numeric_limits<Value>::infinity());
    std::fill_n(high, lanes, -std::numeric_limits<Value>::infinity());
    std::size_t i = 0;
    for (; i + lanes <= values.size(); i += lanes)
        for (std::size_t lane = 0; lane < lanes; ++lane) {
            const Value value = values[i + lane];
            sums[lane] += static_cast<double>(value);
            low[lane] = value < low[lane] ? value : low[lane];
            high[lane] = value > high[lane] ? value : high[lane];
        }
    for (; i < values.size(); ++i) {
        sums[0] += static_cast<double>(values[i]);
        low[0] = std::min(low[0], values[i]);
        high[0] = std::max(high[0], values[i]);
    }
    totals.sum = sums[0] + sums[1] + (sums[2] + sums[3]);
    totals.minimum = static_cast<double>(*std::min_element(low, low + lanes));
    totals.maximum = static_cast<double>(*std::max_element(high, high + lanes));
    totals.numbers = static_cast<std::int64_t>(values.size());
    return std::isfinite(totals.sum);
}

template<class Value> Totals totalsOf(std::span<const Value> values)
{
    Totals totals;
    if (totalsOfNumbers(values, totals))
        return totals;
    std::vector<Value> numbers;
    std::ranges::copy_if(values, std::back_inserter(numbers), [](Value v) { return std::isfinite(v); });
    totalsOfNumbers(std::span<const Value>(numbers), totals);
    return totals;
}

// Empty bins stand on the straight line between their neighbours: what a curve through the others shows.
void bridge(std::vector<float>& values)
{
    std::size_t last = values.size();
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (std::isnan(values[i]))
            continue;
        for (std::size_t gap = last + 1; last < values.size() && gap < i; ++gap)
            values[gap] = values[last] + (values[i] - values[last]) * static_cast<float>(gap - last) /
                                             static_cast<float>(i - last);
        last = i;
    }
}

float widthOf(const Profile& profile, float step)
{
    const auto count = static_cast<std::int32_t>(profile.size());
    if (count < fwhmMinSamples)
        return 0;
    if (std::ranges::count(profile.counts, 0) == 0)
        return peakFwhm(profile.values.data(), count, step);
    std::vector<float> bridged = profile.values;
    bridge(bridged);
    return peakFwhm(bridged.data(), count, step);
}

} // namespace

Figures figuresOf(const Profile& profile, float step)
{
    const Totals totals = profile.exact.empty() ? totalsOf(std::span<const float>(profile.values))
                                                : totalsOf(std::span<const double>(profile.exact));
    constexpr double none = std::numeric_limits<double>::quiet_NaN();
    Figures figures{none, none, none, none};
    figures.numbers = totals.numbers;
    if (totals.numbers == 0)
        return figures;
    figures.minimum = totals.minimum;
    figures.maximum = totals.maximum;
    figures.mean = totals.sum / static_cast<double>(totals.numbers);
    figures.sum = totals.sum;
    const ProfilePeak peak = findPeak(profile.values.data(), static_cast<std::int32_t>(profile.size()));
    figures.peakSample = peak.index;
    figures.peak = profile.valueAt(static_cast<std::size_t>(peak.index));
    figures.baseline = double{peak.lowest};
    figures.fwhm = widthOf(profile, step);
    return figures;
}

} // namespace batch
