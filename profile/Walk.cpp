// SPDX-License-Identifier: MIT
#include "profile/Walk.h"

#include <algorithm>
#include <cstdlib>

WalkRect boundingRect(PixelPoint a, PixelPoint b)
{
    return {std::min(a.x, b.x), std::max(a.x, b.x), std::min(a.y, b.y), std::max(a.y, b.y)};
}

int32_t walkLine(PixelPoint from, PixelPoint to, PixelPoint* points)
{
    const int32_t ax = 2 * std::abs(to.x - from.x), ay = 2 * std::abs(to.y - from.y);
    const int32_t sx = to.x < from.x ? -1 : 1, sy = to.y < from.y ? -1 : 1;
    const bool alongX = ax > ay;
    int32_t d = alongX ? ay - (ax >> 1) : ax - (ay >> 1);
    PixelPoint at = from;
    int32_t count = 0;
    for (;;) {
        points[count++] = at;
        if (alongX ? at.x == to.x : at.y == to.y)
            return count;
        if (d >= 0) {
            at.x += alongX ? 0 : sx;
            at.y += alongX ? sy : 0;
            d -= alongX ? ax : ay;
        }
        at.x += alongX ? sx : 0;
        at.y += alongX ? 0 : sy;
        d += alongX ? ay : ax;
    }
}

int32_t runEnd(const PixelPoint* points, int32_t count, int32_t first, int64_t maxPixels)
{
    // The walk is monotonic in x and in y: two of its points span the rectangle of all between them.
    int32_t fits = first, beyond = count;
    while (beyond - fits > 1) {
        int32_t middle = fits + (beyond - fits) / 2;
        if (boundingRect(points[first], points[middle]).pixels() <= maxPixels)
            fits = middle;
        else
            beyond = middle;
    }
    return beyond;
}
