// SPDX-License-Identifier: MIT
#include "batch/run/Progress.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace batch {

namespace {

constexpr std::chrono::milliseconds terminalInterval{200};
constexpr std::chrono::minutes logInterval{1};

std::string two(std::int64_t large, const char* largeUnit, std::int64_t small, const char* smallUnit)
{
    return std::to_string(large) + " " + largeUnit + " " + std::to_string(small) + " " + smallUnit;
}

} // namespace

std::string durationText(double seconds)
{
    constexpr double most = 1e9;
    constexpr std::int64_t minute = 60, hour = 60 * minute, day = 24 * hour;
    const auto whole = static_cast<std::int64_t>(std::ceil(std::clamp(seconds, 0.0, most)));
    if (whole < minute)
        return std::to_string(whole) + " s";
    if (whole < hour)
        return two(whole / minute, "min", whole % minute, "s");
    if (whole < day)
        return two(whole / hour, "h", whole % hour / minute, "min");
    return two(whole / day, "d", whole % day / hour, "h");
}

Progress::Progress(bool quietly, std::size_t images)
    : quiet(quietly), terminal(isatty(STDERR_FILENO) != 0), total(images), began(Clock::now()),
      next(began + (terminal ? Clock::duration(terminalInterval) : Clock::duration(logInterval)))
{
}

Progress::~Progress()
{
    clear();
}

std::string Progress::text(double images, std::int64_t profiles) const
{
    const double seconds = std::chrono::duration<double>(Clock::now() - began).count();
    const double share = total > 0 ? images / static_cast<double>(total) : 1;
    char text[160];
    std::snprintf(text, sizeof text, "%3.0f %%  %.0f of %zu images, %lld profiles, %.0f a second",
                  100 * share, std::floor(images), total, static_cast<long long>(profiles),
                  static_cast<double>(profiles) / std::max(seconds, 1e-3));
    return text + (share > 0 ? ", " + durationText(seconds * (1 - share) / share) + " left" : std::string());
}

void Progress::show(double images, std::int64_t profiles)
{
    if (quiet || Clock::now() < next)
        return;
    constexpr std::size_t cells = 24;
    if (terminal) {
        const double share = total > 0 ? images / static_cast<double>(total) : 1;
        const auto full = std::min(cells, static_cast<std::size_t>(share * cells));
        std::fprintf(stderr, "\r\033[K[%s%s] %s", std::string(full, '#').c_str(),
                     std::string(cells - full, '-').c_str(), text(images, profiles).c_str());
        drawn = true;
        next = Clock::now() + terminalInterval;
    } else {
        std::fprintf(stderr, "%s\n", text(images, profiles).c_str());
        next += logInterval;
    }
    std::fflush(stderr);
}

void Progress::clear()
{
    if (drawn)
        std::fputs("\r\033[K", stderr);
    drawn = false;
}

} // namespace batch
