// SPDX-License-Identifier: MIT
// The window's controls under mouse and keys: the menu of button 3, the buttons that stay the viewer's while
// a tool holds the canvas, colours, panels and the scale bar.
#include "tests/x/imagewindow/Viewer.h"

#include "drive/Pair.h"

#include <X11/Xatom.h>
#include <X11/Xutil.h>
#include <X11/keysym.h>

#include <algorithm>
#include <string>
#include <vector>

using namespace viewertest;
using protocol::DisplayRecord;

namespace {

const drive::Pixel white{255, 255, 255};

// A menu takes pointer and keys a moment after it shows.
Window waitForUsableMenu(Viewer& viewer)
{
    const Window menu = viewer.waitForMenu();
    drive::waitUntilCalm(viewer.screen);
    return menu;
}

// Chooses from the View menu; entry counts from 0 and counts separators, too.
void chooseView(Viewer& viewer, std::size_t entry)
{
    viewer.screen.click(viewer.screen.findTitle("Image window"), 85, 14);
    const std::vector<Window> entries = viewer.screen.leaves(waitForUsableMenu(viewer));
    ASSERT_GT(entries.size(), entry);
    viewer.screen.clickCentre(entries[entry]);
}

} // namespace

TEST(Controls, AClickOfButton3LeavesTheMenuAndADragChooses)
{
    Viewer viewer({"--zoom", "8", rgbImage()});
    viewer.screen.click(viewer.canvas, 100, 80, 3);
    ASSERT_NE(waitForUsableMenu(viewer), Window{None});
    viewer.screen.key(XK_Down);
    drive::waitUntilCalm(viewer.screen);
    viewer.screen.key(XK_Return); // zoom out
    const auto zoomIs = [&](double zoom) {
        return viewer.waitForRecord([&](const auto& r) { return r.geometry.zoom == zoom; }).geometry.zoom ==
               zoom;
    };
    EXPECT_TRUE(zoomIs(6));
    viewer.screen.moveTo(viewer.canvas, 100, 80);
    viewer.screen.press(3);
    viewer.screen.moveTo(viewer.canvas, 110, 88);
    const Window menu = waitForUsableMenu(viewer);
    ASSERT_NE(menu, Window{None});
    for (const int y : {34, 11}) // to "Zoom out", back to "Zoom in"
        viewer.screen.moveTo(menu, 20, y);
    drive::waitUntilCalm(viewer.screen);
    viewer.screen.release(3);
    EXPECT_TRUE(zoomIs(8));
}

TEST(Controls, AToolThatHoldsTheCanvasGetsButton1Only)
{
    Viewer viewer({"--zoom", "32", "--geometry", "420x400+20+20", rgbImage()});
    XSelectInput(viewer.screen.x(), viewer.canvas, ButtonPressMask);
    XSync(viewer.screen.x(), False);
    viewer.screen.drag(viewer.canvas, 200, 100, 100, 60, 5, 2);
    EXPECT_GT(viewer.waitForRecord([](const auto& r) { return r.geometry.originX > 2; }).geometry.originX, 2);
    viewer.screen.click(viewer.canvas, 50, 40, 1);
    std::vector<unsigned> buttons;
    XEvent event{};
    while (drive::waitUntil([&] { return XPending(viewer.screen.x()) > 0; },
                            drive::Milliseconds{buttons.empty() ? 15000 : 200})) {
        XNextEvent(viewer.screen.x(), &event);
        if (event.type == ButtonPress)
            buttons.push_back(event.xbutton.button);
    }
    EXPECT_EQ(buttons, std::vector{1U});
    viewer.screen.click(viewer.canvas, 50, 40, 3);
    EXPECT_NE(viewer.waitForMenu(), Window{None});
}

