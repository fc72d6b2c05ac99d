// SPDX-License-Identifier: MIT
// Where a tool window appears, how it goes with its image window, and how the suite knows it and ends it.
#include "tests/x/wmenh/Probe.h"

#include <X11/Xutil.h>

#include <cstring>
#include <string>

using drive::Rect;
using drive::waitUntil;

class SuiteTest : public ProbeTest {
protected:
    // 1 normal, 3 iconic, 0 withdrawn.
    long stateOf(Window window)
    {
        const std::string bytes = screen.property(window, "WM_STATE");
        long state = 0;
        if (bytes.size() >= sizeof state)
            std::memcpy(&state, bytes.data(), sizeof state);
        return state;
    }
};

TEST_F(SuiteTest, placesTheToolBesideTheImageAndOnTheScreen)
{
    const struct {
        Rect place;
        const char* side;
    } rows[] = {
        {{40, 60, 500, 400}, "right"},
        {{900, 300, 640, 600}, "left"},
        {{300, 40, 1200, 600}, "below"},
        {{40, 900, 500, 250}, "right"},
    };
    for (const auto& row : rows) {
        showImage(row.place);
        start();
        const Rect tool = screen.frameGeometry(window("shell")), fixed = screen.frameGeometry(image->top);
        const std::string side = tool.x >= fixed.x + fixed.width    ? "right"
                                 : tool.x + tool.width <= fixed.x   ? "left"
                                 : tool.y >= fixed.y + fixed.height ? "below"
                                                                    : "over";
        EXPECT_EQ(side, row.side) << "tool at " << tool.x << ", " << tool.y;
        EXPECT_GE(tool.x, 0);
        EXPECT_GE(tool.y, 0);
        EXPECT_LE(tool.x + tool.width, 1600);
        EXPECT_LE(tool.y + tool.height, 1200);
    }
}

TEST_F(SuiteTest, goesWithItsImageWindow)
{
    start();
    XIconifyWindow(screen.x(), image->top, DefaultScreen(screen.x()));
    XSync(screen.x(), False);
    EXPECT_TRUE(waitUntil([this] { return stateOf(window("shell")) == IconicState; }));
    XMapWindow(screen.x(), image->top);
    XSync(screen.x(), False);
    EXPECT_TRUE(waitUntil([this] { return stateOf(window("shell")) == NormalState; }));
    EXPECT_TRUE(waitUntil([this] { return screen.viewable(window("plot")); }));
}

TEST_F(SuiteTest, endsWhenTheImageWindowDiesDuringItsStart)
{
    // The window's end comes after it was attached and before anything of it is selected.
    launch({{"PROBE_HOLD", folder / "go"}}, image->record.windowNumber);
    ASSERT_TRUE(waitFor("attached"));
    image->destroy();
    writeBytes(folder / "go", "on");
    EXPECT_EQ(probe->wait(), 0);
    EXPECT_EQ(said("change").size(), 1u);
    EXPECT_TRUE(waitFor("change 1 681"));
}
