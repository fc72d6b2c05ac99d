// SPDX-License-Identifier: MIT
#include "platform/imagewindow/view/Playback.h"

#include <algorithm>

namespace viewer {

namespace {

Playback::Clock::duration intervalOf(const PlaySettings& play)
{
    return std::chrono::duration_cast<Playback::Clock::duration>(
        std::chrono::duration<double>(1 / play.rate));
}

} // namespace

void Playback::start(const PlaySettings& play, int from, Clock::time_point now)
{
    settings = play;
    index = from;
    on = true;
    backwards = false;
    next = now + intervalOf(settings);
}

int Playback::indexAt(Clock::time_point now, int last)
{
    if (now < next)
        return index;
    const auto interval = intervalOf(settings);
    const auto due = 1 + (now - next) / interval;
    next += due * interval;
    const int count = last + 1, steps = static_cast<int>(std::min<long>(due, std::max(1, count / 3)));
    index = std::min(index, last); // of a run that has become shorter
    if (settings.atEnd == PlayEnd::Loop)
        return index = (index + steps) % count;
    // There and back is one loop of twice the length.
    const int round = 2 * last, place = ((backwards ? round - index : index) + steps) % round;
    backwards = place > last;
    return index = backwards ? round - place : place;
}

} // namespace viewer
