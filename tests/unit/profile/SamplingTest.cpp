// SPDX-License-Identifier: MIT
#include <gmock/gmock.h> // before the headers of X, whose macros break it

#include "profile/Profile.h"
#include "segment/Segment.h"
#include "tests/recording/Recording.h"

#include <cfloat>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

using recording::calls;
using recording::callsOf;
using recording::script;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

class Sampling : public ::testing::Test {
protected:
    void SetUp() override
    {
        recording::reset();
        settings = {0, 0, 0.5f};
        sample(0, 0, 0, 0); // a segment within one pixel empties the profile
        profile.scaleMin = profile.scaleMax = 0;
        calls.clear();
    }

    static int sample(float x0, float y0, float x1, float y1, float z = 0)
    {
        segment.start = {0, x0, y0, z};
        segment.end = {0, x1, y1, z};
        return sampleProfile();
    }

    static void setWaves(std::vector<int> displayed)
    {
        script.waves.assign(displayed.size(), 500);
        script.colors.clear();
        for (size_t w = 0; w < displayed.size(); w++)
            script.colors.push_back(static_cast<int>(10 + w));
        script.displayed = displayed;
        script.pixel = [](int x, int y, int z, int w) {
            return static_cast<float>(x + 100 * y + 10000 * w + z);
        };
    }

    static std::vector<float> samples(int c)
    {
        return {profile.channelSamples[c], profile.channelSamples[c] + profile.sampleCount};
    }
    static std::vector<int> waves()
    {
        return {profile.channelWave, profile.channelWave + profile.channelCount};
    }
};

TEST_F(Sampling, TakesTheValueOfEachPixelInOrder)
{
    EXPECT_EQ(sample(10.7f, 5.9f, 3.2f, 5.9f), 1);
    EXPECT_THAT(samples(0), ElementsAre(5010, 5009, 5008, 5007, 5006, 5005, 5004, 5003));
    EXPECT_EQ(profile.samplePoints[0].x, 10);
    EXPECT_EQ(profile.samplePoints[7].x, 3);
    EXPECT_EQ(profile.samplePoints[7].y, 5);
    EXPECT_EQ(profile.scaleMin, 5003);
    EXPECT_EQ(profile.scaleMax, 5010);
}

TEST_F(Sampling, ReadsOnlyTheRectangleByCallsInTheirFixedOrder)
{
    setWaves({1, 0, 1});
    script.z = 4;
    sample(2.5f, 9.9f, 4, 7);
    EXPECT_THAT(calls, ElementsAre("IMAlCon(1, 1)", "IMRtZWTP(1)", "IWRtImgColor(1)", "IWRtDisSec_ZWTP(1)",
                                   "IWRtMulDis(1)", "IWIsWaveMap(1, 0)", "IMPosnZWTP(1, 4, 0, 0, 0)",
                                   "IWRtScratchSize(1)", "IMRdPas(1, 3, 3, 2, 4, 7, 9)", "IWIsWaveMap(1, 1)",
                                   "IWIsWaveMap(1, 2)", "IMPosnZWTP(1, 4, 2, 0, 0)", "IWRtScratchSize(1)",
                                   "IMRdPas(1, 3, 3, 2, 4, 7, 9)"));
    EXPECT_THAT(waves(), ElementsAre(0, 2));
    EXPECT_THAT(std::vector<int>(channelColorIndex, channelColorIndex + 2), ElementsAre(10, 12));
    EXPECT_THAT(samples(1), ElementsAre(20906, 20807, 20708));
}

TEST_F(Sampling, LeavesOutWhatCannotBeHad)
{
    const struct {
        const char* name;
        std::function<void()> arrange;
        std::vector<int> waves;
    } cases[] = {
        {"unreadable wavelength",
         [] { script.readFails = [](int read) { return read == 1; }; },
         {0, 2, 3, 4, 5}},
        {"not yet arrived", [] { script.scratchSize = 9, script.topImage = {3, 2, 0, 1, 9, 4}; }, {0, 4, 5}},
        {"no scratch area", [] { script.topImage = {0, 0, 0, 0, 0, 0}; }, {0, 1, 2, 3, 4}},
        {"six displayed", [] {}, {0, 1, 2, 3, 4}},
        {"none displayed", [] { script.displayed = {0, 0, 0, 0, 0, 0}; }, {}},
    };
    for (const auto& c : cases) {
        recording::reset();
        setWaves({1, 1, 1, 1, 1, 1});
        script.z = 2;
        c.arrange();
        EXPECT_EQ(sample(0, 0, 0, 5), 1);
        EXPECT_EQ(profile.sampleCount, c.waves.empty() ? 0 : 6) << c.name;
        EXPECT_THAT(waves(), ElementsAreArray(c.waves)) << c.name;
    }
    EXPECT_EQ(profile.scaleMin, FLT_MAX);
    EXPECT_EQ(profile.scaleMax, -FLT_MAX);
}

