// SPDX-License-Identifier: MIT
// The tool bar: its buttons do what the menu entries do and follow the window, what has no room is in a menu,
// and a hidden bar stays hidden.
#include "tests/x/imagewindow/Viewer.h"

#include "drive/Pair.h"

#include <X11/keysym.h>

#include <algorithm>
#include <string>
#include <vector>

using namespace viewertest;

namespace {

// From the left, in the order of the table of commands.
enum Button { Open, Save, Copy, ZoomIn, ZoomOut, OneToOne, Fit, SinglePanel, ZPanels };

// The controls right under the menu bar.
std::vector<Window> rowUnderMenus(Viewer& viewer)
{
    std::vector<Window> leaves =
        viewer.screen.leaves(viewer.screen.findTitle("Image window " + std::to_string(viewer.number)));
    const auto top = [&](Window leaf) { return viewer.screen.geometry(leaf).y; };
    std::erase_if(leaves, [&, menus = top(leaves.front())](Window leaf) { return top(leaf) == menus; });
    std::erase_if(leaves, [&, bar = top(leaves.front())](Window leaf) { return top(leaf) != bar; });
    return leaves;
}

void chooseToolBar(Viewer& viewer)
{
    viewer.screen.clickCentre(viewer.screen.leaves(viewer.screen.findTitle("Image window")).at(4)); // Window
    ASSERT_NE(viewer.waitForMenu(), Window{None});
    drive::waitUntilCalm(viewer.screen);
    viewer.screen.key(XK_r);
}

} // namespace

TEST(ToolBar, ButtonsActAndFollowTheWindow)
{
    Viewer viewer({"--zoom", "8", stackImage()});
    const std::vector<Window> buttons = rowUnderMenus(viewer);
    ASSERT_GT(buttons.size(), std::size_t{ZPanels});
    const auto zoomIs = [&](double zoom) {
        return viewer.waitForRecord([&](const auto& r) { return r.geometry.zoom == zoom; }).geometry.zoom ==
               zoom;
    };
    viewer.screen.clickCentre(buttons[ZoomOut]);
    EXPECT_TRUE(zoomIs(6));
    viewer.screen.clickCentre(buttons[OneToOne]);
    EXPECT_TRUE(zoomIs(1));
    const auto styleIs = [&](int style) {
        return viewer.waitForRecord([&](const auto& r) { return r.geometry.style == style; })
                   .geometry.style == style;
    };
    for (const auto& [button, style] :
         {std::pair{ZPanels, protocol::ZPanels}, {SinglePanel, protocol::SinglePanel}}) {
        viewer.screen.clickCentre(buttons[button]);
        EXPECT_TRUE(styleIs(style));
    }
    viewer.screen.clickCentre(buttons[SinglePanel]); // stays where it is
    drive::waitUntilCalm(viewer.screen);
    EXPECT_EQ(viewer.record()->geometry.style, protocol::SinglePanel);
}

TEST(ToolBar, WhatHasNoRoomIsInAMenu)
{
    Viewer viewer({"--geometry", "320x400", stackImage()});
    const std::vector<Window> buttons = rowUnderMenus(viewer);
    viewer.screen.clickCentre(buttons.back());
    const Window menu = viewer.waitForMenu();
    ASSERT_NE(menu, Window{None});
    drive::waitUntilCalm(viewer.screen);
    const auto isBright = [](const drive::Pixel& pixel) { return pixel.red > 150; };
    const drive::Picture picture = viewer.screen.capture(menu);
    EXPECT_GT(std::count_if(picture.pixels.begin(), picture.pixels.end(), isBright), 50); // its texts
    viewer.screen.key(XK_Escape);
}

TEST(ToolBar, AHiddenOneStaysHidden)
{
    int hiddenHeight = 0;
    {
        Viewer viewer({"--geometry", "420x400", stackImage()});
        const Window window = viewer.screen.findTitle("Image window");
        const std::size_t before = viewer.screen.leaves(window).size();
        chooseToolBar(viewer);
        ASSERT_TRUE(drive::waitUntil([&] { return viewer.screen.leaves(window).size() + 10 < before; }));
        hiddenHeight = viewer.screen.geometry(rowUnderMenus(viewer).front()).height;
    }
    Viewer viewer({"--geometry", "420x400", stackImage()});
    EXPECT_EQ(viewer.screen.geometry(rowUnderMenus(viewer).front()).height, hiddenHeight);
    const Window window = viewer.screen.findTitle("Image window");
    const std::size_t before = viewer.screen.leaves(window).size();
    chooseToolBar(viewer);
    EXPECT_TRUE(drive::waitUntil([&] { return viewer.screen.leaves(window).size() > before + 10; }));
}
