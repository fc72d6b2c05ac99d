#include "platform/suite/Placement.h"

#include <algorithm>
#include <iterator>

namespace suite {
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

Rectangle moved(const Rectangle& tool, int x, int y, const Rectangle& screen)
{
    return {keepWithin(x, tool.width, screen.x, screen.width),
            keepWithin(y, tool.height, screen.y, screen.height), tool.width, tool.height};
}

} // namespace

Rectangle placeBeside(const Rectangle& image, const Rectangle& tool, const Rectangle& screen)
{
    const int farX = screen.x + screen.width, farY = screen.y + screen.height;
    const Rectangle choices[] = {
        moved(tool, image.x + image.width + gap, image.y, screen),
        moved(tool, image.x - gap - tool.width, image.y, screen),
        moved(tool, image.x, image.y + image.height + gap, screen),
        moved(tool, farX, screen.y, screen),
        moved(tool, screen.x, screen.y, screen),
        moved(tool, farX, farY, screen),
        moved(tool, screen.x, farY, screen),
    };
    return *std::min_element(
        std::begin(choices), std::end(choices),
        [&](const Rectangle& a, const Rectangle& b) { return overlap(a, image) < overlap(b, image); });
}

} // namespace suite
