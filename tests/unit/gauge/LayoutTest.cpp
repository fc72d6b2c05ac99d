// SPDX-License-Identifier: MIT
// Whole axes: properties that hold at every range and size, and figures for some that are known.
#include "gauge/TickLayout.h"
#include "gauge/TickNumbers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

using gauge::AxisRequest;
using gauge::Tick;
using gauge::TickLayout;
using testing::IsEmpty;

constexpr int digitWidth = 6;
constexpr int digitHeight = 9;
constexpr double largestFloat = 3.4028235e38;

// A fixed font of 6 x 9 pixels, in the gauges of the tool.
AxisRequest axis(double min, double max, int length, bool vertical)
{
    AxisRequest request;
    request.min = min;
    request.max = max;
    request.length = length;
    request.vertical = vertical;
    request.flipped = vertical;
    request.gap = vertical ? digitHeight : digitWidth;
    request.labelRoom = vertical ? 49 : length / 3;
    request.baseRoom = vertical ? 60 : length / 3;
    request.measure = [vertical](const std::string& text) {
        int width = digitWidth * static_cast<int>(text.size());
        return vertical ? gauge::LabelSize{digitHeight, width} : gauge::LabelSize{width, digitHeight};
    };
    return request;
}

// As in the tool, whose font has wider digits, on a plain screen or on one of twice its resolution.
AxisRequest intensityAxis(double min, double max, int scale = 1)
{
    AxisRequest request = axis(min, max, 200, true);
    request.labelRoom = 50 * scale;
    request.baseRoom = 60 * scale;
    request.gap = digitHeight * scale;
    request.measure = [scale](const std::string& text) {
        int width = 0;
        for (char character : text)
            width += character == '+' ? 10 : character == '-' || character == '.' ? 4 : 8;
        return gauge::LabelSize{digitHeight * scale, width * scale};
    };
    return request;
}

// As after a drag of that many microns in a plot of that many pixels.
AxisRequest distanceAxis(float length, int width)
{
    float margin = length / static_cast<float>(width) * 5.0f;
    AxisRequest request = axis(margin, length + margin, width, false);
    request.offset = margin;
    request.rangePrecision = false;
    request.precision = length < 1.0f ? 2 : length < 10.0f ? 1 : 0;
    return request;
}

std::vector<std::string> labelsOf(const AxisRequest& request)
{
    std::vector<std::string> texts;
    for (const Tick& tick : layoutTicks(request).ticks)
        texts.push_back(tick.label);
    return texts;
}

bool isRound(double increment)
{
    double leading = increment / std::pow(10.0, std::floor(std::log10(increment) + 1e-9));
    return std::ranges::any_of(std::array{1.0, 2.0, 5.0},
                               [&](double digit) { return std::fabs(leading - digit) < 1e-6; });
}

void expectInside(const AxisRequest& request, const TickLayout& layout)
{
    double range = request.max - request.min;
    double slack = range / request.length * 0.02;
    for (const Tick& tick : layout.ticks) {
        EXPECT_GT(tick.value + request.offset, request.min);
        EXPECT_LE(tick.value + request.offset, request.max + slack);
        double along = (tick.value + request.offset - request.min) / range * request.length;
        EXPECT_NEAR(tick.pixel, request.flipped ? request.length - along : along, 1.02);
        EXPECT_GE(tick.pixel, 0);
        EXPECT_LT(tick.pixel, request.length);
    }
}

void expectRoundSteps(const TickLayout& layout)
{
    if (layout.ticks.empty())
        return;
    double increment = layout.series.increment;
    EXPECT_TRUE(isRound(increment)) << increment;
    for (std::size_t i = 0; i < layout.ticks.size(); ++i) {
        double multiple = layout.ticks[i].value / increment;
        EXPECT_NEAR(multiple, std::round(multiple), 1e-6 * std::max(1.0, std::fabs(multiple)));
        if (i > 0) {
            double step = std::fabs(layout.ticks[i].value - layout.ticks[i - 1].value);
            EXPECT_NEAR(step, increment, increment * 1e-3);
        }
    }
}

// The value that a reader takes from a label and the base.
double readBack(const TickLayout& layout, const std::string& label)
{
    std::string base;
    for (const std::string& line : layout.base.lines)
        base += line;
    EXPECT_EQ(base.empty(), label[0] != '+' && (label[0] != '-' || base.empty())) << base << " and " << label;
    return (base.empty() ? 0.0 : std::strtod(base.c_str(), nullptr)) + std::strtod(label.c_str(), nullptr);
}

