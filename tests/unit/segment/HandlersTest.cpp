// SPDX-License-Identifier: MIT
#include "tests/recording/RunningTool.h"

#include "profile/Plot.h"
#include "segment/Segment.h"
#include "shell/Message.h"
#include "shell/ToolWindow.h"

#include <functional>
#include <string>
#include <vector>

using recording::calls;
using recording::callsOf;
using recording::handlers;
using recording::script;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Key;

// A motion that is rejected keeps its copy of the event, as it always has.
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

TEST_F(Handlers, APressMarksTheStart)
{
    script.fraction = 0.25f;
    press(12, 34);
    EXPECT_THAT(calls,
                ElementsAre("IWGetButPressInfo(12, 34)", "IMRtXY(1)",
                            "WMAddEventHandler(1, PointerMotionMask)",
                            "WMAddEventHandler(1, ButtonReleaseMask)", "IWRtMulDis(1)", "IWRtMulDisStyle(1)",
                            "IWGrAddPt2D(1, 2, 7, 12.25, 34.25)", "IWDisplay(1)"));
    EXPECT_EQ(segment.start.x, 12.25f);
    EXPECT_EQ(segment.start.markerId, 1);
    EXPECT_EQ(segmentDefined, 0);
    calls.clear();
    press(50, 50); // a second press while dragging registers the handlers again and no more
    EXPECT_THAT(callsOf({"WM", "IWGr", "IWDisplay"}), ElementsAre("WMAddEventHandler(1, PointerMotionMask)",
                                                                  "WMAddEventHandler(1, ButtonReleaseMask)"));
    EXPECT_EQ(segment.start.x, 12.25f);
    release();
    EXPECT_THAT(callsOf({"IMAlCon"}), IsEmpty()); // there is no line yet to sample
}

TEST_F(Handlers, PressesElsewhereDoNothing)
{
    const struct {
        unsigned button;
        int onImage, x, y;
        float fraction;
        int accepted;
    } cases[] = {
        {1, 1, 0, 0, 0, 1},      {1, 1, 99, 79, 0, 1},    {2, 1, 5, 5, 0, 0},
        {3, 1, 5, 5, 0, 0},      {1, 0, 5, 5, 0, 0},      {1, 1, 0, 5, -0.01f, 0},
        {1, 1, 99, 5, 0.01f, 0}, {1, 1, 5, 79, 0.01f, 0}, {1, 1, 5, 0, -0.01f, 0},
    };
    for (const auto& c : cases) {
        SetUp();
        script.onImage = c.onImage;
        script.fraction = c.fraction;
        press(c.x, c.y, c.button);
        EXPECT_EQ(dragging, c.accepted) << c.button << " " << c.x << " " << c.y;
        EXPECT_EQ(callsOf({"WMAddEventHandler"}).size(), c.accepted ? 2u : 0u);
    }
}

TEST_F(Handlers, MotionDrawsTheLineThenTheProfileThenTheReadout)
{
    press(10, 10);
    calls.clear();
    motion(13, 14);
    EXPECT_THAT(callsOf({"IWG", "IMRtXY", "IWDisplay", "IMAlCon", "IWDataToTSPos", "WM"}),
                ElementsAre("IWGetButPressInfo(13, 14)", "IMRtXY(1)",
                            "IWGrAddLn2D(1, 2, 0, 7, 10, 10, 13, 14)", "IWDisplay(1)", "IMAlCon(1, 1)",
                            "IWDataToTSPos(13, 14, 0, 1)", "IWDataToTSPos(10, 10, 0, 1)",
                            "WMUpdateField(text)"));
    EXPECT_STREQ(messageText, "Line length 2.500 \xB5m, angle 53.13 degrees");
}

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

TEST_F(Handlers, PanelsBindTheGraphicsByStyle)
{
    struct Graphics {
        const char *marker, *line;
    };
    const Graphics single{"IWGrAddPt2D(1, 2, 7, 5, 6)", "IWGrAddLn2D(1, 2, 0, 7, 5, 6, 8, 9)"};
    const Graphics anywhere{"IWGrAddPt5D(1, -1, -1, 2, 7, 5, 6, -1)",
                            "IWGrAddLn5D(1, -1, -1, 2, 0, 7, 5, 6, -1, 8, 9, -1)"};
    const Graphics section{"IWGrAddPt5D(1, -1, -1, 2, 7, 5, 6, 4)",
                           "IWGrAddLn5D(1, -1, -1, 2, 0, 7, 5, 6, 4, 8, 9, 4)"};
    const Graphics panel{"IWGrAddPt5D(1, -1, 3, 2, 7, 5, 6, -1)",
                         "IWGrAddLn5D(1, -1, 3, 2, 0, 7, 5, 6, -1, 8, 9, -1)"};
    const struct {
        int columns, rows, style;
        Graphics graphics;
    } cases[] = {
        {1, 1, 2, single}, {2, 1, 0, anywhere}, {2, 1, 1, section}, {1, 2, 2, panel}, {1, 2, 3, anywhere},
    };
    for (const auto& c : cases) {
        SetUp();
        script.columns = c.columns, script.rows = c.rows, script.style = c.style;
        script.panel = 3, script.pressZ = 4;
        drag(5, 6, 8, 9);
        EXPECT_THAT(callsOf({"IWGrAdd"}), ElementsAre(c.graphics.marker, c.graphics.line)) << c.style;
    }
}

