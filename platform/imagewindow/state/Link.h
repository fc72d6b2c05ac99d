// SPDX-License-Identifier: MIT
// What linked windows have in common: section, time point, zoom, and the place in the image that is in the
// middle. One follows a change of another as far as its own image has it. No X.
#pragma once

#include "platform/imagewindow/state/Shown.h"

namespace viewer {

struct LinkState {
    int z = 0, t = 0;
    bool fit = false;
    double zoom = 0, middleX = 0, middleY = 0; // image pixels; all 0 where the image fits the window
    friend bool operator==(const LinkState&, const LinkState&) = default;
};

struct LinkChange {
    LinkState before, now;
};

LinkState linkStateOf(const Shown& shown);

// Takes over what has changed.
void follow(Shown& shown, const LinkChange& change);

} // namespace viewer