int baseEnd(const AxisRequest& request, const TickLayout& layout)
{
    return layout.base.lines.empty() ? 0 : layout.base.starts.back() + request.measure("0").along;
}

void expectCleanLabels(const AxisRequest& request, const TickLayout& layout)
{
    int end = request.vertical ? baseEnd(request, layout) : 0;
    std::string previous;
    for (const Tick& tick : layout.ticks) {
        if (tick.label.empty())
            continue;
        EXPECT_NE(tick.label, std::exchange(previous, tick.label));
        EXPECT_GE(tick.labelStart, end == 0 ? 0 : end + 4) << tick.label;
        end = tick.labelStart + tick.size.along;
        EXPECT_LE(end, request.length) << tick.label;
        EXPECT_LE(std::abs(tick.labelStart + tick.size.along / 2 - tick.pixel), (tick.size.along + 1) / 2);
        EXPECT_LE(request.vertical ? tick.size.across : tick.size.along, request.labelRoom);
        EXPECT_NEAR(readBack(layout, tick.label), tick.value, layout.series.increment * 1e-3);
    }
}

struct Ends {
    double min, max;
};

const Ends ranges[] = {{0, 255},         {100, 65535},       {0, 0.004},    {-250, 1200},
                       {-0.004, -0.001}, {0, 1e-6},          {0, 1e7},      {-1e7, 1e7},
                       {1e6, 1.2e7},     {0, 3.3e9},         {-3e38, 3e38}, {99.5, 100.5},
                       {12.1, 12.4},     {1234567, 1234569}, {0.3, 0.9},    {0, 1},
                       {65000, 65000.5}, {-1e-30, 1e-30},    {0, 4095},     {180.25, 1043.75}};

// Where there is room for four labels there are two ticks at least, and the first has its label.
void expectTwoTicks(const AxisRequest& request, const TickLayout& layout)
{
    if (request.length < (request.vertical ? 72 : 320))
        return;
    EXPECT_GE(layout.ticks.size(), 2u);
    EXPECT_TRUE(request.vertical || request.flipped || !layout.ticks.front().label.empty());
}

TEST(Layout, holdsItsPropertiesAtEveryRangeAndSize)
{
    for (const Ends& ends : ranges)
        for (int length : {24, 40, 60, 72, 97, 200, 320, 763, 2000})
            for (int way = 0; way < 4; ++way) {
                AxisRequest request = axis(ends.min, ends.max, length, way & 1);
                request.flipped = way & 2;
                SCOPED_TRACE(testing::Message()
                             << ends.min << " to " << ends.max << " in " << length << " way " << way);
                TickLayout layout = layoutTicks(request);
                expectInside(request, layout);
                expectRoundSteps(layout);
                expectCleanLabels(request, layout);
                expectTwoTicks(request, layout);
            }
}

std::size_t labelled(const TickLayout& layout)
{
    return static_cast<std::size_t>(
        std::ranges::count_if(layout.ticks, [](const Tick& tick) { return !tick.label.empty(); }));
}

void expectTwoLabels(float min, float max)
{
    SCOPED_TRACE(testing::Message() << std::hexfloat << min << " to " << max << std::defaultfloat << ", "
                                    << min);
    for (int scale : {1, 2}) {
        AxisRequest request = intensityAxis(min, max, scale);
        TickLayout layout = layoutTicks(request);
        EXPECT_GE(labelled(layout), 2u) << scale;
        expectInside(request, layout);
        expectRoundSteps(layout);
        expectCleanLabels(request, layout);
    }
}

// Samples of a float image, of every size, that are as far apart as floats can be and as close.
TEST(Layout, labelsTwoTicksInEveryRangeOfFloats)
{
    const std::pair<float, float> known[] = {
        {1000000.0f, 1000100.0f}, {-1234567.0f, -1234000.0f},     {1e7f, 1e7f + 8},
        {12345.01f, 12345.09f},   {999999.0f, 1000001.0f},        {16777216.0f, 16777218.0f},
        {-1e-45f, 1e-45f},        {3.4028233e38f, 3.4028235e38f}, {-3.4028235e38f, 1e-45f},
        {-3e-38f, -2e-38f},       {-16777216.0f, 16777218.0f}};
    for (auto [min, max] : known)
        expectTwoLabels(min, max);
    std::mt19937 random(20);
    std::uniform_real_distribution<float> exponents(-45.0f, 38.4f), closeness(-8.0f, 1.0f);
    for (int i = 0; i < 5000 && !testing::Test::HasFailure(); ++i) {
        const float value = std::pow(10.0f, exponents(random)) * (i % 2 ? 1.0f : -1.0f);
        const float other = value * (1.0f + std::pow(10.0f, closeness(random)));
        if (!std::isfinite(value) || !std::isfinite(other))
            continue;
        const float next = other == value ? std::nextafter(value, INFINITY) : other;
        if (std::isfinite(next))
            expectTwoLabels(std::min(value, next), std::max(value, next));
    }
}

