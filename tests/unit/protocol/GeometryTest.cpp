// SPDX-License-Identifier: MIT
#include "platform/protocol/Geometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace protocol;

namespace {

Geometry single(double zoom, double originX = 0, double originY = 0)
{
    return {.imageWidth = 4000,
            .imageHeight = 3000,
            .zoom = zoom,
            .originX = originX,
            .originY = originY,
            .panelWidth = 800,
            .panelHeight = 600};
}

// Five panels in a grid of 3 x 2.
Geometry grid()
{
    return {4000, 3000, 2, 10, 20, ZPanels, 3, 2, 5, 100, 80, 4};
}

} // namespace

TEST(Geometry, WorkedPositions)
{
    const struct {
        Geometry geometry;
        double windowX, windowY, dataX, dataY;
        int panel = 0;
    } rows[] = {
        {single(1), 0, 0, 0, 0},
        {single(1), 799, 599, 799, 599},
        {single(1, 100, 50), 7, 9, 107, 59},
        {single(2), 5, 4, 2.5, 2},
        {single(4, 0.25, 0.5), 2, 2, 0.75, 1},
        {single(0.5, 8, 0), 3, 5, 14, 10},
        {grid(), 0, 0, 10, 20},
        {grid(), 99, 79, 59.5, 59.5},
        {grid(), 104, 0, 10, 20, 1},
        {grid(), 105, 85, 10.5, 20.5, 4},
    };
    for (const auto& row : rows) {
        const auto position = dataFromWindow(row.geometry, row.windowX, row.windowY);
        ASSERT_TRUE(position) << row.windowX << ", " << row.windowY;
        EXPECT_DOUBLE_EQ(position->x, row.dataX);
        EXPECT_DOUBLE_EQ(position->y, row.dataY);
        EXPECT_EQ(position->panel, row.panel);
    }
}

TEST(Geometry, NowhereOnTheImage)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const struct {
        const char* why;
        Geometry geometry;
        double x, y;
    } rows[] = {
        {"left of the window", single(1), -1, 5},
        {"right of the panel", single(1), 800, 5},
        {"below the panel", single(1), 5, 600},
        {"left of the image", single(1, -10, 0), 9, 5},
        {"above the image", single(2, 0, -10), 9, 19},
        {"right of the image", single(1, 3990, 0), 10, 5},
        {"below the image", single(0.1, 0, 0), 5, 300},
        {"in a vertical gap", grid(), 102, 5},
        {"in a horizontal gap", grid(), 5, 82},
        {"right of the last one", grid(), 312, 5},
        {"a panel without a section", grid(), 209, 85},
        {"no number", single(1), nan, 5},
        {"no zoom", single(0), 5, 5},
        {"zoom is no number", single(nan), 5, 5},
        {"huge", single(1), 1e300, 5},
    };
    for (const auto& row : rows)
        EXPECT_FALSE(dataFromWindow(row.geometry, row.x, row.y)) << row.why;
}

// The integer part names the pixel: at zoom s each data pixel covers s window pixels, at 1/s each window
// pixel s data pixels, also when the window was scrolled there by steps of a window pixel that is no whole
// data pixel.
TEST(Geometry, IntegerPartIsThePixelAtEveryZoom)
{
    for (int scale : {1, 2, 3, 5, 6, 7, 10, 12, 16}) {
        Geometry enlarged = single(scale), reduced = single(1.0 / scale);
        for (int scrolled = 0; scrolled <= 500; ++scrolled) {
            for (int i = 0; i < 100; i += 1 + scrolled % 7) {
                ASSERT_EQ(static_cast<int>(dataFromWindow(enlarged, i, 0)->x), (scrolled + i) / scale)
                    << scale << " scrolled by " << scrolled << " at " << i;
                ASSERT_EQ(dataFromWindow(reduced, i, 0)->x, i * scale + scrolled)
                    << "1/" << scale << " scrolled by " << scrolled << " at " << i;
            }
            enlarged.originX += 1.0 / scale;
            reduced.originX += 1;
        }
    }
}

TEST(Geometry, WindowFromDataUndoesDataFromWindow)
{
    for (double zoom : {0.05, 1.0 / 3, 0.7, 1.0, 1.5, 3.0, 10.0, 32.0}) {
        Geometry geometry = grid();
        geometry.zoom = zoom;
        for (double y = 0.25; y < 164; y += 7.5)
            for (double x = 0; x < 308; x += 3.25) {
                const auto data = dataFromWindow(geometry, x, y);
                if (!data)
                    continue;
                const WindowPosition window = windowFromData(geometry, *data);
                ASSERT_NEAR(window.x, x, 1e-5) << "zoom " << zoom;
                ASSERT_NEAR(window.y, y, 1e-5) << "zoom " << zoom;
            }
    }
}
