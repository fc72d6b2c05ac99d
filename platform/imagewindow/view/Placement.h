// SPDX-License-Identifier: MIT
// Where a dialogue stands on the screen. Pure; screen pixels.
#pragma once

#include "platform/imagewindow/view/View.h"

namespace viewer {

struct Place {
    int left = 0, top = 0;
    friend bool operator==(const Place&, const Place&) = default;
};

// Of a dialogue of that size: right or left of its window or below it, where there is room, else over it;
// whole on the screen if it fits there at all, its title bar in any case.
Place placeBeside(Place window, Size windowSize, Size dialogue, Size screen);

// Of a dialogue that has stood there and has that size now: there, or as far left and up as its frame needs.
Place placeWithin(Place dialogue, Size size, Size screen);

} // namespace viewer
