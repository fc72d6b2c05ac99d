// SPDX-License-Identifier: MIT
// Events and display changes of an image window as the program hears them, the input lock and the ties
// between tool and image window.
#include "tests/x/wmenh/Probe.h"

#include <algorithm>

using drive::waitUntil;

class CanvasEventsTest : public ProbeTest {};

TEST_F(CanvasEventsTest, reachTheHandlersThatAreThereAtThatMoment)
{
    start();
    screen.moveTo(image->canvas, 20, 20);
    EXPECT_TRUE(waitFor("enter"));
    screen.moveTo(image->canvas, 30, 30);
    screen.press();
    ASSERT_TRUE(waitFor("press 1"));
    // Beyond the window's edge too.
    screen.moveTo(image->canvas, 100, 450);
    EXPECT_TRUE(waitFor("motion 100 450"));
    screen.release();
    ASSERT_TRUE(waitFor("release 1"));
    screen.moveTo(image->canvas, 50, 60);
    screen.click(image->canvas, 70, 80, 3);
    ASSERT_TRUE(waitFor("release 3"));
    const auto motions = said("motion");
    EXPECT_EQ(motions.front(), "motion 100 450") << "a motion came before the press";
    EXPECT_EQ(std::count(motions.begin(), motions.end(), "motion 50 60"), 0);
    // The third button cancelled the press handler.
    screen.click(image->canvas, 90, 90, 2);
    screen.moveTo(image->canvas, -20, 90);
    screen.moveTo(image->canvas, 95, 90);
    EXPECT_TRUE(waitUntil([this] { return said("enter").size() >= 2; }));
    EXPECT_EQ(said("press").size(), 2u);
}

TEST_F(CanvasEventsTest, ignoresTheCrossingsOfAGrab)
{
    start();
    screen.moveTo(image->canvas, 20, 20);
    ASSERT_TRUE(waitFor("enter"));
    const auto entered = said("enter").size();
    XGrabPointer(screen.x(), screen.root(), False, 0, GrabModeAsync, GrabModeAsync, None, None, CurrentTime);
    XUngrabPointer(screen.x(), CurrentTime);
    XSync(screen.x(), False);
    image->showSection(1);
    ASSERT_TRUE(waitFor("change 1 680"));
    EXPECT_EQ(said("enter").size(), entered);
}

TEST_F(CanvasEventsTest, compressesMotionsThatQueueUp)
{
    start({{"PROBE_SLOW", "1"}});
    screen.moveTo(image->canvas, 10, 10);
    screen.press();
    ASSERT_TRUE(waitFor("press 1"));
    for (int i = 0; i < 300; ++i)
        screen.moveTo(image->canvas, 20 + i, 40);
    screen.release();
    ASSERT_TRUE(waitFor("release 1"));
    const auto motions = said("motion");
    EXPECT_LT(motions.size(), 100u);
    EXPECT_EQ(motions.back(), "motion 319 40") << "the newest must not be lost";
}

TEST_F(CanvasEventsTest, mergesChangesThatQueueUpAndTellsTheEndOnce)
{
    start({{"PROBE_SLOW", "1"}});
    screen.moveTo(image->canvas, 10, 10);
    screen.press();
    ASSERT_TRUE(waitFor("press 1"));
    screen.moveTo(image->canvas, 11, 11);
    ASSERT_TRUE(waitFor("motion 11 11"));
    // The handler is busy with that for a while.
    for (int z = 0; z < 30; ++z)
        image->showSection(z % 3);
    image->showSection(1);
    screen.release();
    ASSERT_TRUE(waitFor("change 1 680"));
    ASSERT_TRUE(waitFor("release 1"));
    const size_t before = said("change").size();
    EXPECT_LT(before, 15u);
    image->showSection(1);
    image->destroy();
    EXPECT_TRUE(waitFor("change 1 681"));
    EXPECT_EQ(probe->wait(), 0);
    EXPECT_EQ(said("change").size(), before + 1) << "an unchanged record is no change";
}

TEST_F(CanvasEventsTest, aSecondProgramHearsWhoHoldsTheLockAndGoesOn)
{
    start();
    EXPECT_EQ(said("lock").back(), "lock 1 -");
    const auto first = std::move(probe);
    start();
    EXPECT_EQ(said("lock").back(), "lock -1 Arbitray Line Profile");
    EXPECT_THAT(probe->errors(), testing::HasSubstr("button presses")) << "only one client can have them";
    image->showSection(1);
    EXPECT_TRUE(waitFor("change 1 680")) << "the rest comes to both";
}
