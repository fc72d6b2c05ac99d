// SPDX-License-Identifier: MIT
#include "platform/imagewindow/paint/ScaleBar.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using viewer::scaleBar;

TEST(ScaleBar, LengthIsTheLongestRoundOneInAQuarterOfThePanel)
{
    const struct {
        double spacing, zoom;
        int panel, width;
        const char* label;
    } rows[] = {
        {0.1, 1, 400, 100, "10 µm"},    // exactly a quarter
        {0.1, 1, 399, 50, "5 µm"},      // one pixel less
        {0.108, 2, 1024, 185, "10 µm"}, //
        {2.0, 0.25, 800, 125, "1 mm"},  {0.002, 8, 512, 80, "20 nm"}, {5000, 1, 800, 200, "100 cm"},
    };
    for (const auto& row : rows) {
        const auto bar = scaleBar(row.spacing, row.zoom, row.panel, 300);
        ASSERT_TRUE(bar) << row.label;
        EXPECT_EQ(bar->width, row.width) << row.label;
        EXPECT_EQ(bar->label, row.label);
    }
}

TEST(ScaleBar, ThereIsNoneWithoutRoomOrScale)
{
    EXPECT_FALSE(scaleBar(0.1, 1, 60, 300));
    EXPECT_FALSE(scaleBar(0.1, 1, 300, 60));
    for (const double spacing : {0.0, -1.0, std::nan(""), std::numeric_limits<double>::infinity()})
        EXPECT_FALSE(scaleBar(spacing, 1, 300, 300)) << spacing;
}
