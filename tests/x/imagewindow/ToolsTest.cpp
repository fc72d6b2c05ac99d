// SPDX-License-Identifier: MIT
// The menus: tools that run are listed and asked to end, further images are opened.
#include "tests/x/imagewindow/Viewer.h"

#include <X11/keysym.h>

#include <string>

using namespace viewertest;

TEST(Tools, AListedToolIsAskedToEnd)
{
    Viewer viewer({rgbImage()});
    Display* display = viewer.screen.x();
    const Window shell = XCreateSimpleWindow(display, viewer.screen.root(), 0, 0, 1, 1, 0, 0, 0);
    protocol::announceTool(display, viewer.canvas, shell, "Arbitrary Profile");
    XSync(display, False);
    viewer.screen.click(viewer.screen.findTitle("Image window"), 155, 14); // Tools in the menu bar
    const Window menu = viewer.waitForMenu();
    ASSERT_NE(menu, Window{None});
    // The last entry: its middle is half an entry above the menu's end.
    const drive::Rect place = viewer.screen.geometry(menu);
    viewer.screen.click(menu, place.width / 2, place.height - 12);
    XEvent event{};
    EXPECT_TRUE(
        drive::waitUntil([&] { return XCheckTypedWindowEvent(display, shell, ClientMessage, &event) != 0; }));
    EXPECT_EQ(event.xclient.message_type, protocol::atoms(display).quit);
}

// The file dialogue has the keyboard in its file name when it opens.
TEST(Tools, AnotherFileIsOpenedFromTheMenu)
{
    Viewer viewer({rgbImage()});
    const auto choose = [&](const std::string& path) {
        viewer.control(XK_o);
        ASSERT_TRUE(support::waitForFocus(viewer.screen, viewer.screen.findTitle("Open image")));
        viewer.screen.replaceText(path);
        viewer.screen.key(XK_Return);
    };
    choose(stackImage());
    EXPECT_NE(viewer.screen.findImageWindow(2), Window{None});
    choose("/nowhere/missing.tif");
    EXPECT_NE(viewer.screen.findTitle("Cannot open image"), Window{None});
    EXPECT_TRUE(viewer.process.running());
}
