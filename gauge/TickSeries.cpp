// SPDX-License-Identifier: MIT
#include "gauge/TickSeries.h"

#include <algorithm>
#include <cmath>

namespace gauge {

namespace {

constexpr int firstTickSteps = 2000;

double finiteOr(double value, double otherwise)
{
    return std::isfinite(value) ? value : otherwise;
}

} // namespace

double firstTick(const TickSeries& series, double min, bool align)
{
    const double increment = series.increment;
    if (increment == 0.0 || !std::isfinite(increment))
        return min;
    double start = align ? std::floor(series.start / increment) * increment : series.start;
    for (int step = 0; step < firstTickSteps; ++step) {
        if (start + step * increment > min)
            return start + step * increment;
    }
    return min;
}

TickSeries completed(TickSeries series, const Range& range, double increment)
{
    series.increment = increment;
    const bool stepped = increment > 0.0 && std::isfinite(increment);
    if (series.start == unsetValue)
        series.start =
            stepped ? finiteOr(std::floor(range.low / increment) * increment, range.low) : range.low;
    if (series.stop == unsetValue)
        series.stop =
            stepped ? finiteOr(std::ceil(range.high / increment) * increment, range.high) : range.high;
    return series;
}

std::vector<double> tickValues(const TickSeries& series, const Range& range, bool align, int pixels)
{
    const bool stepped = series.increment > 0.0 && std::isfinite(series.increment);
    double first = firstTick(series, range.low, align);
    if (stepped && first > range.low && first - range.low <= range.slack)
        first += series.increment;
    const double high = std::min(series.stop, range.high);
    const double last = finiteOr(high + range.slack, high);
    if (!(first <= last))
        return {};
    const double pixel = range.size() / pixels;
    const double step = std::max(1.0, std::ceil(pixel / series.increment)) * series.increment;
    if (!stepped || !std::isfinite(step) || first + step == first)
        return {first};
    std::vector<double> values;
    for (int k = 0; k <= pixels && first + k * step <= last; ++k) {
        double value = first + k * step;
        values.push_back(std::fabs(value) < step * 1e-6 ? 0.0 : value);
    }
    return values;
}

double finestIncrement(const Range& range)
{
    const double largest = std::max(std::fabs(range.low), std::fabs(range.high));
    return 8.0 * (largest - std::nextafter(largest, 0.0));
}

} // namespace gauge
