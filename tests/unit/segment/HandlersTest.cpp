// SPDX-License-Identifier: MIT
// Press, motion and release in the image window: what the user sees of the segment there, in the message line
// and at the distance axis. The platform's calls are pinned where they are what a site's own platform relies
// on.
#include "tests/recording/RunningTool.h"

#include "profile/Plot.h"
#include "segment/Segment.h"
#include "shell/Message.h"
#include "shell/ToolWindow.h"
#include "tests/Rows.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

using recording::calls;
using recording::callsOf;
using recording::handlers;
using recording::script;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Key;
using ::testing::ValuesIn;
using ::testing::WithParamInterface;

// segmentMotion does not free its copy of a motion that it rejects. The tool keeps this behaviour, so the
// leak checker is told to pass over it.
extern "C" const char* __lsan_default_suppressions()
{
    return "leak:segmentMotion";
}

class Handlers : public RunningTool {
protected:
    void TearDown() override
    {
        if (dragging)
            release();
    }
    static std::vector<std::string> overlayCalls() { return callsOf({"IWGr", "IWDisplay"}); }
};

TEST_F(Handlers, APressMarksTheStartBetweenPixelsAndHearsTheDrag)
{
    script.fraction = 0.25f;
    press(12, 34);
    EXPECT_THAT(overlayCalls(), ElementsAre("IWGrAddPt2D(1, 2, 7, 12.25, 34.25)", "IWDisplay(1)"));
    EXPECT_THAT(handlers, ElementsAre(Key(ButtonPressMask), Key(ButtonReleaseMask), Key(EnterWindowMask),
                                      Key(PointerMotionMask)));
    EXPECT_EQ(segmentDefined, 0);
}

TEST_F(Handlers, ASecondPressLeavesTheDragAsItIs)
{
    press(12, 34);
    calls.clear();
    press(50, 50);
    EXPECT_THAT(overlayCalls(), IsEmpty());
    EXPECT_EQ(segment.start.x, 12);
}

TEST_F(Handlers, WithoutMotionThereIsNoLineToSample)
{
    press(12, 34);
    release();
    EXPECT_THAT(callsOf({"IMAlCon"}), IsEmpty());
}

namespace {

struct Press {
    const char* name;
    unsigned button;
    int onImage, x, y;
    float fraction;
    int accepted;
};

const Press presses[] = {
    {"FirstPixel", 1, 1, 0, 0, 0, 1},           {"LastPixel", 1, 1, 99, 79, 0, 1},
    {"MiddleButton", 2, 1, 5, 5, 0, 0},         {"RightButton", 3, 1, 5, 5, 0, 0},
    {"OffTheImage", 1, 0, 5, 5, 0, 0},          {"LeftOfTheImage", 1, 1, 0, 5, -0.01f, 0},
    {"RightOfTheImage", 1, 1, 99, 5, 0.01f, 0}, {"BelowTheImage", 1, 1, 5, 79, 0.01f, 0},
    {"AboveTheImage", 1, 1, 5, 0, -0.01f, 0},
};

} // namespace

class PressPlaces : public Handlers, public WithParamInterface<Press> {};
INSTANTIATE_TEST_SUITE_P(, PressPlaces, ValuesIn(presses), RowName());

TEST_P(PressPlaces, OnlyButtonOneOnAPixelStartsADrag)
{
    script.onImage = GetParam().onImage;
    script.fraction = GetParam().fraction;
    press(GetParam().x, GetParam().y, GetParam().button);
    EXPECT_EQ(dragging, GetParam().accepted);
    EXPECT_EQ(handlers.contains(PointerMotionMask), GetParam().accepted);
}

// The order of the platform's calls is fixed; a slow profile never holds the line back.
TEST_F(Handlers, EachMotionDrawsTheLineThenTheProfileThenTheReadout)
{
    press(10, 10);
    calls.clear();
    motion(13, 14);
    EXPECT_THAT(callsOf({"IWGr", "IWDisplay", "IMAlCon", "IWDataToTSPos", "WM"}),
                ElementsAre("IWGrAddLn2D(1, 2, 0, 7, 10, 10, 13, 14)", "IWDisplay(1)", "IMAlCon(1, 1)",
                            "IWDataToTSPos(13, 14, 0, 1)", "IWDataToTSPos(10, 10, 0, 1)",
                            "WMUpdateField(text)"));
    EXPECT_STREQ(messageText, "Line length 2.500 \xB5m, angle 53.13 degrees");
}

