// SPDX-License-Identifier: MIT
// The segment: dragged in the image window, its overlays there, its curves in the plot, its readout.
#include "tests/x/programs/Programs.h"

#include <X11/keysym.h>

#include <cmath>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

using drive::Pair;

namespace programs {

class Drag : public ProgramsTest {
protected:
    // Length and angle in the message line; micrometre pixels of makesample.
    void expectReadout(Pair& pair, double pixels, double degrees)
    {
        constexpr double spacing = 0.1083333333, stageRounding = 0.002;
        double length = 0, angle = 0;
        const std::string text = pair.message();
        const int read =
            std::sscanf(text.c_str(), "Line length %lf \u00b5m, angle %lf degrees", &length, &angle);
        ASSERT_EQ(read, 2) << text;
        EXPECT_NEAR(length, pixels * spacing, stageRounding) << text;
        EXPECT_NEAR(angle, degrees, 0.02) << text;
    }
    // The canvas of the ramp without the pointer, when all is drawn: nothing may change the contrast any
    // more.
    drive::Picture calmCanvas(Pair& pair)
    {
        drive::waitUntil([&] {
            return pair.display().wavelengths.back().rangeMax == rampValue({399, 299}, 3, {2, 1});
        });
        screen.moveTo(screen.root(), 1, 1);
        drive::waitUntilCalm(screen);
        return screen.capture(pair.canvas);
    }
    // The pixels that differ lie on the line or at the marker, which reaches some pixels around the start.
    void expectOverlaysOnlyAt(const drive::Picture& before, const drive::Picture& after, Point from, Point to)
    {
        constexpr double lineReach = 2.5, markerReach = 9;
        const double length = std::hypot(to.x - from.x, to.y - from.y);
        int onLine = 0;
        for (int y = 0; y < after.height; ++y)
            for (int x = 0; x < after.width; ++x) {
                if (after.at(x, y) == before.at(x, y))
                    continue;
                const double across =
                    std::abs((to.x - from.x) * (y - from.y) - (to.y - from.y) * (x - from.x)) / length;
                const bool atMarker = std::hypot(x - from.x, y - from.y) <= markerReach;
                ASSERT_TRUE(across <= lineReach || atMarker) << x << ", " << y;
                onLine += across <= 1 && after.at(x, y) == annotation;
            }
        EXPECT_GE(onLine, std::max(std::abs(to.x - from.x), std::abs(to.y - from.y)) * 9 / 10);
    }
};

TEST_F(Drag, TellsLengthAndAngle)
{
    Pair pair = open({ramp()});
    constexpr struct {
        int dx, dy;
        double degrees;
    } rows[] = {
        {150, 0, 0},  {0, 100, 90},      {-100, 0, -180}, {0, -100, -90},
        {90, 90, 45}, {-60, 80, 126.87}, {0, 0, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.degrees);
        pair.dragSegment(200, 150, 200 + row.dx, 150 + row.dy);
        expectReadout(pair, std::hypot(row.dx, row.dy), row.degrees);
    }
    expectDone(pair);
}

// While the button is down; Shift makes the segment vertical, Control horizontal, and outside the image the
// pointer is pinned to its edge.
TEST_F(Drag, FollowsThePointerUntilTheRelease)
{
    const Point from{200, 150};
    const struct {
        std::vector<KeySym> keys;
        Point pointer, end;
    } rows[] = {
        {{}, {40, 60}, {40, 60}},
        {{XK_Shift_L}, {280, 220}, {200, 220}},
        {{XK_Control_L}, {280, 220}, {280, 150}},
        {{}, {600, 180}, {399, 180}},
        {{}, {-5, 2000}, {0, 299}},
    };
    Pair pair = open({ramp()});
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::PrintToString(std::pair{row.pointer.x, row.pointer.y}));
        screen.moveTo(pair.canvas, from.x, from.y);
        screen.press();
        screen.moveTo(pair.canvas, 300, 200);
        expectPlot(pair, rampCurves(from, {300, 200}));
        for (const KeySym key : row.keys)
            screen.keyDown(key);
        screen.moveTo(pair.canvas, row.pointer.x, row.pointer.y);
        expectPlot(pair, rampCurves(from, row.end));
        for (const KeySym key : row.keys)
            screen.keyUp(key);
        screen.release();
        screen.moveTo(pair.canvas, 30, 30);
        drive::waitUntilCalm(screen);
        expectPlot(pair, rampCurves(from, row.end));
    }
    expectDone(pair);
}

TEST_F(Drag, ShowsItsSegmentInTheImageAndTakesItAway)
{
    Pair pair = open({ramp()});
    const drive::Picture clean = calmCanvas(pair);
    for (const auto& [from, to] : {
             std::pair{Point{60, 50}, Point{340, 230}},
             std::pair{Point{300, 40}, Point{80, 40}},
         }) {
        drawSegment(pair, from, to);
        expectOverlaysOnlyAt(clean, calmCanvas(pair), from, to);
    }
    screen.clickCentre(pair.button(Pair::Done));
    EXPECT_EQ(pair.tool->wait(), 0) << pair.tool->errors();
    EXPECT_TRUE(drive::waitUntil([&] { return calmCanvas(pair).pixels == clean.pixels; }));
}

