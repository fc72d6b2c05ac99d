// SPDX-License-Identifier: MIT
// The texts of the status lines: what they hold in which state, and for how long.
#include "platform/imagewindow/view/Status.h"

#include "tests/Rows.h"
#include "tests/unit/imagewindow/FakeImage.h"

#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

using namespace viewer;
using viewertest::FakeImage;
using Items = std::vector<std::string>;

namespace {

struct Case {
    const char* name;
    int wavelengths;
    bool calibrated;
    const char *activity, *sentence;
    bool pointed;
    StatusTexts expected;
};

constexpr const char* uncalibrated = "uncalibrated: 1 pixel counts as 1 µm";

class StatusTest : public testing::TestWithParam<Case> {};

} // namespace

TEST_P(StatusTest, TellsTheState)
{
    const Case& row = GetParam();
    FakeImage file(30, 20, row.wavelengths);
    file.description.format = "a fake";
    file.description.calibrated = row.calibrated;
    file.description.remarks = {"In /data/day 1/a.tif something is odd.", "And more."};
    const View view = initialView(file.info());
    const PanelContent panel = panelContents(file.info(), view).front();
    const StatusFacts facts{file, view, scaleOf(file.info(), {}), "/data/day 1/a.tif", row.activity};
    std::optional<PointedPixel> pointed;
    if (row.pointed)
        pointed.emplace(PointedPixel{panel, 4.75, 2.5, {{"w 1", 12.0F}}});
    StatusTexts expected = row.expected;
    expected.remark = "In a.tif something is odd. And more.";
    EXPECT_EQ(statusTexts(facts, row.sentence, pointed), expected);
}

INSTANTIATE_TEST_SUITE_P(
    States, StatusTest,
    testing::Values(
        Case{"Calm", 1, true, "", "", false, {"", "", {"30 x 20", "a fake"}, "", {"100 %"}}},
        Case{"Busy",
             2,
             false,
             "ranges 40 %",
             "",
             false,
             {"", "", {"30 x 20, 2 wavelengths", "a fake"}, "", {"ranges 40 %", uncalibrated, "100 %"}}},
        Case{"Pointed",
             1,
             true,
             "",
             "",
             true,
             {"", "", {"x 4  y 2", "w 1 12"}, "position 4.75, 2.50 µm", {"100 %"}}},
        Case{"Failed",
             1,
             true,
             "",
             "Cannot read /data/day 1/a.tif: gone.",
             false,
             {"", "Cannot read a.tif: gone.", {"30 x 20", "a fake"}, "", {"100 %"}}}),
    RowName{});

TEST(Status, TheWidestTextsHoldAnyPixelAndAnyActivity)
{
    FakeImage file(3000, 20, 2);
    file.description.calibrated = true;
    file.description.wavelengths[1].name = "a rather long name";
    View view = initialView(file.info());
    view.style = protocol::WavelengthPanels;
    const StatusFacts facts{file, view, scaleOf(file.info(), {}), "/a.tif", ""};
    const StatusTexts widest = widestTexts(facts);
    ASSERT_EQ(widest.pixel.size(), 3U); // caption, place, value
    EXPECT_EQ(widest.pixel[1], "x 3000  y 20");
    EXPECT_NE(widest.pixel[2].find("a rather long name"), std::string::npos);
    EXPECT_EQ(widest.stage, "position 3000.00, 20.00 µm");
    EXPECT_EQ(widest.state, (std::vector<std::string>{"ranges 100 %", "100 %"}));
}

TEST(Notice, GoesWithThePointerButNotBeforeItCouldBeRead)
{
    const Notice::Clock::time_point start{};
    Notice notice;
    notice.answer("One wavelength has to stay.");
    notice.pointerMoved(start);
    EXPECT_EQ(notice.sentence(), "");
    notice.tell("A tool has come.", start);
    notice.pointerMoved(start + std::chrono::seconds(4));
    EXPECT_EQ(notice.sentence(), "A tool has come.");
    notice.pointerMoved(start + std::chrono::seconds(5));
    EXPECT_EQ(notice.sentence(), "");
}
