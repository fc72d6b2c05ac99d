// SPDX-License-Identifier: MIT
// Finds in a picture what a line is worth drawing along. Pure.
#pragma once

#include "drive/Screen.h"

namespace drive {

// In pixels of a picture.
struct Line {
    double x0 = 0, y0 = 0, x1 = 0, y1 = 0;
};

// Along the longest and brightest straight structure, or the darkest one where the picture has a bright edge,
// with some of the ground at both ends. Across the middle when nothing stands out.
Line longestStructure(const Picture& picture);

} // namespace drive