TEST(Layout, writesWhatLabelsShareOnce)
{
    const struct {
        double min, max;
        std::vector<std::string> base;
        const char* top;
        const char* bottom;
    } rows[] = {
        {1000000, 1000100, {"1000000"}, "+90", "+10"},
        {-1234567, -1234000, {"-1235000"}, "+900", "+500"},
        {1e7, 1e7 + 8, {"1e7"}, "+7", "+1"},
        {12345.01, 12345.09, {"12345"}, "+0.08", "+0.02"},
        {999999, 1000001, {"1000000"}, "+0.8", "-0.8"},
        {1e9, 1e9 + 64, {"1e9"}, "+50", "+10"},
        {1.23456782e30, 1.23456789e30, {"1.234567", "8e30"}, "+8e22", "+3e22"},
        {0.000012345, 0.000012346, {"1.234e-5"}, "+5.9e-9", "+5.1e-9"},
        {165000, 165000.5, {"165000"}, "+0.45", "+0.05"},
        {60000, 65000.5, {}, "65000", "60500"}, // whole values have room
    };
    for (const auto& row : rows) {
        TickLayout layout = layoutTicks(intensityAxis(row.min, row.max));
        std::erase_if(layout.ticks, [](const Tick& tick) { return tick.label.empty(); });
        EXPECT_EQ(layout.base.lines, row.base);
        EXPECT_EQ(layout.ticks.front().label, row.top) << row.min;
        EXPECT_EQ(layout.ticks.back().label, row.bottom) << row.min;
    }
}

TEST(Layout, isEmptyWithoutARange)
{
    const Ends none[] = {{0, 0},
                         {5, 5},
                         {3, 1},
                         {largestFloat, -largestFloat},
                         {NAN, 1},
                         {0, NAN},
                         {-INFINITY, 0},
                         {0, INFINITY},
                         {-1.7e308, 1.7e308}};
    for (const Ends& ends : none)
        for (bool rangePrecision : {true, false}) {
            AxisRequest request = axis(ends.min, ends.max, 200, true);
            request.rangePrecision = rangePrecision;
            TickLayout layout = layoutTicks(request);
            EXPECT_THAT(layout.ticks, IsEmpty()) << ends.min << " to " << ends.max;
            EXPECT_EQ(layout.series.increment, gauge::unsetValue);
        }
    EXPECT_THAT(labelsOf(axis(0, 255, 0, true)), IsEmpty());
}

TEST(Layout, givesKnownLabels)
{
    const struct {
        AxisRequest request;
        std::vector<std::string> labels; // on a vertical axis, which grows upwards, the top comes first
    } rows[] = {
        {axis(0, 255, 200, true), {"250", "200", "150", "100", "50"}},
        {axis(0, 0.004, 100, true), {"0.004", "0.003", "0.002", "0.001"}},
        {axis(-1, 1, 60, true), {"1", "0"}},
        {axis(0, 1e-6, 120, true), {"1e-6", "8e-7", "6e-7", "4e-7", "2e-7"}},
        {axis(0, 1e7, 70, true), {"10000000", "5000000"}},
        {axis(0, 3e9, 120, true), {"3e9", "2.5e9", "2e9", "1.5e9", "1e9", "5e8"}},
        {axis(0, 2.5e-13, 400, false), {"1e-13", "2e-13"}},
        {distanceAxis(50.0f, 300), {"10", "20", "30", "40", "50"}}, // from the start of the segment
        {distanceAxis(5.5f, 500), {"1.0", "2.0", "3.0", "4.0", "5.0"}},
        {distanceAxis(0.75f, 180), {"0.20", "0.40", "0.60"}},
        {distanceAxis(0.004f, 500), {}}, // two decimals can't say more
    };
    for (const auto& row : rows)
        EXPECT_EQ(labelsOf(row.request), row.labels) << row.request.max;
}

