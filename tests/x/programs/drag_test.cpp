// The segment: dragged in the image window, its overlays there, its curves in the plot, its readout.
#include "tests/x/programs/Programs.h"

#include <X11/keysym.h>

#include <cmath>
#include <cstdio>

using drive::Pair;

namespace programs {

namespace {

const std::vector<int> allChannels{0, 1, 2, 3};

} // namespace

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

TEST_F(Drag, DrawsTheCurvesInEveryDirection)
{
    Pair pair = open({ramp()});
    const Point centre{200, 150};
    for (const Point by : {
             Point{150,  0   },
             {150,  70  },
             {120,  120 },
             {50,   130 },
             {0,    140 },
             {-60,  130 },
             {-110, 110 },
             {-190, 75  },
             {-180, 0   },
             {-170, -60 },
             {-90,  -90 },
             {-33,  -120},
             {0,    -149},
             {40,   -130},
             {100,  -100},
             {199,  -149}
    }) {
        const Point to{centre.x + by.x, centre.y + by.y};
        SCOPED_TRACE(std::to_string(by.x) + ", " + std::to_string(by.y));
        pair.dragSegment(centre.x, centre.y, to.x, to.y);
        expectPlot(pair, rampCurves(centre, to, allChannels));
    }
    // Exactly towards +x and -x, +y and -y are the first, ninth, fifth and thirteenth.
    expectDone(pair);
}

TEST_F(Drag, TellsLengthAndAngle)
{
    Pair pair = open({ramp()});
    constexpr struct {
        int dx, dy;
        double degrees;
    } rows[] = {
        {150,  0,    0     },
        {0,    100,  90    },
        {-100, 0,    -180  },
        {0,    -100, -90   },
        {90,   90,   45    },
        {-60,  80,   126.87},
        {0,    0,    0     }
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.degrees);
        pair.dragSegment(200, 150, 200 + row.dx, 150 + row.dy);
        expectReadout(pair, std::hypot(row.dx, row.dy), row.degrees);
    }
    expectDone(pair);
}

TEST_F(Drag, FollowsThePointerWhileTheButtonIsDown)
{
    Pair pair = open({ramp()});
    screen.moveTo(pair.canvas, 50, 60);
    screen.press();
    for (const Point to : {
             Point{90,  60 },
             {300, 200},
             {40,  40 },
             {50,  250}
    }) {
        screen.moveTo(pair.canvas, to.x, to.y);
        expectPlot(pair, rampCurves({50, 60}, to, allChannels));
    }
    screen.release();
    // Without the button it stays.
    screen.moveTo(pair.canvas, 350, 20);
    drive::waitUntilCalm(screen);
    expectPlot(pair, rampCurves({50, 60}, {50, 250}, allChannels));
    expectDone(pair);
}

TEST_F(Drag, ShowsItsSegmentInTheImageAndTakesItAway)
{
    Pair pair = open({ramp()});
    screen.moveTo(screen.root(), 1, 1);
    drive::waitUntilCalm(screen);
    const drive::Picture clean = screen.capture(pair.canvas);
    for (const auto& [from, to] : {
             std::pair{Point{60, 50},  Point{340, 230}},
             {Point{300, 40}, Point{80, 40}  }
    }) {
        pair.dragSegment(from.x, from.y, to.x, to.y);
        screen.moveTo(screen.root(), 1, 1);
        drive::waitUntilCalm(screen);
        expectOverlaysOnlyAt(clean, screen.capture(pair.canvas), from, to);
    }
    screen.clickCentre(pair.button(Pair::Done));
    EXPECT_EQ(pair.tool->wait(), 0) << pair.tool->errors();
    screen.moveTo(screen.root(), 1, 1);
    EXPECT_TRUE(drive::waitUntil([&] { return screen.capture(pair.canvas).pixels == clean.pixels; }));
}

TEST_F(Drag, KeysMakeItVerticalOrHorizontal)
{
    constexpr struct {
        std::vector<KeySym> (*keys)();
        Point end;
    } rows[] = {
        {[] { return std::vector<KeySym>{XK_Shift_L}; },   {100, 220}},
        {[] { return std::vector<KeySym>{XK_Control_L}; }, {280, 80} },
        {[] {
             return std::vector<KeySym>{XK_Shift_L, XK_Control_L};
         },                                       {100, 220}}
    };
    Pair pair = open({ramp()});
    for (const auto& row : rows) {
        screen.moveTo(pair.canvas, 100, 80);
        screen.press();
        for (const KeySym key : row.keys())
            screen.keyDown(key);
        screen.moveTo(pair.canvas, 280, 220);
        expectPlot(pair, rampCurves({100, 80}, row.end, allChannels));
        for (const KeySym key : row.keys())
            screen.keyUp(key);
        screen.release();
    }
    expectDone(pair);
}

