// SPDX-License-Identifier: MIT
#include "platform/imagewindow/files/Scale.h"

#include "tests/unit/imagewindow/FakeImage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

using namespace viewer;
using protocol::Spacing;
using testing::HasSubstr;

TEST(Scale, TakesLengthsInAnyUnit)
{
    const struct {
        const char* typed;
        float microns;
    } rows[] = {{"0.1075", 0.1075F}, {" 107.5 nm ", 0.1075F}, {"107.5nm", 0.1075F},
                {"2e-1 um", 0.2F},   {"0.2 \u00b5m", 0.2F},   {"0.5mm", 500},
                {"1 inch", 25400},   {"650 pm", 0.00065F},    {"3 \u00c5", 0.0003F}};
    for (const auto& row : rows) {
        const TypedLength length = parseLength(row.typed);
        ASSERT_TRUE(length.microns) << row.typed << ": " << length.problem;
        EXPECT_FLOAT_EQ(*length.microns, row.microns) << row.typed;
        EXPECT_EQ(parseLength(lengthText(*length.microns)).microns, length.microns) << row.typed;
    }
}

TEST(Scale, SaysWhatIsNoLength)
{
    const struct {
        const char *typed, *said;
    } rows[] = {{"", "no length"},
                {"abc", "\"abc\" is no length"},
                {"0", "above 0"},
                {"-2 nm", "above 0"},
                {"0,1", "no unit"},
                {"1 pixel", "no unit"},
                {"5 s", "no unit"},
                {"nan", "no length"},
                {"inf", "that no image has"},
                {"1e300", "that no image has"},
                {"1e-30", "that no image has"}};
    for (const auto& row : rows) {
        const TypedLength length = parseLength(row.typed);
        EXPECT_FALSE(length.microns) << row.typed;
        EXPECT_THAT(length.problem, HasSubstr(row.said)) << row.typed;
    }
    EXPECT_LT(parseLength(std::string(100000, 'x')).problem.size(), 200U);
}

TEST(Scale, TheUsersCountsWhereTheFileHasNone)
{
    viewertest::FakeImage file(4, 4);
    EXPECT_TRUE(needsScale(file.info()));
    EXPECT_FALSE(scaleOf(file.info(), {}).known);
    const Scale set = scaleOf(file.info(), UserScale{0.5F, 0.25F, {}});
    EXPECT_TRUE(set.known && !set.zKnown);
    EXPECT_EQ(set.spacing, (Spacing{0.5F, 0.25F, 1}));
    EXPECT_TRUE(scaleOf(file.info(), UserScale{1, 1, 3}).zKnown);
    file.description.calibrated = true;
    EXPECT_FALSE(needsScale(file.info()));
    file.description.sizeZ = 5;
    EXPECT_TRUE(needsScale(file.info())); // of z
}
