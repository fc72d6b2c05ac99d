// SPDX-License-Identifier: MIT
// The pixels of a segment: the digital line between two pixels and the rectangles that cover it. Pure
// arithmetic on image pixels, (0, 0) at the top left; all bounds are inclusive.
#pragma once

#include <cstdint>

struct PixelPoint {
    int32_t x, y;

    friend bool operator==(const PixelPoint&, const PixelPoint&) = default;
};

// A rectangle that covers samples of a walk.
struct WalkRect {
    int32_t xFirst, xLast, yFirst, yLast;

    int32_t width() const { return xLast - xFirst + 1; }
    int32_t height() const { return yLast - yFirst + 1; }
    int64_t pixels() const { return int64_t{width()} * height(); }
};

WalkRect boundingRect(PixelPoint a, PixelPoint b);

// Writes every pixel of the digital line (Bresenham) from `from` to `to`, both included, into points, which
// has room for max(|dx|, |dy|) + 1 of them. Returns that number. Equal distances are walked along y.
int32_t walkLine(PixelPoint from, PixelPoint to, PixelPoint* points);

// The longest run points[first .. end - 1] of a walk of count points whose bounding rectangle has at most
// maxPixels pixels; at least one point. Returns end.
int32_t runEnd(const PixelPoint* points, int32_t count, int32_t first, int64_t maxPixels);
