// SPDX-License-Identifier: MIT
// The overview of the whole image in a corner of the first panel, with a mark around the part in sight: where
// it stands, and which place of the image is where in it. Pure. Its frame is the canvas, in canvas pixels.
#pragma once

#include "platform/protocol/Geometry.h"

#include <optional>

namespace viewer {

struct Navigator {
    int x = 0, y = 0, width = 0, height = 0; // of the picture of the whole image
    double scale = 1;                        // canvas pixels for each data pixel in it
    struct Part {
        double x = 0, y = 0, width = 0, height = 0;
    } visible; // what the panel shows, within the picture

    bool holds(int canvasX, int canvasY) const
    {
        return canvasX >= x && canvasX < x + width && canvasY >= y && canvasY < y + height;
    }
    double dataX(double canvasX) const { return (canvasX - x) / scale; }
    double dataY(double canvasY) const { return (canvasY - y) / scale; }
};

// Nothing while nearly all of the image is in sight, or where the panel has no room for it. low: in the lower
// right corner instead of the upper right one. screenScale: 1 at 96 dots per inch.
std::optional<Navigator> navigatorOf(const protocol::Geometry& geometry, bool low, double screenScale);

} // namespace viewer
