// SPDX-License-Identifier: MIT
#include "tests/x/widgets/GalleryTest.h"

namespace {

class TabTest : public GalleryTest {
protected:
    void SetUp() override
    {
        open("tabs");
        // Tabs and the first page's two controls.
        ASSERT_TRUE(drive::waitUntil([&] { return screen.leaves(window).size() == 6; }));
    }
    // The tab at a place from the left.
    Window tab(std::size_t place) { return screen.leaves(window).at(place); }
    // Clicks into the tab's text, or on its cross.
    void clickText(std::size_t place)
    {
        screen.click(tab(place), 12, screen.geometry(tab(place)).height / 2);
    }
    void clickCross(std::size_t place)
    {
        const drive::Rect area = screen.geometry(tab(place));
        screen.click(tab(place), area.width - 12, area.height / 2);
    }
};

TEST_F(TabTest, pointerSelectsAndCloses)
{
    clickText(1);
    ASSERT_TRUE(told("shown Contrast"));
    clickCross(1);
    ASSERT_TRUE(told("closed Contrast"));
    EXPECT_TRUE(told("shown Measurement"));
    EXPECT_TRUE(drive::waitUntil([&] { return screen.leaves(window).size() == 5; }));
    clickText(1);
    clickText(0);
    EXPECT_TRUE(told("shown Display"));
    EXPECT_TRUE(told("order Display Measurement Fixed"));
}

TEST_F(TabTest, draggingReorders)
{
    const drive::Rect last = screen.geometry(tab(3)), first = screen.geometry(tab(0));
    screen.drag(tab(0), 12, 10, last.x - first.x + last.width / 2 + 20, 10, 30);
    EXPECT_TRUE(told("order Contrast Measurement Fixed Display"));
    EXPECT_EQ(count("shown Display"), 0);
}

TEST_F(TabTest, keysSelectMoveAndClose)
{
    ASSERT_TRUE(support::waitForFocus(screen, window));
    clickText(0);
    screen.key(XK_Right);
    ASSERT_TRUE(told("shown Contrast"));
    screen.keyWith(XK_Control_L, XK_Right);
    ASSERT_TRUE(told("order Display Measurement Contrast Fixed"));
    screen.key(XK_Delete);
    ASSERT_TRUE(told("closed Contrast"));
    EXPECT_TRUE(told("shown Fixed"));
    screen.key(XK_Delete); // it has no cross
    screen.key(XK_Left);
    EXPECT_TRUE(told("shown Measurement"));
    EXPECT_EQ(count("closed Fixed"), 0);
}

TEST_F(TabTest, tabsShrinkWithTheWindow)
{
    ASSERT_TRUE(widen(220));
    EXPECT_TRUE(drive::waitUntil([&] {
        const drive::Rect last = screen.geometry(tab(3));
        return last.x + last.width <= screen.geometry(window).x + 220;
    }));
    clickText(3);
    EXPECT_TRUE(told("shown Fixed"));
}

} // namespace
