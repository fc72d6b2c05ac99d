// Where a tool window appears, how it goes with its image window, and how the suite knows it and ends it.
#include "tests/x/wmenh/Probe.h"

#include <X11/Xutil.h>

#include <cstring>
#include <fstream>

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
    struct Case {
        int x, y, width, height;
        const char* side;
    };
    const Case cases[] = {
        {40,  60,  500,  400, "right"},
        {900, 300, 640,  600, "left" },
        {300, 40,  1200, 600, "below"},
        {40,  900, 500,  250, "right"},
    };
    for (const Case& c : cases) {
        showImage({c.x, c.y, c.width, c.height});
        start();
        const Rect tool = screen.frameGeometry(window("shell")), fixed = screen.frameGeometry(image->top);
        const std::string side = tool.x >= fixed.x + fixed.width    ? "right"
                                 : tool.x + tool.width <= fixed.x   ? "left"
                                 : tool.y >= fixed.y + fixed.height ? "below"
                                                                    : "over";
        EXPECT_EQ(side, c.side) << c.x << ", " << c.y << ": tool at " << tool.x << ", " << tool.y;
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

TEST_F(SuiteTest, isListedByItsImageWindowWhileItLives)
{
    start();
    const auto tools = protocol::announcedTools(screen.x(), image->canvas);
    ASSERT_EQ(tools.size(), 1u);
    EXPECT_EQ(tools[0].title, "Probe");
    EXPECT_EQ(tools[0].shell, window("shell"));
    probe->signal(9);
    ASSERT_TRUE(probe->wait());
    EXPECT_TRUE(waitUntil([this] { return protocol::announcedTools(screen.x(), image->canvas).empty(); }));
}

TEST_F(SuiteTest, endsOnRequestAndByItsCloseButton)
{
    for (const bool bySuite : {true, false}) {
        start();
        if (bySuite)
            protocol::requestQuit(screen.x(), window("shell"));
        else
            screen.requestClose(window("shell"));
        XSync(screen.x(), False);
        EXPECT_EQ(probe->wait(), 0);
        EXPECT_EQ(said("quit").size(), 1u) << bySuite;
    }
}

TEST_F(SuiteTest, endsWhenTheImageWindowDiesDuringItsStart)
{
    // The window's end comes after it was attached and before anything of it is selected.
    const std::filesystem::path go = folder / "go";
    launch(
        {
            {"PROBE_HOLD", go.string()}
    },
        image->number);
    ASSERT_TRUE(waitFor("attached"));
    image->destroy();
    std::ofstream(go) << "on\n";
    EXPECT_EQ(probe->wait(), 0);
    EXPECT_EQ(said("change").size(), 1u);
    EXPECT_TRUE(waitFor("change 1 681"));
}
