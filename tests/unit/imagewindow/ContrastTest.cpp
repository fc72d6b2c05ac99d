// SPDX-License-Identifier: MIT
#include "platform/imagewindow/render/Contrast.h"
#include "tests/unit/imagewindow/FakeImage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <vector>

using namespace viewer;
using viewertest::FakeImage;

TEST(Contrast, LeavesOutExtremesAndHasAPositiveSpan)
{
    const float nan = std::nanf(""), aboveHuge = std::nextafter(1e30F, 3e38F);
    std::vector<float> even(10001), background(1000), sparse(100000, 5.0F);
    std::iota(even.begin(), even.end(), 0.0F);
    for (int i = 0; i < 1000; ++i)
        background[static_cast<std::size_t>(i)] = static_cast<float>(i < 800 ? 100 + i % 10 : 1000 + i);
    sparse[77] = 900;
    const struct {
        const char* what;
        std::vector<float> values;
        float low, high;
    } rows[] = {
        {"the few darkest and brightest are left out", even, 10, 9980},
        {"a background becomes black", background, 106, 1997},
        {"one bright pixel is not lost", sparse, 5, 900},
        {"nothing", {}, 0, 1},
        {"no numbers", {nan, nan}, 0, 1},
        {"some numbers", {nan, 4, 8}, 4, 8},
        {"one value", {3, 3, 3}, 3, 4},
        {"one huge value", {1e30F, 1e30F}, 1e30F, aboveHuge},
    };
    for (auto row : rows) {
        const ContrastLimits limits = automaticLimits(row.values);
        EXPECT_FLOAT_EQ(limits.low, row.low) << row.what;
        EXPECT_FLOAT_EQ(limits.high, row.high) << row.what;
        EXPECT_LT(limits.low, limits.high) << row.what;
    }
}

TEST(Contrast, TakesFixedLimitsFromTheFileAndForBrightField)
{
    FakeImage file(8, 8, 3);
    image::ImageInfo& info = file.description;
    EXPECT_FALSE(fixedLimits(info, 0));
    info.wavelengths[1].displayMin = 20;
    info.wavelengths[1].displayMax = 90;
    EXPECT_EQ(fixedLimits(info, 1), (ContrastLimits{20, 90}));
    info.wavelengths[1].displayMax = 20; // an empty range asks for nothing
    EXPECT_FALSE(fixedLimits(info, 1));
    info.pixelType = image::PixelType::UInt8;
    info.wavelengths[0].colorIndex = 1;
    info.wavelengths[1].colorIndex = 2;
    info.wavelengths[2].colorIndex = 4;
    EXPECT_EQ(fixedLimits(info, 2), (ContrastLimits{0, 255}));
    info.wavelengths[2].nanometres = 461; // fluorescence in the same colours
    EXPECT_FALSE(fixedLimits(info, 2));
}

// What would hide the other wavelengths is shown at a quarter of full brightness, fluorescence as it is
// alone.
TEST(Contrast, BrightFieldAndLabelsAreKeptBelowTheOthers)
{
    std::vector<float> cells(10000), lamp(10000), labels(10000);
    for (int i = 0; i < 10000; ++i) {
        const auto index = static_cast<std::size_t>(i);
        const float noise = static_cast<float>(i * 7919 % 101);
        cells[index] = 100 + noise / 10 + (i % 100 < 20 ? 1000 + 3 * noise : 0);
        lamp[index] = 20000 + 10 * noise;
        labels[index] = i % 100 < 40 ? static_cast<float>(1 + i / 1000) : 0;
    }
    const struct {
        const char* what;
        std::vector<float> values;
        float usual; // a bright value
        bool below;
    } rows[] = {{"fluorescence", cells, 1200, false},
                {"bright field", lamp, 20500, true},
                {"labels", labels, 10, true}};
    for (const auto& row : rows) {
        std::vector<float> unordered = row.values;
        const ContrastLimits alone = automaticLimits(unordered), among = underlayLimits(row.values, alone);
        if (row.below)
            EXPECT_NEAR(brightness(row.usual, among), 64, 2) << row.what;
        else
            EXPECT_EQ(among, alone) << row.what;
    }
}

TEST(Contrast, ControlsRunWithinTheKnownRange)
{
    const struct {
        ContrastLimits limits, range, span;
    } rows[] = {
        {{100, 200}, {0, 0}, {0, 400}}, // unknown
        {{100, 200}, {90, 250}, {90, 250}},
        {{100, 200}, {0, 65535}, {0, 400}},
        {{100, 200}, {150, 160}, {100, 200}}, // never without the limits themselves
    };
    for (const auto& row : rows)
        EXPECT_EQ(contrastSpan(row.limits, row.range), row.span) << row.range.low << " to " << row.range.high;
}

TEST(Contrast, TheLimitThatMovesPushesTheOther)
{
    const ContrastLimits limits{10, 20};
    EXPECT_EQ(withLow(limits, 15, 1), (ContrastLimits{15, 20}));
    EXPECT_EQ(withLow(limits, 25, 1), (ContrastLimits{25, 26}));
    EXPECT_EQ(withHigh(limits, 15, 1), (ContrastLimits{10, 15}));
    EXPECT_EQ(withHigh(limits, 5, 0.5F), (ContrastLimits{4.5F, 5}));
}

TEST(Contrast, SamplesAreBoundedAndSpreadOverTheSection)
{
    FakeImage file(1000, 1000);
    file.value = [](const image::SectionIndex&, int, int y) { return static_cast<float>(y); };
    const auto sample = sampleSection(file, {}, 100000);
    EXPECT_LE(sample.size(), 101000U);
    EXPECT_GE(sample.size(), 50000U);
    EXPECT_LT(*std::min_element(sample.begin(), sample.end()), 20);
    EXPECT_GT(*std::max_element(sample.begin(), sample.end()), 980);
    EXPECT_TRUE(sampleSection(file, {.z = 5}, 1000).empty());
    file.broken = true;
    EXPECT_TRUE(sampleSection(file, {}, 1000).empty());
}
