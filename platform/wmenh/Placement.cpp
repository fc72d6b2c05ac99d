// SPDX-License-Identifier: MIT
#include "platform/wmenh/Placement.h"

#include <algorithm>
#include <iterator>

namespace wmenh {
namespace {

constexpr int gap = 4; // between the two frames

// The nearest start at which length stays within first .. first + room.
int keepWithin(int start, int length, int first, int room)
{
    return std::max(first, std::min(start, first + room - length));
}

long overlap(const Rectangle& a, const Rectangle& b)
{
    const long width = std::min(a.x + a.width, b.x + b.width) - std::max(a.x, b.x);
    const long height = std::min(a.y + a.height, b.y + b.height) - std::max(a.y, b.y);
    return std::max(0L, width) * std::max(0L, height);
}

Rectangle moved(const Rectangle& moving, int x, int y, const Rectangle& screen)
{
    return {keepWithin(x, moving.width, screen.x, screen.width),
            keepWithin(y, moving.height, screen.y, screen.height), moving.width, moving.height};
}

} // namespace

Rectangle placeBeside(const Rectangle& fixed, const Rectangle& moving, const Rectangle& screen)
{
    const int farX = screen.x + screen.width, farY = screen.y + screen.height;
    const Rectangle choices[] = {
        moved(moving, fixed.x + fixed.width + gap, fixed.y, screen),
        moved(moving, fixed.x - gap - moving.width, fixed.y, screen),
        moved(moving, fixed.x, fixed.y + fixed.height + gap, screen),
        moved(moving, farX, screen.y, screen),
        moved(moving, screen.x, screen.y, screen),
        moved(moving, farX, farY, screen),
        moved(moving, screen.x, farY, screen),
    };
    return *std::min_element(
        std::begin(choices), std::end(choices),
        [&](const Rectangle& a, const Rectangle& b) { return overlap(a, fixed) < overlap(b, fixed); });
}

} // namespace wmenh
