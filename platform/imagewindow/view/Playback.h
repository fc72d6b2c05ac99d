// SPDX-License-Identifier: MIT
// Where playing stands: which section or time point is due at a time. What could not be shown in time is left
// out, so that the rate holds however long a picture takes. Pure: the caller tells the time.
#pragma once

#include "platform/imagewindow/files/PlaySettings.h"

#include <chrono>

namespace viewer {

class Playback {
public:
    using Clock = std::chrono::steady_clock;

    // From index on; the first step is due one interval after now.
    void start(const PlaySettings& play, int index, Clock::time_point now);
    void stop() { on = false; }
    bool running() const { return on; }
    // When the next step is due.
    Clock::time_point due() const { return next; }
    // The index to show now; last: the largest one there is, above 0. A picture that took many intervals
    // leaves out at most a third of the run, or a short one would seem to stand still.
    int indexAt(Clock::time_point now, int last);

private:
    PlaySettings settings;
    bool on = false, backwards = false; // backwards: on the way back to the first one
    int index = 0;
    Clock::time_point next;
};

} // namespace viewer
