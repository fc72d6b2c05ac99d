// SPDX-License-Identifier: MIT
// The tool window: its rows at every size, its tips and its help.
#include "tests/x/programs/Programs.h"

#include <X11/Xutil.h>
#include <X11/keysym.h>

#include <algorithm>
#include <vector>

using drive::Pair;
using drive::Rect;
using drive::waitUntil;

namespace programs {

namespace {

bool overlap(const Rect& a, const Rect& b)
{
    return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height && b.y < a.y + a.height;
}

bool inside(const Rect& inner, const Rect& outer)
{
    return inner.x >= outer.x && inner.y >= outer.y && inner.x + inner.width <= outer.x + outer.width &&
           inner.y + inner.height <= outer.y + outer.height;
}

} // namespace

class ToolWindow : public ProgramsTest {
protected:
    // All controls, row by row: the settings, the axis and the plot, the distance axis, a separator, the
    // message line, the buttons.
    enum { IntensityAxis = 3, Plot, DistanceAxis, Separator, Message, Done, ControlCount = 15 };
    std::vector<Rect> controls(Pair& pair)
    {
        std::vector<Rect> places;
        for (const Window leaf : screen.leaves(pair.toolWindow))
            places.push_back(screen.geometry(leaf));
        return places;
    }
    void expectLayout(Pair& pair)
    {
        const std::vector<Rect> places = controls(pair);
        ASSERT_EQ(places.size(), size_t{ControlCount});
        for (size_t i = 0; i < places.size(); ++i) {
            EXPECT_TRUE(inside(places[i], screen.geometry(pair.toolWindow))) << i;
            for (size_t j = 0; j < i; ++j)
                EXPECT_FALSE(overlap(places[i], places[j])) << i << " on " << j;
        }
        const Rect &axis = places[IntensityAxis], &plot = places[Plot], &distance = places[DistanceAxis];
        EXPECT_EQ(plot.x, axis.x + axis.width);
        EXPECT_EQ(plot.x, distance.x);
        EXPECT_EQ(plot.width, distance.width);
        EXPECT_EQ(plot.y + plot.height, distance.y);
        EXPECT_EQ(axis.y + axis.height, distance.y);
        EXPECT_EQ(distance.height, 24);
        const auto centre = [&](size_t i) { return 2 * places[i].y + places[i].height; };
        for (size_t button = Done; button < places.size(); ++button)
            EXPECT_NEAR(centre(button), centre(Done), 2) << button;
    }
    bool resize(Pair& pair, int width, int height)
    {
        XResizeWindow(screen.x(), pair.toolWindow, static_cast<unsigned>(width),
                      static_cast<unsigned>(height));
        XSync(screen.x(), False);
        return waitUntil([&] {
            const Rect now = screen.geometry(pair.toolWindow);
            return now.width == width && now.height == height;
        });
    }
};

TEST_F(ToolWindow, GivesItsPlotAllTheRoom)
{
    const Point from{30, 200}, to{370, 60};
    Pair pair = open({ramp()});
    drawSegment(pair, from, to);
    const Rect tool = screen.geometry(pair.toolWindow);
    const std::vector<Rect> before = controls(pair);
    for (const auto& [wider, higher] : {std::pair{211, 97}, std::pair{40, 20}, std::pair{0, 0}}) {
        EXPECT_TRUE(resize(pair, tool.width + wider, tool.height + higher));
        EXPECT_TRUE(waitUntil([&] { return screen.geometry(pair.plot).height == 200 + higher; }));
        EXPECT_EQ(screen.geometry(pair.plot).width, 500 + wider);
        expectPlot(pair, rampCurves(from, to));
        expectLayout(pair);
        const std::vector<Rect> after = controls(pair);
        for (size_t i = Message; i < after.size(); ++i) {
            EXPECT_EQ(after[i].width, before[i].width + (i == Message ? wider : 0)) << i;
            EXPECT_EQ(after[i].height, before[i].height) << i;
        }
    }
    expectDone(pair);
}

TEST_F(ToolWindow, CannotBeMadeTooSmallForItsControls)
{
    Pair pair = open({ramp()});
    XSizeHints hints{};
    long supplied = 0;
    XGetWMNormalHints(screen.x(), pair.toolWindow, &hints, &supplied);
    ASSERT_TRUE(hints.flags & PMinSize);
    EXPECT_LT(hints.min_width, screen.geometry(pair.toolWindow).width);
    EXPECT_LT(hints.min_height, screen.geometry(pair.toolWindow).height);
    EXPECT_TRUE(resize(pair, hints.min_width, hints.min_height));
    EXPECT_TRUE(waitUntil([&] { return screen.geometry(pair.plot).width < 500; }));
    drive::waitUntilCalm(screen);
    EXPECT_GE(screen.geometry(pair.plot).height, 100);
    expectLayout(pair);
    expectDone(pair);
}

TEST_F(ToolWindow, ShowsTips)
{
    // The tip's own background, which nothing else has.
    const drive::Pixel yellow{255, 255, 225};
    Pair pair = open({ramp()});
    EXPECT_EQ(count(screen.captureScreen(), yellow), 0);
    const Window toggle = pair.setting(Pair::FwhmToggle);
    screen.moveTo(toggle, screen.geometry(toggle).width / 2, screen.geometry(toggle).height / 2);
    EXPECT_TRUE(waitUntil([&] { return count(screen.captureScreen(), yellow) > 2000; }));
}

TEST_F(ToolWindow, OpensHelpOnceBesideItself)
{
    const auto helpClosed = [this] { return screen.findTitleNow("Help: LineProfile") == None; };
    Pair pair = open({ramp()});
    screen.clickCentre(pair.button(Pair::Help));
    const Window help = screen.findTitle("Help: LineProfile");
    ASSERT_NE(help, None);
    EXPECT_TRUE(inside(screen.frameGeometry(help), screen.geometry(screen.root())));
    EXPECT_FALSE(overlap(screen.frameGeometry(help), screen.frameGeometry(pair.toolWindow)));
    screen.clickCentre(pair.button(Pair::Help));
    drive::waitUntilCalm(screen);
    screen.requestClose(help);
    EXPECT_TRUE(waitUntil(helpClosed)) << "there are two";
    screen.clickCentre(pair.button(Pair::Help));
    const Window again = screen.findTitle("Help: LineProfile");
    ASSERT_NE(again, None);
    screen.click(again, 60, 60);
    ASSERT_TRUE(support::waitForFocus(screen, again));
    screen.key(XK_Escape);
    EXPECT_TRUE(waitUntil(helpClosed));
    expectDone(pair);
}

} // namespace programs
