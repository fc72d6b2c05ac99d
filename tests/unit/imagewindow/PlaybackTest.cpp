// SPDX-License-Identifier: MIT
// What playing shows at which time.
#include "platform/imagewindow/view/Playback.h"

#include "platform/imagewindow/view/TypedNumber.h"
#include "tests/Rows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <optional>
#include <vector>

using namespace viewer;
using std::chrono::milliseconds;

namespace {

struct Case {
    const char* name;
    PlayEnd atEnd;
    int from, last;
    int pictureTakes; // milliseconds, at a step each 100
    std::vector<int> shown;
};

class PlaybackTest : public testing::TestWithParam<Case> {};

} // namespace

TEST_P(PlaybackTest, ShowsWhatIsDue)
{
    const Case& c = GetParam();
    Playback::Clock::time_point now{};
    Playback playback;
    playback.start({PlayAxis::Z, c.atEnd, 10}, c.from, now);
    std::vector<int> shown;
    while (shown.size() < c.shown.size()) {
        now = std::max(now + milliseconds(c.pictureTakes), playback.due());
        shown.push_back(playback.indexAt(now, c.last));
    }
    EXPECT_EQ(shown, c.shown);
}

INSTANTIATE_TEST_SUITE_P(
    Runs, PlaybackTest,
    testing::Values(Case{"Loop", PlayEnd::Loop, 2, 4, 0, {3, 4, 0, 1, 2, 3}},
                    Case{"Bounce", PlayEnd::Bounce, 2, 3, 0, {3, 2, 1, 0, 1, 2, 3, 2}},
                    Case{"LoopOfTwo", PlayEnd::Loop, 0, 1, 0, {1, 0, 1}},
                    Case{"BounceOfTwo", PlayEnd::Bounce, 0, 1, 0, {1, 0, 1}},
                    Case{"BounceFromTheLast", PlayEnd::Bounce, 3, 3, 0, {2, 1, 0, 1}},
                    Case{"SlowPicturesLeaveOut", PlayEnd::Loop, 0, 99, 250, {2, 5, 7, 10}},
                    Case{"SlowBounce", PlayEnd::Bounce, 0, 9, 300, {3, 6, 9, 6, 3, 0}},
                    Case{"AShortRunMoves", PlayEnd::Loop, 0, 4, 500, {1, 2, 3, 4, 0}},
                    Case{"ARunThatHasBecomeShorter", PlayEnd::Loop, 9, 3, 0, {0, 1, 2}}),
    RowName());

TEST(Playback, NothingIsDueTooEarly)
{
    const Playback::Clock::time_point start{};
    Playback playback;
    EXPECT_FALSE(playback.running());
    playback.start({PlayAxis::Z, PlayEnd::Loop, 10}, 5, start);
    EXPECT_EQ(playback.due(), start + milliseconds(100));
    EXPECT_EQ(playback.indexAt(start + milliseconds(99), 9), 5);
    EXPECT_EQ(playback.indexAt(start + milliseconds(100), 9), 6);
    EXPECT_EQ(playback.due(), start + milliseconds(200));
    playback.stop();
    EXPECT_FALSE(playback.running());
}

TEST(Playback, SettingsComeBackAndImpossibleOnesDoNot)
{
    const PlaySettings usual, fast{PlayAxis::Time, PlayEnd::Bounce, 12.5};
    EXPECT_EQ(playOf(playText(fast)), fast);
    for (const char* text : {"", "z", "z 0 loop", "y nan x", "z 1e9 loop", "z -3 loop"})
        EXPECT_EQ(playOf(text), usual) << text;
}

TEST(TypedNumber, IsReadWithPointOrComma)
{
    EXPECT_EQ(typedNumber(" 2.5 "), 2.5F);
    EXPECT_EQ(typedNumber("+2,5"), 2.5F);
    EXPECT_EQ(typedNumber("-1e3"), -1000.0F);
    for (const char* text : {"", " ", "x", "1 2", "2.5 s", "nan", "inf", "1e99"})
        EXPECT_EQ(typedNumber(text), std::nullopt) << text;
}