TEST_F(Handlers, MotionElsewhereIsIgnored)
{
    const struct {
        const char* name;
        std::function<void()> arrange;
        unsigned state;
        bool accepted;
    } cases[] = {
        {"another button", [] {}, Button2Mask | LockMask, false},
        {"off the image", [] { script.onImage = 0; }, Button1Mask, false},
        {"another panel", [] { script.panel = 1; }, Button1Mask, false},
        {"another sub-panel", [] { script.subPanel = 1; }, Button1Mask, false},
        {"another section", [] { script.pressZ = 1; }, Button1Mask, false},
        {"single panel", [] { script.columns = 1, script.panel = 1; }, Button1Mask, true},
        {"no drag", [] { dragging = 0; }, Button1Mask, false},
    };
    for (const auto& c : cases) {
        SetUp();
        script.columns = 2, script.style = 1;
        press(5, 6);
        calls.clear();
        c.arrange();
        motion(8, 9, c.state);
        EXPECT_EQ(segmentDefined, c.accepted) << c.name;
        EXPECT_EQ(overlayCalls().size(), c.accepted ? 2u : 0u) << c.name;
    }
}

TEST_F(Handlers, EndsAreConstrainedAndClamped)
{
    const struct {
        int x, y;
        float fraction;
        unsigned modifiers;
        float endX, endY;
    } cases[] = {
        {30, 50, 0.5f, 0, 30.5f, 50.5f},
        {30, 50, 0.5f, ShiftMask, 20.5f, 50.5f},
        {30, 50, 0.5f, ControlMask, 30.5f, 20.5f},
        {30, 50, 0.5f, ShiftMask | ControlMask, 20.5f, 50.5f},
        {-7, 50, 0.5f, 0, 0.5f, 50.5f},     // the window's edge
        {500, 500, -0.5f, 0, 98.5f, 78.5f}, // the last pixel of the window
        {99, 50, 0.5f, 0, 99, 50.5f},       // the image's last pixel, y still following
        {50, 79, 0.5f, 0, 50.5f, 79},
        {0, -3, -0.75f, 0, 0, 0},
    };
    for (const auto& c : cases) {
        SetUp();
        script.fraction = 0.5f;
        press(20, 20);
        script.fraction = c.fraction;
        motion(c.x, c.y, Button1Mask | c.modifiers);
        EXPECT_EQ(std::pair(segment.end.x, segment.end.y), std::pair(c.endX, c.endY)) << c.x << ", " << c.y;
    }
}

TEST_F(Handlers, TheDistanceAxisFollowsTheLength)
{
    const struct {
        int dx;
        float spacing, length;
        int precision;
    } cases[] = {
        {9, 0.111f, 0.999f, 2}, {10, 0.1f, 1, 1}, {10, 1, 10, 0}, {-10, 10, 100, 0}, {0, 1, 0, 2},
    };
    const ToolWindow& w = toolWindow;
    for (const auto& c : cases) {
        SetUp();
        script.spacing[0] = script.spacing[1] = c.spacing;
        drag(50, 40, 50 + c.dx, 40);
        float margin = c.length / static_cast<float>(valueOf<Dimension>(plot.plotArea, "width")) * 5.0f;
        EXPECT_EQ(valueOf<int>(w.distanceTicks, "xrtGaPrecision"), c.precision) << c.length;
        EXPECT_FLOAT_EQ(valueOf<double>(w.distanceTicks, "xrtGaOffset"), margin) << c.length;
        EXPECT_FLOAT_EQ(valueOf<double>(w.distanceScale, "xrtGaMin"), margin) << c.length;
        EXPECT_FLOAT_EQ(valueOf<double>(w.distanceScale, "xrtGaMax"), c.length + margin) << c.length;
    }
}

TEST_F(Handlers, AReleaseEndsTheDrag)
{
    press(5, 6);
    motion(8, 9);
    calls.clear();
    release();
    EXPECT_THAT(callsOf({"IWDisplay", "WM", "IMAlCon", "IWData"}),
                ElementsAre("IWDisplay(1)", "WMCancelEventHandler(1, PointerMotionMask)",
                            "WMCancelEventHandler(1, ButtonReleaseMask)", "IMAlCon(1, 1)"));
    EXPECT_EQ(dragging, 0);
    EXPECT_THAT(handlers, ElementsAre(Key(ButtonPressMask), Key(EnterWindowMask)));
}