TEST_F(Drag, OutsideTheImageThePointerIsPinnedToItsEdge)
{
    Pair pair = open({ramp()});
    const Point from{200, 150};
    for (const auto& [outside, pinned] : {
             std::pair{Point{600, 180}, Point{399, 180}},
             {Point{-30, 100}, Point{0, 100}  },
             {Point{250, 900}, Point{250, 299}},
             {Point{-5, 2000}, Point{0, 299}  }
    }) {
        screen.moveTo(pair.canvas, from.x, from.y);
        screen.press();
        screen.moveTo(pair.canvas, outside.x, outside.y);
        expectPlot(pair, rampCurves(from, pinned, allChannels));
        // The release out there ends the drag.
        screen.release();
        screen.moveTo(pair.canvas, 30, 30);
        drive::waitUntilCalm(screen);
        expectPlot(pair, rampCurves(from, pinned, allChannels));
    }
    expectDone(pair);
}

TEST_F(Drag, OtherButtonsDefineNothing)
{
    Pair pair = open({ramp()});
    const drive::Picture clean = screen.capture(pair.canvas);
    for (const unsigned button : {2U, 3U}) {
        screen.drag(pair.canvas, 60, 60, 200, 200, 5, button);
        drive::waitUntilCalm(screen);
        EXPECT_TRUE(blank(screen.capture(pair.plot)));
        EXPECT_EQ(count(screen.capture(pair.canvas), annotation), count(clean, annotation));
    }
    expectDone(pair);
}

TEST_F(Drag, APressAloneLeavesAMarkerAndAnEmptyPlot)
{
    Pair pair = open({ramp()});
    pair.dragSegment(60, 60, 200, 200);
    expectPlot(pair, rampCurves({60, 60}, {200, 200}, allChannels));
    screen.click(pair.canvas, 300, 100);
    EXPECT_TRUE(drive::waitUntil([&] { return blank(screen.capture(pair.plot)); }));
    EXPECT_TRUE(waitForOverlays(pair, true));
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
    expectPlot(pair, rampCurves(pixel({31, 20}), pixel({251, 141}), allChannels));
    // The wheel zooms while the tool has the pointer; the segment stays where it is in the image.
    screen.click(pair.canvas, 100, 100, 5);
    EXPECT_TRUE(drive::waitUntil([&] { return pair.display().geometry.zoom < 2; }));
    EXPECT_TRUE(waitForOverlays(pair, true));
    expectPlot(pair, rampCurves(pixel({31, 20}), pixel({251, 141}), allChannels));
    expectDone(pair);
}

TEST_F(Drag, ASegmentWithMoreSamplesThanColumnsIsDrawn)
{
    Pair pair = open({sample("long.ome.tif", {"--pattern", "ramp", "--size", "1300x40", "--z", "1",
                                              "--channels", "2", "--time", "1"}),
                      "--zoom", "0.5"});
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
        const drive::Picture plot = screen.capture(pair.plot);
        return count(
            {
                plot.width, 1, {&plot.at(0, y), &plot.at(0, y) + plot.width}
        },
            yellow);
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

TEST_F(Readout, AClickDrawsADashedLineUntilTheNextRedraw)
{
    Pair pair = open({ramp()});
    pair.dragSegment(40, 40, 340, 200);
    const std::vector<Curve> curves = rampCurves({40, 40}, {340, 200}, allChannels);
    expectPlot(pair, curves);
    for (const int y : {0, 50, 120, 199}) {
        EXPECT_TRUE(readsAt(pair, y, [&](int x) { screen.click(pair.plot, x, y); })) << y;
        const int line = yellowInRow(pair, y);
        EXPECT_GT(count(screen.capture(pair.plot), yellow), line + 20) << "no text";
    }
    pair.dragSegment(40, 40, 340, 200);
    expectPlot(pair, curves);
    expectDone(pair);
}

TEST_F(Readout, FollowsThePointerAndStaysInside)
{
    Pair pair = open({ramp()});
    screen.click(pair.plot, 100, 100);
    drive::waitUntilCalm(screen);
    EXPECT_TRUE(blank(screen.capture(pair.plot))) << "there is nothing to read";
    pair.dragSegment(40, 40, 340, 200);
    screen.moveTo(pair.plot, 100, 30);
    screen.press();
    EXPECT_TRUE(readsAt(pair, 90, [&](int x) { screen.moveTo(pair.plot, x, 90); }));
    EXPECT_LT(yellowInRow(pair, 30), 20) << "the line of before is still there";
    screen.moveTo(pair.plot, 300, 500);
    drive::waitUntilCalm(screen);
    EXPECT_GT(yellowInRow(pair, 90), 100);
    screen.release();
    expectDone(pair);
}

} // namespace programs
