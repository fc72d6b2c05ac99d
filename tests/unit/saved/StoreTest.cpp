// SPDX-License-Identifier: MIT
#include "tests/unit/saved/SavedTest.h"

#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>
#include <memory>
#include <string>
#include <unistd.h>
#include <vector>

using recording::calls;
using recording::callsOf;
using recording::script;
using ::testing::ElementsAre;

using Store = SavedTest;

TEST_F(Store, KeepsTheProfileWithItsContext)
{
    script.z = 2, script.t = 3, script.nt = 4;
    script.header = {{1, 7.25}, {14, 101.5}};
    script.stageOrigin[0] = 100;
    settings.showFwhm = 1;
    const SavedProfile& saved = save();
    EXPECT_STREQ(saved.imageName, "/images/cells.ome.tif");
    EXPECT_EQ(saved.sampleCount, 5);
    EXPECT_THAT(std::vector<int>(saved.channelWaves, saved.channelWaves + saved.channelCount),
                ElementsAre(488, 640));
    EXPECT_EQ(saved.channelSamples[1][4], 20006);
    EXPECT_EQ(saved.pixelPoints[4].x, 6);
    EXPECT_EQ(saved.micronPoints[4].x, 103);
    EXPECT_EQ(saved.segmentCopy[0].markerId, 3);
    EXPECT_EQ(saved.segmentCopy[1].x, 103);
    EXPECT_EQ(saved.segmentLength, 2);
    EXPECT_FLOAT_EQ(saved.angle, -179.99985f);
    EXPECT_EQ(saved.zSection, 3);
    EXPECT_EQ(saved.timePoint, 4);
    EXPECT_EQ(saved.timeSeconds, 7.25f);
    EXPECT_EQ(saved.knownBias, 101.5f);
    EXPECT_EQ(saved.pixelSize, 0.5f);
    EXPECT_EQ(saved.peakFwhm, 0.625f);
}

TEST_F(Store, SavedAtIsTheLocalTimeWithoutItsLineFeed)
{
    std::string text = save().savedAt;
    tm parsed = {};
    const char* end = strptime(text.c_str(), "%a %b %d %H:%M:%S %Y", &parsed);
    ASSERT_TRUE(end && *end == '\0') << text;
    parsed.tm_isdst = -1;
    EXPECT_NEAR(static_cast<double>(std::mktime(&parsed)), static_cast<double>(std::time(nullptr)), 5);
}

TEST_F(Store, SavingCallsThePlatformInItsFixedOrder)
{
    script.z = 1, script.w = 2;
    save();
    EXPECT_THAT(callsOf({"IWRtFilename", "IM", "IWRtDisSec", "WM"}),
                ElementsAre("IWRtFilename(1, 0)", "IMRtZWTP(1)", "IWRtDisSec_ZWTP(1)",
                            "IMRtExHdrValueZWTP(1, 1, 2, 0, 0, 14)", "IMRtDel(1)", "IMRtWav(1)",
                            "WMEnableField(Clear)", "WMEnableField(Write)", "WMUpdateField(counter)"));
    EXPECT_THAT(callsOf({"IWDataToTSPos"}),
                ElementsAre("IWDataToTSPos(10, 20, 1, 1)", "IWDataToTSPos(6, 20, 1, 1)",
                            "IWDataToTSPos(10, 20, 1, 1)", "IWDataToTSPos(9, 20, 1, 1)",
                            "IWDataToTSPos(8, 20, 1, 1)", "IWDataToTSPos(7, 20, 1, 1)",
                            "IWDataToTSPos(6, 20, 1, 1)"));
}

TEST_F(Store, WhatCannotBeReadIsNeutral)
{
    script.filename = "";
    script.header = {{1, 7.25}}; // a time, but a single time point
    const SavedProfile& saved = save();
    EXPECT_STREQ(saved.imageName, "unknown");
    EXPECT_EQ(saved.timeSeconds, 0);
    EXPECT_EQ(saved.knownBias, 0);
    EXPECT_EQ(saved.peakFwhm, 0); // the option is off
}

TEST_F(Store, ChannelsThatTheProfileLacksAreZero)
{
    script.displayed = {1, 1, 1};
    const SavedProfile& saved = save();
    EXPECT_EQ(saved.channelCount, 3);
    EXPECT_EQ(saved.channelSamples[1][0], 20010);
    for (int i = 0; i < saved.sampleCount; i++)
        EXPECT_EQ(saved.channelSamples[2][i], 0);
}

TEST_F(Store, NeverKeepsMoreThanFiveChannels)
{
    script.waves.assign(9, 500);
    script.displayed.assign(9, 1);
    EXPECT_EQ(save().channelCount, 5);
}

TEST_F(Store, NothingIsSavedWithoutAProfile)
{
    segment.end = segment.start;
    sampleProfile();
    saveCurrentProfile(nullptr, nullptr, nullptr);
    EXPECT_EQ(savedCount, 0);
}

TEST_F(Store, ClearForgetsAll)
{
    for (int saved : {0, 3}) {
        for (int i = 0; i < saved; i++)
            save();
        calls.clear();
        clear();
        EXPECT_EQ(savedCount, 0);
        EXPECT_EQ(savedProfiles, nullptr);
        EXPECT_THAT(calls,
                    ElementsAre("WMDisableField(Clear)", "WMDisableField(Write)", "WMUpdateField(counter)"));
    }
}

namespace {

double residentBytes()
{
    long size = 0, resident = 0;
    std::ifstream("/proc/self/statm") >> size >> resident;
    return static_cast<double>(resident * sysconf(_SC_PAGESIZE));
}

} // namespace

TEST_F(Store, MemoryGrowsByTheRecordsAndComesBack)
{
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "The address sanitizer keeps freed memory back.";
#endif
    script.waves.assign(5, 500), script.displayed.assign(5, 1), script.colors.assign(5, 1);
    segment.end = {0, 2009, 20, 1};
    sampleProfile();
    save();
    const double before = residentBytes();
    constexpr int records = 500;
    constexpr double bytes = records * 2000.0 * (5 * sizeof(float) + 2 * sizeof(FloatPair));
    std::vector<std::unique_ptr<char[]>> later; // blocks that stay, among the records
    for (int i = 0; i < records; i++, calls.clear()) {
        save();
        later.push_back(std::make_unique<char[]>(16));
    }
    EXPECT_NEAR(residentBytes() - before, bytes, 0.05 * bytes);
    clear();
    EXPECT_LT(residentBytes() - before, bytes / 10);
}
