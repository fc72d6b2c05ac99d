// SPDX-License-Identifier: MIT
#include "platform/imagewindow/render/Histogram.h"

#include "tests/Rows.h"
#include "tests/unit/imagewindow/FakeImage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

using namespace viewer;

namespace {

struct CountCase {
    const char* name;
    std::vector<float> values;
    ContrastLimits from;
    bool integers;
    std::size_t bins;
    std::vector<std::uint32_t> counts;
    ContrastLimits axis;
};

class HistogramCounts : public testing::TestWithParam<CountCase> {};

} // namespace

TEST_P(HistogramCounts, AreInBinsOfEqualWidth)
{
    const CountCase& c = GetParam();
    const Histogram histogram = histogramOf(c.values, c.from, c.integers, c.bins);
    EXPECT_EQ(histogram.counts, c.counts);
    EXPECT_EQ(histogram.axis, c.axis);
    EXPECT_EQ(histogram.most, *std::max_element(c.counts.begin(), c.counts.end()));
}

INSTANTIATE_TEST_SUITE_P(
    All, HistogramCounts,
    testing::Values(
        CountCase{"OneBinForEachWholeNumber", {3, 3, 4, 6}, {3, 6}, true, 256, {2, 1, 0, 1}, {3, 7}},
        CountCase{"BinsOfTwoWholeNumbers", {0, 1, 2, 3, 4}, {0, 4}, true, 3, {2, 2, 1}, {0, 6}},
        CountCase{"WholeNumbersBetweenFractions", {1, 2, 3}, {1.5F, 3.5F}, true, 8, {0, 1, 1}, {1, 4}},
        CountCase{"Fractions", {0, 0.24F, 0.25F, 0.5F, 1}, {0, 1}, false, 4, {2, 1, 1, 1}, {0, 1}},
        CountCase{"ValuesBeyond", {-5, 0, 99}, {0, 1}, false, 2, {1, 0}, {0, 1}},
        CountCase{"NotANumberIsInNoBin",
                  {std::nanf(""), std::numeric_limits<float>::infinity(), 0.1F},
                  {0, 1},
                  false,
                  2,
                  {1, 0},
                  {0, 1}},
        CountCase{"Nothing", {}, {0, 1}, true, 4, {0, 0}, {0, 2}}),
    RowName{});

TEST(Histogram, BarsGrowWithTheCountAndOneIsSeenOnALogarithmicScale)
{
    for (const bool logarithmic : {false, true}) {
        EXPECT_EQ(barShare(0, 1000, logarithmic), 0);
        EXPECT_EQ(barShare(1000, 1000, logarithmic), 1);
        EXPECT_LT(barShare(10, 1000, logarithmic), barShare(11, 1000, logarithmic));
    }
    EXPECT_EQ(barShare(250, 1000, false), 0.25);
    EXPECT_GT(barShare(1, 1000000, true), 0.03);
    EXPECT_EQ(barShare(1, 0, true), 0);
}

TEST(Histogram, LargeSectionsAreSampledAndSaySo)
{
    viewertest::FakeImage file(640, 400);
    const SectionSample whole = readSample(file, {0, 0, 0, 0}, 640L * 400);
    EXPECT_TRUE(whole.whole);
    EXPECT_EQ(whole.values.size(), 640U * 400);
    const SectionSample part = readSample(file, {0, 0, 0, 0}, 10000);
    EXPECT_FALSE(part.whole);
    EXPECT_LE(part.values.size(), 10000U);
    EXPECT_GE(part.values.size(), 5000U);
    EXPECT_LE(part.range.low, part.range.high);
    EXPECT_TRUE(readSample(file, {99, 0, 0, 0}, 1000).values.empty());
}

TEST(Histogram, ASampleIsReadOnce)
{
    SampleStore store;
    int reads = 0;
    const auto read = [&] {
        ++reads;
        return SectionSample{{static_cast<float>(reads)}, true, {0, 1}};
    };
    EXPECT_EQ(store.get({1}, read)->values[0], 1);
    EXPECT_EQ(store.get({2}, read)->values[0], 2);
    EXPECT_EQ(store.get({1}, read)->values[0], 1);
    for (int key = 3; key < 20; ++key) // more than are kept
        store.get({key}, read);
    const int before = reads;
    EXPECT_EQ(store.get({1}, read)->values[0], before + 1);
}