// Each line takes the place of the one before; the press takes the graphics of the segment before away.
TEST_F(Handlers, TheNextDragReplacesTheGraphics)
{
    drag(10, 10, 20, 20); // ids 1 and 2
    calls.clear();
    press(30, 30);
    EXPECT_EQ(segmentDefined, 0);
    motion(31, 30);
    motion(32, 30);
    EXPECT_THAT(overlayCalls(),
                ElementsAre("IWGrRmGrID(1, 1)", "IWGrRmGrID(1, 2)", "IWDisplay(1)",
                            "IWGrAddPt2D(1, 2, 7, 30, 30)", "IWDisplay(1)", "IWGrRmGrID(1, 2)",
                            "IWGrAddLn2D(1, 2, 0, 7, 30, 30, 31, 30)", "IWDisplay(1)", "IWGrRmGrID(1, 4)",
                            "IWGrAddLn2D(1, 2, 0, 7, 30, 30, 32, 30)", "IWDisplay(1)"));
}

namespace {

struct Panels {
    const char* name;
    int columns, rows, style;
    const char *marker, *line;
};

constexpr const char *singleMarker = "IWGrAddPt2D(1, 2, 7, 5, 6)",
                     *singleLine = "IWGrAddLn2D(1, 2, 0, 7, 5, 6, 8, 9)",
                     *anyMarker = "IWGrAddPt5D(1, -1, -1, 2, 7, 5, 6, -1)",
                     *anyLine = "IWGrAddLn5D(1, -1, -1, 2, 0, 7, 5, 6, -1, 8, 9, -1)";

const Panels panelStyles[] = {
    {"SinglePanel", 1, 1, 2, singleMarker, singleLine},
    {"StyleZeroShowsThemEverywhere", 2, 1, 0, anyMarker, anyLine},
    {"StyleOneBindsThemToTheSection", 2, 1, 1, "IWGrAddPt5D(1, -1, -1, 2, 7, 5, 6, 4)",
     "IWGrAddLn5D(1, -1, -1, 2, 0, 7, 5, 6, 4, 8, 9, 4)"},
    {"StyleTwoBindsThemToThePanel", 1, 2, 2, "IWGrAddPt5D(1, -1, 3, 2, 7, 5, 6, -1)",
     "IWGrAddLn5D(1, -1, 3, 2, 0, 7, 5, 6, -1, 8, 9, -1)"},
    {"StyleThreeShowsThemEverywhere", 1, 2, 3, anyMarker, anyLine},
};

} // namespace

class PanelStyles : public Handlers, public WithParamInterface<Panels> {};
INSTANTIATE_TEST_SUITE_P(, PanelStyles, ValuesIn(panelStyles), RowName());

TEST_P(PanelStyles, BindMarkerAndLine)
{
    script.columns = GetParam().columns, script.rows = GetParam().rows, script.style = GetParam().style;
    script.panel = 3, script.pressZ = 4;
    drag(5, 6, 8, 9);
    EXPECT_THAT(callsOf({"IWGrAdd"}), ElementsAre(GetParam().marker, GetParam().line));
}

namespace {

struct Motion {
    const char* name;
    std::function<void()> arrange;
    unsigned state;
    bool accepted;
};

const Motion motions[] = {
    {"OtherButton", [] {}, Button2Mask | LockMask, false},
    {"OffTheImage", [] { script.onImage = 0; }, Button1Mask, false},
    {"OtherPanel", [] { script.panel = 1; }, Button1Mask, false},
    {"OtherSubPanel", [] { script.subPanel = 1; }, Button1Mask, false},
    {"OtherSection", [] { script.pressZ = 1; }, Button1Mask, false},
    {"SinglePanelWhateverItsNumber", [] { script.columns = 1, script.panel = 1; }, Button1Mask, true},
    {"WithoutADrag", [] { dragging = 0; }, Button1Mask, false},
};

} // namespace

class MotionPlaces : public Handlers, public WithParamInterface<Motion> {};
INSTANTIATE_TEST_SUITE_P(, MotionPlaces, ValuesIn(motions), RowName());

