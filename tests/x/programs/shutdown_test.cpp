// The ways in which either program ends, in order or by force, and what is left of it.
#include "tests/x/programs/Programs.h"

#include <csignal>

using drive::Pair;

namespace programs {

namespace {

const Point from{40, 40}, to{340, 200};
const std::vector<int> allChannels{0, 1, 2, 3};

} // namespace

class Shutdown : public ProgramsTest {
protected:
    void startDrag(Pair& pair)
    {
        screen.moveTo(pair.canvas, from.x, from.y);
        screen.press();
        screen.moveTo(pair.canvas, to.x, to.y);
        expectPlot(pair, rampCurves(from, to, allChannels));
    }
    bool pointerIsFree()
    {
        return drive::waitUntil([&] {
            const int result = XGrabPointer(screen.x(), screen.root(), False, ButtonPressMask, GrabModeAsync,
                                            GrabModeAsync, None, None, CurrentTime);
            XUngrabPointer(screen.x(), CurrentTime);
            return result == GrabSuccess;
        });
    }
    bool lockIsFree(Pair& pair)
    {
        const std::string name = "IMAGE_WINDOW_" + std::to_string(pair.number) + "_INPUT";
        return XGetSelectionOwner(screen.x(), XInternAtom(screen.x(), name.c_str(), False)) == None;
    }
    void expectNewToolWorks(Pair& pair)
    {
        pair.restartTool();
        pair.dragSegment(from.x, from.y, to.x, to.y);
        expectPlot(pair, rampCurves(from, to, allChannels));
        expectDone(pair);
    }
};

TEST_F(Shutdown, ClosingTheToolGivesTheImageWindowBack)
{
    const struct {
        const char* name;
        std::function<void(Pair&)> close;
    } rows[] = {
        {"Done",            [&](Pair& pair) { screen.clickCentre(pair.button(Pair::Done)); }},
        {"close button",    [&](Pair& pair) { screen.requestClose(pair.toolWindow); }       },
        {"with saved data", [&](Pair& pair) {
             screen.clickCentre(pair.button(Pair::Save));
             screen.clickCentre(pair.button(Pair::Done));
         }                                                       }
    };
    Pair pair = open({ramp()});
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        pair.dragSegment(from.x, from.y, to.x, to.y);
        ASSERT_TRUE(waitForOverlays(pair, true));
        row.close(pair);
        EXPECT_EQ(pair.tool->wait(), 0) << pair.tool->errors();
        EXPECT_EQ(pair.tool->errors(), "");
        EXPECT_TRUE(waitForOverlays(pair, false));
        EXPECT_TRUE(lockIsFree(pair));
        pair.restartTool();
    }
    expectDone(pair);
}

TEST_F(Shutdown, ClosingTheImageWindowEndsTheTool)
{
    for (const bool dragging : {false, true}) {
        SCOPED_TRACE(dragging);
        Pair pair = open({ramp()});
        startDrag(pair);
        if (!dragging)
            screen.release();
        pair.closeImageWindows();
        EXPECT_EQ(pair.tool->wait(), 0) << pair.tool->errors();
        EXPECT_EQ(pair.tool->errors(), "");
        EXPECT_EQ(pair.viewer.wait(), 0) << pair.viewer.errors();
        screen.release();
    }
}

TEST_F(Shutdown, AKilledToolLeavesNothingBehind)
{
    for (const bool dragging : {false, true}) {
        SCOPED_TRACE(dragging);
        Pair pair = open({ramp()});
        startDrag(pair);
        if (!dragging)
            screen.release();
        ASSERT_TRUE(waitForOverlays(pair, true));
        pair.tool->signal(SIGKILL);
        EXPECT_EQ(pair.tool->wait(), 128 + SIGKILL);
        EXPECT_TRUE(waitForOverlays(pair, false));
        screen.release();
        EXPECT_TRUE(pointerIsFree());
        EXPECT_TRUE(lockIsFree(pair));
        expectNewToolWorks(pair);
    }
}

TEST_F(Shutdown, AKilledImageWindowEndsTheTool)
{
    for (const bool dragging : {false, true}) {
        SCOPED_TRACE(dragging);
        Pair pair = open({ramp()});
        startDrag(pair);
        if (!dragging)
            screen.release();
        pair.viewer.signal(SIGKILL);
        EXPECT_EQ(pair.tool->wait(), 0) << pair.tool->errors();
        screen.release();
        EXPECT_TRUE(pointerIsFree());
    }
}

// The tool that the image window lists is asked to end by it.
TEST_F(Shutdown, EndsWhenTheSuiteAsks)
{
    Pair pair = open({ramp()});
    pair.dragSegment(from.x, from.y, to.x, to.y);
    ASSERT_NE(screen.property(pair.toolWindow, "_KV_PROGRAM"), "");
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = pair.toolWindow;
    event.xclient.message_type = XInternAtom(screen.x(), "_KV_QUIT", False);
    event.xclient.format = 32;
    XSendEvent(screen.x(), pair.toolWindow, False, NoEventMask, &event);
    XSync(screen.x(), False);
    EXPECT_EQ(pair.tool->wait(), 0) << pair.tool->errors();
    EXPECT_TRUE(waitForOverlays(pair, false));
}

} // namespace programs
