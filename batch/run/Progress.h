// SPDX-License-Identifier: MIT
// Tells on standard error how far a run is: a bar that moves on a terminal, one line a minute elsewhere.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

namespace batch {

class Progress {
public:
    // total: images of the run.
    Progress(bool quiet, std::size_t total);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    // images: done, parts of one as a fraction.
    void show(double images, std::int64_t profiles);
    // Takes the bar away.
    void clear();

private:
    using Clock = std::chrono::steady_clock;
    std::string text(double images, std::int64_t profiles) const;

    bool quiet, terminal, drawn = false;
    std::size_t total;
    Clock::time_point began, next;
};

// "25 s", "3 min 10 s", "2 h 5 min", "3 d 4 h".
std::string durationText(double seconds);

} // namespace batch
