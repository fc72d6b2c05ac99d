// SPDX-License-Identifier: MIT
#include "drive/Pair.h"
#include "tests/x/widgets/GalleryTest.h"

#include <vector>

namespace {

using testing::Gt;
using testing::SizeIs;

class ToolBarTest : public GalleryTest {
protected:
    void SetUp() override { open("buttons"); }

    // The visible controls of the bar, left to right: those below the line that the first heading and row
    // fill.
    std::vector<Window> bar()
    {
        std::vector<Window> controls;
        const int height = screen.geometry(window).height;
        for (const Window leaf : screen.leaves(window))
            if (screen.geometry(leaf).y - screen.geometry(window).y > height * 2 / 3)
                controls.push_back(leaf);
        return controls;
    }
    bool barHas(std::size_t count)
    {
        return drive::waitUntil([&] { return bar().size() == count; });
    }
};

TEST_F(ToolBarTest, hidesFromTheRightWhatDoesNotFitAndOffersItInAMenu)
{
    ASSERT_TRUE(barHas(6));
    ASSERT_TRUE(widen(210));
    ASSERT_TRUE(barHas(4)); // Open, Save, Zoom and the arrow
    screen.clickCentre(bar().back());
    const Window menu = popup();
    ASSERT_NE(menu, Window{});
    ASSERT_TRUE(support::waitForPointerGrab(screen, true)); // before that the menu hears no click
    const drive::Rect area = screen.geometry(menu);
    screen.click(menu, area.width / 2, area.height - 10); // the last item
    EXPECT_TRUE(told("Quit"));
    ASSERT_TRUE(widen(500));
    EXPECT_TRUE(barHas(6));
}

TEST_F(ToolBarTest, buttonIsRaisedWhileThePointerIsInside)
{
    ASSERT_TRUE(barHas(6));
    ASSERT_TRUE(support::waitForFocus(screen, window)); // the button shows that it has the keyboard
    ASSERT_TRUE(drive::waitUntilCalm(screen));
    const Window button = bar().front();
    const drive::Picture before = screen.capture(button);
    const drive::Rect area = screen.geometry(button);
    screen.moveTo(button, area.width / 2, area.height / 2);
    EXPECT_TRUE(drive::waitUntil([&] { return screen.capture(button).pixels != before.pixels; }));
    screen.moveTo(screen.root(), 0, 0);
    EXPECT_TRUE(drive::waitUntil([&] { return screen.capture(button).pixels == before.pixels; }));
}

TEST_F(ToolBarTest, keysReachButtonsButNoHiddenOne)
{
    ASSERT_TRUE(widen(210));
    ASSERT_TRUE(barHas(4));
    ASSERT_TRUE(support::waitForFocus(screen, window));
    screen.key(XK_Tab);
    screen.key(XK_space);
    EXPECT_TRUE(told("Open"));
    screen.key(XK_Right);
    screen.key(XK_Right);
    screen.key(XK_space);
    EXPECT_TRUE(told("Zoom"));
}

} // namespace
