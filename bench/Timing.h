// SPDX-License-Identifier: MIT
// Times pieces of work in turn, so that the figures of one run can be compared although the machine's speed
// drifts.
#pragma once

#include <algorithm>
#include <chrono>
#include <functional>
#include <vector>

namespace bench {

using Clock = std::chrono::steady_clock;

inline double microsecondsSince(Clock::time_point start)
{
    return std::chrono::duration<double, std::micro>(Clock::now() - start).count();
}

// Quantile q (0 to 1) of the samples; 0 when there are none.
inline double quantile(std::vector<double> samples, double q)
{
    if (samples.empty())
        return 0;
    std::sort(samples.begin(), samples.end());
    return samples[static_cast<size_t>(q * static_cast<double>(samples.size() - 1))];
}

// Runs the pieces in turn, A B A B ..., and returns the median time of each in microseconds. The first round
// warms up.
inline std::vector<double> medians(const std::vector<std::function<void()>>& pieces, int rounds)
{
    std::vector<std::vector<double>> times(pieces.size());
    for (int round = 0; round <= rounds; ++round)
        for (size_t i = 0; i < pieces.size(); ++i) {
            const auto start = Clock::now();
            pieces[i]();
            if (round > 0)
                times[i].push_back(microsecondsSince(start));
        }
    std::vector<double> result;
    result.reserve(times.size());
    for (auto& samples : times)
        result.push_back(quantile(std::move(samples), 0.5));
    return result;
}

} // namespace bench
