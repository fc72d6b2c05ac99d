// SPDX-License-Identifier: MIT
// Where the demonstration draws its line.
#include <gtest/gtest.h>

#include "drive/Structure.h"

#include <algorithm>
#include <cmath>
#include <vector>

using drive::Line;
using drive::Picture;
using drive::Pixel;

namespace {

constexpr int width = 300, height = 200;

struct Case {
    const char* name;
    unsigned char ground, structure;
    Line bar;
    double half = 4; // of the bar's width
};

double distance(const Line& line, double x, double y)
{
    const double dx = line.x1 - line.x0, dy = line.y1 - line.y0, square = dx * dx + dy * dy;
    const double along = std::clamp(((x - line.x0) * dx + (y - line.y0) * dy) / square, 0.0, 1.0);
    return std::hypot(x - line.x0 - along * dx, y - line.y0 - along * dy);
}

// The bar, and a small spot that is brighter (darker) still.
Picture pictureOf(const Case& c)
{
    Picture picture{width, height, {}};
    const int contrast = c.structure - c.ground;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            int value = distance(c.bar, x, y) < c.half ? c.structure : c.ground;
            if (std::hypot(x - 20, y - 20) < 6)
                value = c.ground + contrast * 3 / 2;
            const auto level = static_cast<unsigned char>(value + (x * 7 + y * 13) % 9);
            picture.pixels.push_back({level, level, level});
        }
    return picture;
}

const Case cases[] = {
    {"bright, rising", 10, 130, {100, 160, 260, 60}},
    {"bright, level", 10, 130, {60, 100, 240, 100}},
    {"bright, upright", 10, 130, {150, 30, 150, 170}},
    {"dark on bright ground", 220, 110, {80, 60, 220, 150}},
    {"dark, larger than the bright ground", 220, 110, {95, 100, 205, 100}, 95},
};

} // namespace

TEST(Structure, TheLineRunsAlongTheBarAndBeyondItsEnds)
{
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const Line found = drive::longestStructure(pictureOf(c));
        const Line& bar = c.bar;
        EXPECT_LT(distance(found, bar.x0, bar.y0), c.half + 4);
        EXPECT_LT(distance(found, bar.x1, bar.y1), c.half + 4);
        const double length = std::hypot(found.x1 - found.x0, found.y1 - found.y0);
        const double barLength = std::hypot(bar.x1 - bar.x0, bar.y1 - bar.y0);
        EXPECT_GT(length, barLength);
        EXPECT_LT(length, (barLength + 2 * c.half) * 1.4);
    }
}

TEST(Structure, AnEvenPictureIsCrossedInTheMiddle)
{
    const Line line = drive::longestStructure({width, height, std::vector<Pixel>(width * height)});
    EXPECT_EQ(line.y0, height / 2);
    EXPECT_EQ(line.y1, height / 2);
    EXPECT_GT(line.x1 - line.x0, width * 0.9);
}