// Sample i of n is drawn in column i * W / n; a tick labelled v stands over the sample taken at v.
TEST(Layout, standsOverTheSample)
{
    for (float length : {0.3f, 0.77f, 1.0f, 7.3f, 29.0f, 47.3f, 512.0f, 12345.0f})
        for (int width : {180, 500, 763, 1800}) {
            AxisRequest request = distanceAxis(length, width);
            TickLayout layout = layoutTicks(request);
            SCOPED_TRACE(testing::Message() << length << " um in " << width);
            EXPECT_GE(layout.ticks.size(), 2u);
            expectRoundSteps(layout);
            expectCleanLabels(request, layout);
            for (const Tick& tick : layout.ticks)
                EXPECT_NEAR(tick.pixel, std::min(tick.value / length * width, width - 1.0), 1.01);
        }
}

TEST(Layout, keepsToTheChosenPrecision)
{
    for (int precision = -4; precision <= 4; ++precision) {
        AxisRequest request = axis(0, 2560, 2000, false);
        request.rangePrecision = false;
        request.precision = precision;
        TickLayout layout = layoutTicks(request);
        EXPECT_GE(layout.series.increment, std::pow(10.0, -precision) * 0.999) << precision;
        for (const Tick& tick : layout.ticks)
            EXPECT_EQ(tick.label, gauge::labelText(tick.value, precision));
    }
}

TEST(Layout, takesWhatTheApplicationSets)
{
    const struct {
        const char* name;
        gauge::TickSeries series;
        bool align;
        std::vector<std::string> labels;
    } rows[] = {
        {"increment", {.increment = 25}, true, {"25", "50", "75", "100"}},
        {"start is aligned", {.increment = 25, .start = 30}, true, {"25", "50", "75", "100"}},
        {"start as it is", {.increment = 25, .start = 30}, false, {"30", "55", "80"}},
        {"stop", {.increment = 25, .start = 30, .stop = 60}, false, {"30", "55"}},
        {"stop before start", {.increment = 25, .start = 70, .stop = 60}, false, {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        AxisRequest request = axis(0, 100, 300, false);
        request.series = row.series;
        request.align = row.align;
        EXPECT_EQ(labelsOf(request), row.labels);
    }
}

constexpr double largest = std::numeric_limits<double>::max();
const double hostile[] = {0.0,  -0.0, 1.0,      -1.0,      1e-300,  1e300,    5e-324,
                          -7e9, NAN,  INFINITY, -INFINITY, largest, -largest, std::nextafter(largest, 0.0)};

void expectBounded(const AxisRequest& request)
{
    const TickLayout layout = layoutTicks(request);
    EXPECT_LE(layout.ticks.size(), 201u);
    for (const Tick& tick : layout.ticks) {
        EXPECT_TRUE(std::isfinite(tick.value)) << tick.value;
        EXPECT_GE(tick.pixel, 0);
        EXPECT_LT(tick.pixel, 200);
    }
}

TEST(Layout, survivesHostileSettings)
{
    for (double increment : hostile)
        for (double start : hostile)
            for (double stop : hostile)
                for (double max : {1000.0, largest}) {
                    SCOPED_TRACE(testing::Message() << increment << " from " << start << " to " << stop);
                    AxisRequest request = axis(0, max, 200, true);
                    request.series = {increment, start, stop};
                    for (bool byRange : {true, false}) {
                        request.rangePrecision = request.align = byRange;
                        expectBounded(request);
                    }
                }
}

TEST(Layout, survivesHostileRanges)
{
    for (double min : hostile)
        for (double max : hostile)
            for (double offset : hostile)
                for (int precision :
                     {std::numeric_limits<int>::min(), -16, -15, 0, 2, 16, std::numeric_limits<int>::max()}) {
                    SCOPED_TRACE(testing::Message()
                                 << min << " to " << max << " offset " << offset << " at " << precision);
                    AxisRequest request = axis(min, max, 200, true);
                    request.offset = offset;
                    request.precision = precision;
                    for (bool byRange : {true, false}) {
                        request.rangePrecision = byRange;
                        expectBounded(request);
                    }
                }
}

TEST(Layout, asksTheLabelFunction)
{
    AxisRequest request = axis(0, 100, 280, false);
    request.labelFunc = [](double value) {
        return value == 40 ? "" : std::to_string(static_cast<int>(value)) + "%";
    };
    EXPECT_THAT(labelsOf(request), testing::ElementsAre("20%", "", "60%", "80%", "100%"));
}

TEST(Layout, withoutLabelsSpacesTicksByTheirWidth)
{
    AxisRequest request = axis(0, 100, 300, false);
    request.labels = false;
    request.tickWidth = 4;
    TickLayout layout = layoutTicks(request);
    EXPECT_GE(layout.ticks.size(), 15u);
    for (std::size_t i = 1; i < layout.ticks.size(); ++i)
        EXPECT_GE(layout.ticks[i].pixel - layout.ticks[i - 1].pixel, 11);
}

} // namespace