TEST_F(Sampling, TakesTheSegmentsOwnSectionInPanelsOfSections)
{
    const struct {
        const char* name;
        int columns, rows, style;
        const char* expected;
    } cases[] = {
        {"single panel", 1, 1, 1, "IMPosnZWTP(1, 5, 0, 0, 0)"},
        {"a row of sections", 2, 1, 1, "IMPosnZWTP(1, 2, 0, 0, 0)"},
        {"a column of sections", 1, 3, 1, "IMPosnZWTP(1, 2, 0, 0, 0)"},
        {"panels of wavelengths", 2, 2, 2, "IMPosnZWTP(1, 5, 0, 0, 0)"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        recording::reset();
        script.z = 5;
        script.columns = c.columns, script.rows = c.rows, script.style = c.style;
        sample(0, 0, 3, 0, 2.9f);
        EXPECT_THAT(callsOf({"IMPosnZWTP"}), ElementsAre(c.expected));
    }
}

TEST_F(Sampling, ConstantRangeIsThatOfAllWavelengths)
{
    setWaves({1, 0, 1});
    settings.scaleMode = 1;
    script.ranges = {{0, {10, 50}}, {1, {-3, 20}}}; // the third is unknown
    sample(0, 0, 5, 0);
    EXPECT_EQ(profile.scaleMin, -3);
    EXPECT_EQ(profile.scaleMax, 50);
}

TEST_F(Sampling, OnePixelEmptiesTheProfileAndKeepsTheRange)
{
    sample(1, 1, 4, 1);
    EXPECT_EQ(sample(3.0f, 2.0f, 3.99f, 2.99f), 0);
    EXPECT_EQ(profile.sampleCount, 0);
    EXPECT_EQ(profile.channelCount, 0);
    EXPECT_EQ(profile.samplePoints, nullptr);
    EXPECT_EQ(profile.scaleMax, 1004);
}

// Read under the address sanitizer too: the buffers must be as long as the counts that stay.
TEST_F(Sampling, APositioningFailureLeavesAWholeProfile)
{
    setWaves({1, 1});
    sample(0, 3, 60, 3);
    const std::vector<float> before[] = {samples(0), samples(1)};
    script.unpositionable = {1};
    EXPECT_EQ(sample(5, 9, 8, 9), 0);
    EXPECT_EQ(calls.back(), "WMShowWarning(\"Error positioning to read image\")");
    EXPECT_EQ(profile.sampleCount, 61);
    EXPECT_THAT(waves(), ElementsAre(0, 1));
    EXPECT_EQ(profile.samplePoints[60].x, 60);
    EXPECT_EQ(profile.scaleMin, 300);
    EXPECT_EQ(samples(0), before[0]);
    EXPECT_EQ(samples(1), before[1]);
}

TEST_F(Sampling, HugeRectanglesAreReadInPieces)
{
    setWaves({1, 1});
    ASSERT_EQ(sample(5, 4200, 4100.5f, 17), 1);  // 4096 x 4184 pixels: above 16 Mi
    EXPECT_EQ(callsOf({"IMRdPas"}).size(), 10u); // a diagonal of 4184 in squares of 1024, twice
    for (const std::string& call : callsOf({"IMRdPas"})) {
        int nx = 0, ny = 0;
        ASSERT_EQ(std::sscanf(call.c_str(), "IMRdPas(1, %d, %d", &nx, &ny), 2);
        EXPECT_LE(nx * ny, 1 << 20);
    }
    ASSERT_EQ(profile.sampleCount, 4184);
    for (int i = 0; i < profile.sampleCount; i++) {
        PixelPoint point = profile.samplePoints[i];
        ASSERT_EQ(profile.channelSamples[1][i], script.pixel(point.x, point.y, 0, 1));
    }
}

TEST_F(Sampling, AWavelengthThatFailsHalfwayLeavesNoTrace)
{
    setWaves({1, 1});
    script.pixel = [](int, int, int, int w) { return w == 0 ? 1e6f : 7.0f; };
    script.readFails = [](int read) { return read == 3; };
    sample(0, 0, 4095, 4200);
    EXPECT_THAT(waves(), ElementsAre(1));
    EXPECT_EQ(profile.scaleMax, 7);
}
