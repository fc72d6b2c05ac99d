// SPDX-License-Identifier: MIT
#include "segment/Geometry.h"

#include <gtest/gtest.h>

#include <cmath>

TEST(Geometry, MeasuresLengthAndAngle)
{
    const struct {
        float dx, dy, length, angle;
    } cases[] = {
        {1, 0, 1, 0},
        {0, 2, 2, 90.00008f}, // the divisor 3.14159 shows from the fifth decimal on
        {-3, 0, 3, -179.99985f},
        {-3, -0.0f, 3, -180.00015f},
        {0, -1, 1, -90.00008f},
        {3, 4, 5, 53.130146f},
        {0, 0, 0, 0},
        {1e30f, 0, 1e30f, 0}, // its square is beyond single precision
    };
    for (const auto& c : cases) {
        EXPECT_EQ(stageLength(c.dx, c.dy), c.length) << c.dx << ", " << c.dy;
        EXPECT_FLOAT_EQ(stageAngle(c.dx, c.dy), c.angle) << c.dx << ", " << c.dy;
    }
    EXPECT_TRUE(std::isnan(stageLength(NAN, 1)));
}