TEST(Controls, TheOverviewMovesTheViewAndLeavesButton1ToATool)
{
    // 2048 x 1536 canvas pixels in 600 x 500 or so; the overview has its margin of 10 from the upper right.
    const fs::path image = scratchFolder() / "overview.ome.tif"; // how it was seen is remembered
    support::makeSample(image, "--pattern ramp --size 64x48 --z 4 --channels 3 --time 2");
    Viewer viewer({"--zoom", "32", "--geometry", "600x600+20+20", image});
    const int width = viewer.screen.geometry(viewer.canvas).width;
    const auto isAtEnd = [](const DisplayRecord& r) {
        const protocol::Geometry& g = r.geometry;
        return g.originX + g.panelWidth / 32.0 == 64 && g.originY + g.panelHeight / 32.0 == 48;
    };
    const auto isAtStart = [](const DisplayRecord& r) {
        return r.geometry.originX == 0 && r.geometry.originY == 0;
    };
    const auto drag = [&](int dx, int dy, unsigned button) {
        viewer.screen.drag(viewer.canvas, width - 60, 40, width - 60 + dx, 40 + dy, 5, button);
    };
    drag(140, 200, 1); // out of it, and further than the image goes
    EXPECT_TRUE(isAtEnd(viewer.waitForRecord(isAtEnd)));
    drag(-300, -300, 1);
    EXPECT_TRUE(isAtStart(viewer.waitForRecord(isAtStart)));
    XSelectInput(viewer.screen.x(), viewer.canvas, ButtonPressMask);
    XSync(viewer.screen.x(), False);
    drag(140, 200, 1);
    drive::waitUntilCalm(viewer.screen);
    EXPECT_TRUE(isAtStart(*viewer.record()));
    drag(140, 200, 2);
    EXPECT_TRUE(isAtEnd(viewer.waitForRecord(isAtEnd)));
    viewer.focus();
    const auto corner = [&] { return viewer.pixelAt(width - 15, 15); };
    const drive::Pixel before = corner();
    for (const bool same : {false, true}) {
        viewer.screen.key(XK_o);
        EXPECT_TRUE(drive::waitUntil([&] { return (corner() == before) == same; })) << same;
    }
}

TEST(Controls, PanelsGiveTheSectionBack)
{
    Viewer viewer({"--section", "3,2", stackImage()});
    for (const auto& [entry, style] : {std::pair{6U, protocol::ZPanels}, {8U, protocol::TimePanels}}) {
        chooseView(viewer, entry);
        const DisplayRecord panels =
            viewer.waitForRecord([&](const auto& r) { return r.geometry.style == style; });
        EXPECT_EQ(style == protocol::ZPanels ? panels.z : panels.t, 0);
        chooseView(viewer, 5);
        const DisplayRecord single =
            viewer.waitForRecord([](const auto& r) { return r.geometry.style == 0; });
        EXPECT_EQ(single.z, 2);
        EXPECT_EQ(single.t, 1);
    }
}

TEST(Controls, TheScaleBarIsShownAndHidden)
{
    for (const bool atFirst : {false, true}) {
        std::vector<std::string> arguments{"--zoom", "8", stackImage()};
        if (!atFirst)
            arguments.push_back("--no-scale-bar");
        Viewer viewer(arguments);
        const drive::Rect canvas = viewer.screen.geometry(viewer.canvas);
        const auto shows = [&] { return viewer.pixelAt(canvas.width - 16, canvas.height - 14) == white; };
        EXPECT_EQ(shows(), atFirst);
        viewer.focus();
        viewer.screen.key(XK_s);
        EXPECT_TRUE(drive::waitUntil([&] { return shows() != atFirst; }));
    }
}

