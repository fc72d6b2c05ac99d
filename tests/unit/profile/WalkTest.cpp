// SPDX-License-Identifier: MIT
#include "profile/Walk.h"
#include "profile/Truncation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace {

std::vector<PixelPoint> walk(PixelPoint from, PixelPoint to)
{
    std::vector<PixelPoint> points(
        static_cast<size_t>(std::max(std::abs(to.x - from.x), std::abs(to.y - from.y))) + 1);
    EXPECT_EQ(walkLine(from, to, points.data()), static_cast<int>(points.size()));
    return points;
}

// One pixel for each step along the longer side, the other coordinate rounded, halves away from the start.
std::vector<PixelPoint> expectedWalk(PixelPoint from, PixelPoint to)
{
    const double dx = to.x - from.x, dy = to.y - from.y, steps = std::max(std::abs(dx), std::abs(dy));
    std::vector<PixelPoint> points{from};
    for (int k = 1; k <= steps; k++)
        points.push_back({from.x + static_cast<int>(std::round(k * dx / steps)),
                          from.y + static_cast<int>(std::round(k * dy / steps))});
    return points;
}

} // namespace

TEST(Walk, TakesThePixelsOfTheDigitalLineInEveryDirection)
{
    const PixelPoint from{7, -3};
    for (int dx = -12; dx <= 12; dx++)
        for (int dy = -12; dy <= 12; dy++) {
            const PixelPoint to{from.x + dx, from.y + dy};
            EXPECT_EQ(walk(from, to), expectedWalk(from, to)) << dx << ", " << dy;
        }
}

TEST(Walk, RunsAreTheLongestThatFit)
{
    for (PixelPoint to : {PixelPoint{999, 700}, {-40, 900}, {1500, 0}, {0, -1500}, {3, 2}})
        for (int64_t limit : {int64_t{1}, int64_t{7}, int64_t{1000}, int64_t{100000}, int64_t{1} << 40}) {
            std::vector<PixelPoint> points = walk({0, 0}, to);
            auto count = static_cast<int32_t>(points.size());
            for (int32_t first = 0, end = 0; first < count; first = end) {
                end = runEnd(points.data(), count, first, limit);
                ASSERT_GT(end, first);
                auto pixelsTo = [&](int32_t i) {
                    return boundingRect(points[static_cast<size_t>(first)], points[static_cast<size_t>(i)])
                        .pixels();
                };
                ASSERT_LE(pixelsTo(end - 1), limit);
                ASSERT_TRUE(end == count || pixelsTo(end) > limit);
            }
        }
}

TEST(Truncation, GoesTowardZeroAndIsDefinedEverywhere)
{
    const float infinity = std::numeric_limits<float>::infinity();
    const struct {
        float value;
        int32_t expected;
    } cases[] = {{10.7f, 10},       {-0.5f, 0},         {-3.99f, -3},          {2147483520.0f, 2147483520},
                 {3e9f, INT32_MAX}, {-3e9f, INT32_MIN}, {infinity, INT32_MAX}, {-infinity, INT32_MIN},
                 {std::nanf(""), 0}};
    for (const auto& c : cases)
        EXPECT_EQ(truncateToInt(c.value), c.expected) << c.value;
    EXPECT_EQ(truncateToWide(-infinity), -truncateToWide(infinity));
}
