// SPDX-License-Identifier: MIT
// The ways in which either program ends, in order or by force, and what is left of it.
#include "tests/x/programs/Programs.h"

#include "platform/protocol/XProtocol.h"

#include <csignal>
#include <functional>
#include <string>

using drive::Pair;

namespace programs {

class Shutdown : public ProgramsTest {
protected:
    const Point from{40, 40}, to{340, 200};

    void startDrag(Pair& pair)
    {
        screen.moveTo(pair.canvas, from.x, from.y);
        screen.press();
        screen.moveTo(pair.canvas, to.x, to.y);
        expectPlot(pair, rampCurves(from, to));
        EXPECT_TRUE(waitForOverlays(pair, true));
    }
    bool lockIsFree(Pair& pair)
    {
        const std::string name = "IMAGE_WINDOW_" + std::to_string(pair.number) + "_INPUT";
        return XGetSelectionOwner(screen.x(), XInternAtom(screen.x(), name.c_str(), False)) == None;
    }
    // As the image window does with a tool that it lists.
    void askToQuit(Pair& pair)
    {
        const auto tools = protocol::announcedTools(screen.x(), pair.canvas);
        ASSERT_EQ(tools.size(), 1U);
        EXPECT_EQ(tools[0].title, "Arbitrary Profile");
        protocol::requestQuit(screen.x(), tools[0].shell);
        XSync(screen.x(), False);
    }
};

TEST_F(Shutdown, TheEndOfTheToolGivesTheImageWindowBack)
{
    const auto clickDone = [&](Pair& pair) { screen.clickCentre(pair.button(Pair::Done)); };
    const auto kill = [](Pair& pair) { pair.tool->signal(SIGKILL); };
    const struct {
        const char* name;
        bool dragging;
        std::function<void(Pair&)> end;
        int status;
    } rows[] = {
        {"Done", false, clickDone, 0},
        {"with saved data", false,
         [&](Pair& pair) {
             screen.clickCentre(pair.button(Pair::Save));
             clickDone(pair);
         },
         0},
        {"close button", false, [&](Pair& pair) { screen.requestClose(pair.toolWindow); }, 0},
        {"the suite asks", false, [&](Pair& pair) { askToQuit(pair); }, 0},
        {"killed", false, kill, 128 + SIGKILL},
        {"killed in a drag", true, kill, 128 + SIGKILL},
    };
    Pair pair = open({ramp()});
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        startDrag(pair);
        if (!row.dragging)
            screen.release();
        row.end(pair);
        EXPECT_EQ(pair.tool->wait(), row.status);
        EXPECT_EQ(pair.tool->errors(), "");
        EXPECT_TRUE(waitForOverlays(pair, false));
        EXPECT_TRUE(protocol::announcedTools(screen.x(), pair.canvas).empty());
        screen.release();
        EXPECT_TRUE(support::waitForPointerGrab(screen, false));
        EXPECT_TRUE(lockIsFree(pair));
        pair.restartTool();
    }
    drawSegment(pair, from, to);
    expectDone(pair);
}

TEST_F(Shutdown, TheEndOfTheImageWindowEndsTheTool)
{
    for (const bool killed : {false, true})
        for (const bool dragging : {false, true}) {
            SCOPED_TRACE(std::string(killed ? "killed" : "closed") + (dragging ? " in a drag" : ""));
            Pair pair = open({ramp()});
            startDrag(pair);
            if (!dragging)
                screen.release();
            if (killed)
                pair.viewer.signal(SIGKILL);
            else
                pair.closeImageWindows();
            EXPECT_EQ(pair.tool->wait(), 0);
            EXPECT_EQ(pair.tool->errors(), "");
            EXPECT_EQ(pair.viewer.wait(), killed ? 128 + SIGKILL : 0) << pair.viewer.errors();
            screen.release();
            EXPECT_TRUE(support::waitForPointerGrab(screen, false));
        }
}

} // namespace programs
