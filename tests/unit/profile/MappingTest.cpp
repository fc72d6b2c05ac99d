// SPDX-License-Identifier: MIT
#include "profile/Mapping.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <string>

namespace {

int16_t row(float min, float max, int height, float value)
{
    PlotMapping mapping;
    EXPECT_EQ(makePlotMapping(min, max, 500, height, &mapping), 1);
    return plotRow(mapping, value);
}

} // namespace

TEST(Mapping, MapsValuesToRows)
{
    const struct {
        float min, max;
        int height;
        float value;
        int16_t expected;
    } cases[] = {
        {0, 20, 200, 0, 200},      // the range's minimum is just below the last row
        {100, 200, 200, 100, 200}, // wherever it lies
        {0, 20, 200, 20, 0},       // the maximum is in the first
        {0, 20, 200, 5.09f, 150},  // 50.9 rows, truncated
        {-10, 10, 99, -9.9f, 99},  // both terms, toward zero: -49.5 -> -49; -49.005 -> -49
        {0, 1, 200, 2, -200},      // outside the area, clipped by the server
        {0, 1, 200, 200, 25736},   // 200 - 40000 wraps in 16 bits
        {0, 1, 200, FLT_MAX, 200}, // far beyond: the low 16 bits of a large power of two are 0
        {0, 1, 200, NAN, 200},     // as a value of 0
    };
    for (const auto& c : cases)
        EXPECT_EQ(row(c.min, c.max, c.height, c.value), c.expected)
            << c.min << " " << c.max << " " << c.value;
}

TEST(Mapping, MapsSamplesToColumns)
{
    const struct {
        int width, i, n, expected;
    } cases[] = {
        {300, 0, 3, 0},
        {300, 2, 3, 200},                // the last of three
        {300, 6, 7, 257},                // 257.14
        {32000, 999999, 1000000, 31999}, // the product is beyond 32 bits
    };
    for (const auto& c : cases) {
        PlotMapping mapping;
        makePlotMapping(0, 1, c.width, 150, &mapping);
        EXPECT_EQ(plotColumn(mapping, c.i, c.n), c.expected) << c.i << " of " << c.n;
    }
}

TEST(Mapping, RefusesARangeThatIsNotAboveZero)
{
    PlotMapping mapping;
    EXPECT_EQ(makePlotMapping(7, 7, 500, 200, &mapping), 0);
    EXPECT_EQ(makePlotMapping(FLT_MAX, -FLT_MAX, 500, 200, &mapping), 0);
    EXPECT_EQ(makePlotMapping(NAN, 1, 500, 200, &mapping), 0);
}

TEST(Mapping, RowsReadBackAsTheirValue)
{
    EXPECT_EQ(valueAtRow(0, 20, 200, 50), 15.0f);
    EXPECT_EQ(valueAtRow(0, 2000, 200, 50), 1500.0f);
    const float ranges[][2] = {{0, 4095}, {-5, 3}, {100.5f, 101.25f}, {1e-6f, 3e-6f}};
    for (const auto& [min, max] : ranges)
        for (int step = 0; step <= 10; step++) {
            float value = min + (max - min) * static_cast<float>(step) / 10, rowHeight = (max - min) / 200;
            EXPECT_NEAR(valueAtRow(min, max, 200, row(min, max, 200, value)), value, 2 * rowHeight);
        }
}

TEST(Readout, FormatsByTheRange)
{
    const struct {
        float value, range;
        const char* expected;
    } cases[] = {
        {1.5f, 49.999f, "1.50"},
        {2.5f, 50, "2"},
        {3, NAN, "3"},
        {FLT_MAX, FLT_MAX, "340282346638528859811704183484516925440"},
    };
    for (const auto& c : cases) {
        char text[64];
        formatReadout(c.value, c.range, text, sizeof text);
        EXPECT_EQ(std::string(text), c.expected);
    }
}

TEST(Readout, StaysInThePlot)
{
    const struct {
        int x, y, width, expectedX, expectedY;
    } cases[] = {
        {100, 100, 500, 113, 106}, // a line to the right, half a line down
        {495, 100, 500, 460, 106}, // 40 pixels from the right edge
        {100, 0, 500, 113, 13},    // a line below the top
        {100, 199, 500, 113, 187}, // a line above the bottom
        {10, 10, 30, 6, 16},       // in a plot narrower than the text: half a line from its left
    };
    for (const auto& c : cases) {
        TextPosition at = placeReadout(c.x, c.y, c.width, 200, 13);
        EXPECT_EQ(at.x, c.expectedX) << c.x;
        EXPECT_EQ(at.y, c.expectedY) << c.y;
    }
}
