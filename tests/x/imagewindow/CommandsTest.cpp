// SPDX-License-Identifier: MIT
// Commands that cannot be carried out, and the page of mouse and keys.
#include "tests/x/imagewindow/Viewer.h"

#include "drive/Pair.h"

#include <X11/keysym.h>

#include <string>

using namespace viewertest;

namespace {

// By its letter in the Stack menu: the menu stays up for an entry that cannot be chosen.
bool canChoose(Viewer& viewer, KeySym letter)
{
    viewer.screen.click(viewer.screen.findTitle("Image window"), 105, 14);
    const Window menu = viewer.waitForMenu();
    drive::waitUntilCalm(viewer.screen);
    viewer.screen.key(letter);
    drive::waitUntilCalm(viewer.screen);
    return !viewer.screen.viewable(menu);
}

// Nobody else can have a number while this lives.
class AllNumbersTaken {
public:
    AllNumbersTaken()
    {
        const Window owner = XCreateSimpleWindow(screen.x(), screen.root(), 0, 0, 1, 1, 0, 0, 0);
        for (int number = 1; number <= protocol::maxWindowNumber; ++number) {
            const std::string name = "IMAGE_WINDOW_" + std::to_string(number);
            XSetSelectionOwner(screen.x(), XInternAtom(screen.x(), name.c_str(), False), owner, CurrentTime);
        }
        XSync(screen.x(), False);
    }

private:
    drive::Screen screen;
};

} // namespace

TEST(Commands, ThereIsNoNextSectionOfASingleOne)
{
    for (const bool stack : {false, true}) {
        Viewer viewer({stack ? stackImage() : rgbImage()});
        EXPECT_EQ(canChoose(viewer, XK_n), stack);
    }
}

TEST(Commands, F1ShowsThePageOfMouseAndKeysOnce)
{
    Viewer viewer({rgbImage()});
    viewer.focus();
    viewer.screen.key(XK_F1);
    const Window page = viewer.screen.findTitle("Mouse and keys");
    ASSERT_TRUE(support::waitForFocus(viewer.screen, page));
    const Window window = viewer.screen.findTitle("Image window " + std::to_string(viewer.number));
    XSetInputFocus(viewer.screen.x(), window, RevertToParent, CurrentTime); // the page lies over its middle
    ASSERT_TRUE(support::waitForFocus(viewer.screen, window));
    viewer.screen.key(XK_F1);
    ASSERT_TRUE(support::waitForFocus(viewer.screen, page));
    drive::waitUntilCalm(viewer.screen);
    viewer.screen.key(XK_Escape);
    EXPECT_TRUE(drive::waitUntil([&] { return !viewer.screen.viewable(page); }));
    EXPECT_EQ(viewer.screen.findTitleNow("Mouse and keys"), Window{None});
}

TEST(Commands, AWindowWithoutANumberStartsNoTool)
{
    const AllNumbersTaken taken;
    Viewer viewer({rgbImage()});
    const Window window = viewer.screen.findTitle("Image window: rgb.tif");
    ASSERT_NE(window, Window{None});
    viewer.screen.click(window, 10, viewer.screen.geometry(window).height - 10);
    ASSERT_TRUE(support::waitForFocus(viewer.screen, window));
    viewer.screen.keyWith(XK_Control_L, XK_l);
    drive::waitUntilCalm(viewer.screen);
    viewer.screen.key(XK_F1); // is handled after Control+L, which has done by then all that it does
    ASSERT_NE(viewer.screen.findTitle("Mouse and keys"), Window{None});
    drive::waitUntilCalm(viewer.screen);
    EXPECT_EQ(viewer.screen.findTitleNow("Error"), Window{None}); // of a tool that cannot attach
}