TEST_F(Drag, OtherButtonsDefineNothing)
{
    Pair pair = open({ramp()});
    for (const unsigned button : {2U, 3U}) {
        screen.drag(pair.canvas, 60, 60, 200, 200, 5, button);
        EXPECT_EQ(count(calmCanvas(pair), annotation), 0);
        EXPECT_TRUE(blank(screen.capture(pair.plot)));
    }
    expectDone(pair);
}

TEST_F(Drag, APressAloneLeavesAMarkerAndAnEmptyPlot)
{
    Pair pair = open({ramp()});
    const drive::Picture clean = calmCanvas(pair);
    drawSegment(pair, {60, 60}, {200, 200});
    screen.click(pair.canvas, 300, 100);
    EXPECT_TRUE(drive::waitUntil([&] { return blank(screen.capture(pair.plot)); }));
    const drive::Picture marked = calmCanvas(pair);
    EXPECT_GT(count(marked, annotation), 0);
    EXPECT_EQ(marked.at(130, 130), clean.at(130, 130)) << "the line of before is still there";
    expectDone(pair);
}

TEST_F(Drag, FollowsZoomAndScroll)
{
    Pair pair = open({"--zoom", "2", "--geometry", "420x400", ramp()});
    ASSERT_EQ(pair.display().geometry.zoom, 2.0);
    // Window pixels are halves of image pixels, counted from the scroll origin.
    const protocol::Geometry geometry = pair.display().geometry;
    const auto pixel = [&](Point window) {
        return Point{static_cast<int>(window.x / 2.0 + geometry.originX),
                     static_cast<int>(window.y / 2.0 + geometry.originY)};
    };
    screen.drag(pair.canvas, 31, 20, 251, 141);
    expectPlot(pair, rampCurves(pixel({31, 20}), pixel({251, 141})));
    // The wheel zooms while the tool has the pointer; the segment stays where it is in the image.
    screen.click(pair.canvas, 100, 100, 5);
    EXPECT_TRUE(drive::waitUntil([&] { return pair.display().geometry.zoom < 2; }));
    EXPECT_TRUE(waitForOverlays(pair, true));
    expectPlot(pair, rampCurves(pixel({31, 20}), pixel({251, 141})));
    expectDone(pair);
}

TEST_F(Drag, ASegmentWithMoreSamplesThanColumnsIsDrawn)
{
    const fs::path image =
        sample("long.ome.tif", "--pattern ramp --size 1300x40 --z 1 --channels 2 --time 1");
    Pair pair = open({image, "--zoom", "0.5"});
    ASSERT_EQ(pair.display().geometry.zoom, 0.5);
    screen.drag(pair.canvas, 5, 3, 640, 14);
    expectPlot(pair, rampCurves({10, 6}, {1280, 28}, {0, 1}));
    expectDone(pair);
}

class Readout : public ProgramsTest {
protected:
    static constexpr drive::Pixel yellow{255, 255, 0};
    // Yellow pixels of a row of the plot.
    int yellowInRow(Pair& pair, int y)
    {
        drive::Rect row = screen.geometry(pair.plot);
        row.y += y;
        row.height = 1;
        return count(screen.capture(row), yellow);
    }
    // Asks for the readout until it is there: any redraw takes it away, such as that for a range newly known.
    bool readsAt(Pair& pair, int y, const std::function<void(int)>& ask)
    {
        const int width = screen.geometry(pair.plot).width;
        int x = 200;
        return drive::waitUntil([&] {
            ask(++x);
            drive::waitUntilCalm(screen);
            // Dashes and gaps are of one length.
            const int dashes = yellowInRow(pair, y);
            return dashes > width / 3 && dashes < width * 2 / 3;
        });
    }
};

TEST_F(Readout, IsDrawnAtThePointerUntilTheNextRedraw)
{
    Pair pair = open({ramp()});
    screen.click(pair.plot, 100, 100);
    drive::waitUntilCalm(screen);
    EXPECT_TRUE(blank(screen.capture(pair.plot))) << "there is nothing to read";
    drawSegment(pair, {40, 40}, {340, 200});
    for (const int y : {0, 50, 199}) {
        EXPECT_TRUE(readsAt(pair, y, [&](int x) { screen.click(pair.plot, x, y); })) << y;
        EXPECT_GT(count(screen.capture(pair.plot), yellow), yellowInRow(pair, y) + 20) << "no text";
    }
    screen.press();
    EXPECT_TRUE(readsAt(pair, 90, [&](int x) { screen.moveTo(pair.plot, x, 90); }));
    EXPECT_LT(yellowInRow(pair, 50), 20) << "the line of before is still there";
    screen.moveTo(pair.plot, 300, 500);
    drive::waitUntilCalm(screen);
    EXPECT_GT(yellowInRow(pair, 90), 100) << "outside the plot it stays";
    screen.release();
    drawSegment(pair, {40, 40}, {340, 200});
    expectDone(pair);
}

} // namespace programs
