// SPDX-License-Identifier: MIT
#include "platform/imagewindow/paint/ScaleBar.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace viewer;

namespace {

protocol::Geometry panelOf(int width, int height, double zoom = 1)
{
    protocol::Geometry geometry;
    geometry.panelWidth = width;
    geometry.panelHeight = height;
    geometry.zoom = zoom;
    return geometry;
}

} // namespace

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
        const auto bar = scaleBar({}, row.spacing, panelOf(row.panel, 300, row.zoom));
        ASSERT_TRUE(bar) << row.label;
        EXPECT_EQ(bar->width, row.width) << row.label;
        EXPECT_EQ(bar->label, row.label);
    }
}

TEST(ScaleBar, AChosenLengthHoldsWhereItFits)
{
    const struct {
        const char* name;
        double microns, zoom, screenScale;
        int width;
        const char* label;
        bool fits;
    } rows[] = {
        {"as chosen", 7, 1, 1, 70, "7 µm", true},
        {"at another zoom", 7, 4, 1, 280, "7 µm", true},
        {"in nanometres", 500, 0.05, 1, 250, "500 µm", true},
        {"wider than the panel", 40, 1, 1, 100, "10 µm", false},
        {"up to the margins", 37.6, 1, 1, 376, "37.6 µm", true},
        {"margins of a fine screen", 37.6, 1, 2, 100, "10 µm", false},
        {"too small to be seen", 0.3, 1, 1, 100, "10 µm", false},
    };
    for (const auto& row : rows) {
        const BarStyle style{row.microns, BarCorner::UpperLeft, barColors.size() - 1};
        const protocol::Geometry panel = panelOf(400, 400, row.zoom);
        const auto bar = scaleBar(style, 0.1, panel, row.screenScale);
        ASSERT_TRUE(bar) << row.name;
        EXPECT_EQ(bar->width, row.width) << row.name;
        EXPECT_EQ(bar->label, row.label) << row.name;
        EXPECT_EQ(barFits(style, 0.1, panel, row.screenScale), row.fits) << row.name;
        EXPECT_EQ(bar->color, (base::Rgb{0, 0, 0}));
        EXPECT_EQ(bar->corner, BarCorner::UpperLeft);
    }
}

TEST(ScaleBar, ThereIsNoneWithoutRoomOrScale)
{
    EXPECT_FALSE(scaleBar({}, 0.1, panelOf(60, 300)));
    EXPECT_FALSE(scaleBar({}, 0.1, panelOf(300, 60)));
    for (const double spacing : {0.0, -1.0, std::nan(""), std::numeric_limits<double>::infinity()})
        EXPECT_FALSE(scaleBar({}, spacing, panelOf(300, 300))) << spacing;
}