TEST_P(MotionPlaces, OnlyThePanelOfThePressMovesTheLine)
{
    script.columns = 2, script.style = 1;
    press(5, 6);
    calls.clear();
    GetParam().arrange();
    motion(8, 9, GetParam().state);
    EXPECT_EQ(segmentDefined, GetParam().accepted);
    EXPECT_EQ(overlayCalls().empty(), !GetParam().accepted);
}

namespace {

struct End {
    const char* name;
    int x, y;
    float fraction;
    unsigned modifiers;
    float endX, endY;
};

const End ends[] = {
    {"Free", 30, 50, 0.5f, 0, 30.5f, 50.5f},
    {"ShiftIsVertical", 30, 50, 0.5f, ShiftMask, 20.5f, 50.5f},
    {"ControlIsHorizontal", 30, 50, 0.5f, ControlMask, 30.5f, 20.5f},
    {"ShiftWinsOverControl", 30, 50, 0.5f, ShiftMask | ControlMask, 20.5f, 50.5f},
    {"WindowEdge", -7, 50, 0.5f, 0, 0.5f, 50.5f},
    {"LastPixelOfTheWindow", 500, 500, -0.5f, 0, 98.5f, 78.5f},
    {"LastColumnWithYFollowing", 99, 50, 0.5f, 0, 99, 50.5f},
    {"LastRowWithXFollowing", 50, 79, 0.5f, 0, 50.5f, 79},
    {"FirstPixel", 0, -3, -0.75f, 0, 0, 0},
};

} // namespace

class SegmentEnds : public Handlers, public WithParamInterface<End> {};
INSTANTIATE_TEST_SUITE_P(, SegmentEnds, ValuesIn(ends), RowName());

TEST_P(SegmentEnds, AreConstrainedAndClamped)
{
    script.fraction = 0.5f;
    press(20, 20);
    script.fraction = GetParam().fraction;
    motion(GetParam().x, GetParam().y, Button1Mask | GetParam().modifiers);
    EXPECT_EQ(std::pair(segment.end.x, segment.end.y), std::pair(GetParam().endX, GetParam().endY));
}

namespace {

// Lengths in microns.
struct Length {
    const char* name;
    int dx;
    float spacing, length;
    int precision;
};

const Length lengths[] = {
    {"BelowOne", 9, 0.111f, 0.999f, 2}, {"One", 10, 0.1f, 1, 1}, {"Ten", 10, 1, 10, 0},
    {"Leftwards", -10, 10, 100, 0},     {"None", 0, 1, 0, 2},
};

} // namespace

class SegmentLengths : public Handlers, public WithParamInterface<Length> {};
INSTANTIATE_TEST_SUITE_P(, SegmentLengths, ValuesIn(lengths), RowName());

TEST_P(SegmentLengths, SetDigitsMarginAndRangeOfTheDistanceAxis)
{
    const auto& [name, dx, spacing, length, precision] = GetParam();
    script.spacing[0] = script.spacing[1] = spacing;
    drag(50, 40, 50 + dx, 40);
    const float margin = length / static_cast<float>(valueOf<Dimension>(plot.plotArea, "width")) * 5.0f;
    const ToolWindow& w = toolWindow;
    EXPECT_EQ(valueOf<int>(w.distanceTicks, "xrtGaPrecision"), precision);
    EXPECT_FLOAT_EQ(valueOf<double>(w.distanceTicks, "xrtGaOffset"), margin);
    EXPECT_FLOAT_EQ(valueOf<double>(w.distanceScale, "xrtGaMin"), margin);
    EXPECT_FLOAT_EQ(valueOf<double>(w.distanceScale, "xrtGaMax"), length + margin);
}

TEST_F(Handlers, AReleaseEndsTheDragAndSamplesTheLine)
{
    press(5, 6);
    motion(8, 9);
    calls.clear();
    release();
    EXPECT_EQ(dragging, 0);
    EXPECT_THAT(handlers, ElementsAre(Key(ButtonPressMask), Key(EnterWindowMask)));
    EXPECT_THAT(callsOf({"IMAlCon"}), ElementsAre("IMAlCon(1, 1)"));
    EXPECT_THAT(callsOf({"IWData", "WMUpdateField"}), IsEmpty()); // length and angle stay
}
