// SPDX-License-Identifier: MIT
// The arithmetic under the layout: label text, rounding, nice numbers, decimals of a range, the first tick.
#include "gauge/TickNumbers.h"
#include "gauge/TickSeries.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

TEST(LabelText, followsTheRule)
{
    const struct {
        double value;
        int precision;
        const char* text;
    } rows[] = {
        {0.5, 2, "0.50"},
        {2.5, 0, "2"}, // as printf rounds: halves to even
        {3.5, 0, "4"},
        {-0.25, 1, "-0.2"},
        {0, 0, "0"},
        {1e21, 0, "1000000000000000000000"},
        {1.5, 20, "1.50000000000000000000"},
        {1250, -2, "1300"}, // halves up
        {-1250, -2, "-1200"},
        {-1234, -2, "-1200"},
        {-40, -2, "0"},
        {400, -3, "0"},
        {499.999, -3, "0"},
        {500, -3, "1000"},
        {7e15, -15, "7000000000000000"},
        {3e16, std::numeric_limits<int>::min(), "30000000000000000"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(gauge::labelText(row.value, row.precision), row.text)
            << row.value << " at " << row.precision;
}

TEST(RoundToPrecision, roundsHalvesUp)
{
    const struct {
        double value;
        int precision;
        double rounded;
    } rows[] = {{1234, -2, 1200}, {1250, -2, 1300}, {-1250, -2, -1200}, {2.5, 0, 3},
                {-2.5, 0, -2},    {0.126, 2, 0.13}, {65535, -15, 0},    {7.25, 1, 7.3}};
    for (const auto& row : rows)
        EXPECT_DOUBLE_EQ(gauge::roundToPrecision(row.value, row.precision), row.rounded) << row.value;
}

TEST(NiceNumber, changesAtItsLimits)
{
    const struct {
        double value;
        int exponent;
        double nearest, above;
    } rows[] = {
        {1.0, 0, 1, 1},   {1.01, 0, 1, 2},        {1.49, 0, 1, 2},        {1.5, 0, 2, 2},
        {2.0, 0, 2, 2},   {2.01, 0, 2, 5},        {2.99, 0, 2, 5},        {3.0, 0, 5, 5},
        {5.01, 0, 5, 10}, {6.99, 0, 5, 10},       {7.0, 0, 10, 10},       {0.02, 0, 1, 1},
        {99, 0, 10, 10},  {-3.2, 0, 5, 5},        {320, 2, 500, 500},     {0.16, -1, .2, .2},
        {1, 2, 100, 100}, {4e-7, -7, 5e-7, 5e-7}, {2e20, 20, 2e20, 2e20},
    };
    for (const auto& row : rows) {
        EXPECT_DOUBLE_EQ(gauge::niceNumber(row.value, row.exponent), row.nearest) << row.value;
        EXPECT_DOUBLE_EQ(gauge::niceNumberAbove(row.value, row.exponent), row.above) << row.value;
    }
}

TEST(RangeDecimals, tellsTheRangeApart)
{
    const struct {
        double range;
        int decimals;
    } rows[] = {{255, -1},  {300, -2},  {299.9, -1}, {1000, -2}, {1, 1},  {3, 0},   {9.99, 0},    {0.31, 1},
                {0.004, 3}, {0.001, 4}, {1e-6, 7},   {0, 0},     {-5, 0}, {NAN, 0}, {INFINITY, 0}};
    for (const auto& row : rows)
        EXPECT_EQ(gauge::rangeDecimals(row.range), row.decimals) << row.range;
}

TEST(FirstTick, standsStrictlyAboveMin)
{
    const struct {
        const char* what;
        double min, increment, start;
        bool align;
        double first;
    } rows[] = {
        {"increment 0", 3, 0, 1, true, 3},
        {"start at min", 0, 10, 0, true, 10},
        {"start below min", 100, 50, 0, true, 150},
        {"start above min", 100, 50, 230, false, 230},
        {"start above min, aligned", 100, 50, 230, true, 200},
        {"aligned down onto min", 200, 50, 230, true, 250},
        {"negative start", -95, 10, -91, true, -90},
        {"1999 steps", 1998.5, 1, 0, false, 1999},
        {"the limit of 2000 steps", 1999.5, 1, 0, false, 1999.5},
    };
    for (const auto& row : rows) {
        gauge::TickSeries series{row.increment, row.start, gauge::unsetValue};
        EXPECT_DOUBLE_EQ(gauge::firstTick(series, row.min, row.align), row.first) << row.what;
    }
}

} // namespace
