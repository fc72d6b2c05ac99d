// SPDX-License-Identifier: MIT
#include "platform/imagewindow/view/Placement.h"

#include <algorithm>

namespace viewer {

namespace {

constexpr int frame = 16;              // of a window manager, on each side
constexpr int frameHeight = 3 * frame; // with the title bar

int within(int start, int side, int room)
{
    return std::max(0, std::min(start, room - side));
}

} // namespace

Place placeBeside(Place window, Size windowSize, Size dialogue, Size screen)
{
    Place place = window;
    if (window.left + windowSize.width + dialogue.width + 2 * frame <= screen.width)
        place.left += windowSize.width + frame;
    else if (window.left - dialogue.width - 2 * frame >= 0)
        place.left -= dialogue.width + frame;
    else if (window.top + windowSize.height + dialogue.height + frameHeight + frame <= screen.height)
        place.top += windowSize.height + frameHeight;
    return placeWithin(place, dialogue, screen);
}

Place placeWithin(Place dialogue, Size size, Size screen)
{
    return {within(dialogue.left, size.width + frame, screen.width),
            within(dialogue.top, size.height + frameHeight, screen.height)};
}

} // namespace viewer
