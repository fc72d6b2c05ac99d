// SPDX-License-Identifier: MIT
#include "platform/base/Placement.h"

#include <algorithm>
#include <iterator>

namespace base {
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

} // namespace

Rectangle keptOnScreen(const Rectangle& window, const Rectangle& screen)
{
    return {keepWithin(window.x, window.width, screen.x, screen.width),
            keepWithin(window.y, window.height, screen.y, screen.height), window.width, window.height};
}

Rectangle placeBeside(const Rectangle& fixed, const Rectangle& moving, const Rectangle& screen)
{
    const auto at = [&](int x, int y) { return keptOnScreen({x, y, moving.width, moving.height}, screen); };
    const int farX = screen.x + screen.width, farY = screen.y + screen.height;
    const Rectangle choices[] = {
        at(fixed.x + fixed.width + gap, fixed.y),
        at(fixed.x - gap - moving.width, fixed.y),
        at(fixed.x, fixed.y + fixed.height + gap),
        at(farX, screen.y),
        at(screen.x, screen.y),
        at(farX, farY),
        at(screen.x, farY),
    };
    return *std::min_element(
        std::begin(choices), std::end(choices),
        [&](const Rectangle& a, const Rectangle& b) { return overlap(a, fixed) < overlap(b, fixed); });
}

} // namespace base