TEST(Controls, TheScaleBarTakesTheLengthThatIsTyped)
{
    Viewer viewer({"--zoom", "8", stackImage()});
    const auto barWidth = [&] {
        const drive::Picture picture = viewer.screen.capture(viewer.canvas);
        int width = 0;
        for (int x = 0; x < picture.width; ++x)
            width += picture.at(x, picture.height - 14) == white;
        return width;
    };
    viewer.focus();
    viewer.screen.keyDown(XK_Alt_L);
    viewer.screen.key(XK_v);
    viewer.screen.keyUp(XK_Alt_L);
    ASSERT_NE(waitForUsableMenu(viewer), Window{None});
    viewer.screen.key(XK_y);
    const Window dialogue = viewer.screen.findTitle("Scale bar of image window");
    ASSERT_TRUE(support::waitForFocus(viewer.screen, dialogue));
    drive::waitUntilCalm(viewer.screen);
    const auto type = [&](const char* length) {
        viewer.screen.replaceText(length);
        viewer.screen.key(XK_Return);
        drive::waitUntilCalm(viewer.screen);
        return barWidth();
    };
    const int one = type("1"), two = type("2000 nm");
    EXPECT_GT(one, 20);
    EXPECT_NEAR(two, 2 * one, 1);
    EXPECT_EQ(type("nonsense"), two);
    type(""); // automatic for the tests that follow
    viewer.screen.key(XK_Escape);
    EXPECT_TRUE(drive::waitUntil([&] { return !viewer.screen.viewable(dialogue); }));
}

TEST(Controls, LabelsHaveColoursOfTheirOwn)
{
    Viewer viewer({"--wavelengths", "1", "--colors", "white", "--zoom", "8", stackImage()});
    const auto isGrey = [&] {
        const drive::Pixel pixel = viewer.pixelAt(200, 200);
        return pixel.red == pixel.green && pixel.green == pixel.blue;
    };
    EXPECT_TRUE(isGrey());
    for (const bool grey : {false, true}) {
        viewer.focus();
        viewer.screen.key(XK_l);
        EXPECT_TRUE(drive::waitUntil([&] { return isGrey() == grey; })) << grey;
    }
}

TEST(Controls, TheScaleBarFollowsTheResolution)
{
    drive::Screen screen;
    const auto thicknessAt = [&](int dotsPerInch) {
        const std::string text = "Xft.dpi: " + std::to_string(dotsPerInch) + "\n";
        XChangeProperty(screen.x(), screen.root(), XA_RESOURCE_MANAGER, XA_STRING, 8, PropModeReplace,
                        reinterpret_cast<const unsigned char*>(text.data()), static_cast<int>(text.size()));
        XSync(screen.x(), False);
        Viewer viewer({"--zoom", "8", stackImage()});
        const drive::Picture picture = viewer.screen.capture(viewer.canvas);
        // From a row inside the bar to its dark rim.
        const int column = picture.width - 30, inside = picture.height - 14 * dotsPerInch / 96;
        int top = inside, bottom = inside;
        while (top > 0 && picture.at(column, top) == white)
            --top;
        while (bottom < picture.height && picture.at(column, bottom) == white)
            ++bottom;
        return bottom - top - 1;
    };
    EXPECT_EQ(thicknessAt(96), 4);
    EXPECT_EQ(thicknessAt(192), 8);
    XDeleteProperty(screen.x(), screen.root(), XA_RESOURCE_MANAGER);
}

TEST(Controls, AnEntryThatCannotBeChosenIsLegible)
{
    Viewer viewer({stackImage()});
    viewer.screen.click(viewer.screen.findTitle("Image window"), 85, 14);
    const std::vector<Window> entries = viewer.screen.leaves(waitForUsableMenu(viewer));
    ASSERT_GT(entries.size(), 14U);
    const auto brightestIn = [&](std::size_t entry) {
        int brightest = 0;
        for (const drive::Pixel& pixel : viewer.screen.capture(entries[entry]).pixels)
            brightest = std::max<int>(brightest, pixel.green);
        return brightest;
    };
    const int available = brightestIn(1), unavailable = brightestIn(14); // Zoom out, Set scale...
    EXPECT_GT(unavailable, 110);
    EXPECT_LT(unavailable, available - 50);
}

TEST(Controls, WindowsAskForAPlaceWhenTheUserDoes)
{
    for (const bool asked : {false, true}) {
        Viewer viewer(asked ? std::vector<std::string>{"--geometry", "+40+50", rgbImage()}
                            : std::vector<std::string>{rgbImage()});
        XSizeHints hints{};
        long supplied = 0;
        XGetWMNormalHints(viewer.screen.x(), viewer.screen.findTitle("Image window"), &hints, &supplied);
        EXPECT_EQ((hints.flags & (USPosition | PPosition)) != 0, asked);
    }
}
