// SPDX-License-Identifier: MIT
// The values at which an axis has its ticks. For the layout of ticks, and for tests.
#pragma once

#include <limits>
#include <vector>

namespace gauge {

// Stands for a value that was not set.
inline constexpr double unsetValue = std::numeric_limits<double>::max();

// Increment, first and last candidate of a row of ticks.
struct TickSeries {
    double increment = unsetValue;
    double start = unsetValue;
    double stop = unsetValue;
};

// The scale's range in label values. Values closer to an end than `slack` count as being at that end: callers
// work in single precision, and the sum of a length and an offset is not exact.
struct Range {
    double low;
    double high;
    double slack;

    double size() const { return high - low; }
};

// The first tick above min: series.start, aligned down to a multiple of the increment first if `align`, plus
// as many increments as needed. It is min itself when the increment is 0 or 2000 increments were not enough.
double firstTick(const TickSeries& series, double min, bool align);

// The series with its increment; what is unset of start and stop goes to the whole multiples around the
// range, or to its ends where the increment is not above 0 or not finite. The increment
// is not computed again for the wider range: the axis would only get fewer ticks, and those outside the scale
// are never drawn.
TickSeries completed(TickSeries series, const Range& range, double increment);

// The ticks of a series within a range that `pixels` pixels show: above its low end, up to its high end, and
// no more than one to a pixel.
std::vector<double> tickValues(const TickSeries& series, const Range& range, bool align, int pixels);

// The smallest increment at which neighbouring ticks of a range are certain to have different values. Doubles
// near the range are no closer to each other than an eighth of it.
double finestIncrement(const Range& range);

} // namespace gauge
