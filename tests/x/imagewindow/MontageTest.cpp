// SPDX-License-Identifier: MIT
// Projections, montage and merge by menu: what clients are told stays that of the section.
#include "tests/x/imagewindow/Viewer.h"

#include "drive/Pair.h"

#include <X11/keysym.h>

#include <vector>

using namespace viewertest;

namespace {

constexpr std::size_t viewMenu = 1, stackMenu = 2;

void choose(Viewer& viewer, std::size_t menu, KeySym letter)
{
    viewer.screen.clickCentre(viewer.screen.leaves(viewer.screen.findTitle("Image window")).at(menu));
    ASSERT_NE(viewer.waitForMenu(), Window{None});
    drive::waitUntilCalm(viewer.screen);
    viewer.screen.key(letter);
}

std::vector<drive::Pixel> shownBy(Viewer& viewer)
{
    return viewer.screen.capture(viewer.canvas).pixels;
}

} // namespace

TEST(Display, AProjectionStaysWhereTheSectionGoesOn)
{
    Viewer viewer({stackImage(), "--zoom", "4"});
    const auto section = shownBy(viewer);
    const int z = viewer.record()->z;
    viewer.focus();
    choose(viewer, stackMenu, XK_m);
    ASSERT_TRUE(drive::waitUntil([&] { return shownBy(viewer) != section; }));
    drive::waitUntilCalm(viewer.screen);
    const auto maximum = shownBy(viewer);
    EXPECT_EQ(viewer.record()->z, z);
    viewer.focus();
    viewer.screen.key(XK_Page_Down);
    EXPECT_EQ(viewer.waitForRecord([&](const auto& record) { return record.z == z + 1; }).z, z + 1);
    drive::waitUntilCalm(viewer.screen);
    EXPECT_EQ(shownBy(viewer), maximum);
    viewer.screen.key(XK_Page_Up);
    choose(viewer, stackMenu, XK_i);
    EXPECT_TRUE(drive::waitUntil([&] { return shownBy(viewer) == section; }));
}

TEST(Display, AMontageHasTheRowsAndColumnsThatAreTyped)
{
    Viewer viewer({stackImage(), "--geometry", "600x600"});
    choose(viewer, viewMenu, XK_n);
    const Window dialogue = viewer.screen.findTitle("Montage of image window");
    ASSERT_TRUE(support::waitForFocus(viewer.screen, dialogue));
    for (const char* impossible : {"0", "x", "1000"}) {
        viewer.screen.replaceText(impossible);
        viewer.screen.key(XK_Return);
        drive::waitUntilCalm(viewer.screen);
        EXPECT_EQ(viewer.record()->geometry.style, protocol::SinglePanel) << impossible;
    }
    viewer.screen.replaceText("1");
    viewer.screen.key(XK_Return);
    const protocol::DisplayRecord told =
        viewer.waitForRecord([](const auto& record) { return record.geometry.style == protocol::ZPanels; });
    EXPECT_EQ(told.geometry.columns, 1);
    EXPECT_EQ(told.geometry.panelCount, 2); // two rows, as was proposed
}

TEST(Display, TheMergeStandsBesideTheWavelengths)
{
    Viewer viewer({stackImage(), "--panels", "wavelength"});
    EXPECT_EQ(viewer.record()->geometry.panelCount, 3);
    choose(viewer, viewMenu, XK_g);
    EXPECT_EQ(
        viewer.waitForRecord([](const auto& r) { return r.geometry.panelCount == 4; }).geometry.panelCount,
        4);
    choose(viewer, viewMenu, XK_g);
    EXPECT_EQ(
        viewer.waitForRecord([](const auto& r) { return r.geometry.panelCount == 3; }).geometry.panelCount,
        3);
}
