// What the image window shows changes under the tool: section, time, wavelengths, panels, size.
#include "tests/x/programs/Programs.h"

#include <X11/keysym.h>

using drive::Pair;

namespace programs {

namespace {

// So small that a section more or a time point more moves the curves by several rows of the plot.
const std::vector<std::string> smallRamp{"--pattern", "ramp", "--size", "180x120"};

std::vector<std::string> smallStack(int z, int t, int channels)
{
    std::vector<std::string> options = smallRamp;
    options.insert(options.end(), {"--z", std::to_string(z), "--time", std::to_string(t), "--channels",
                                   std::to_string(channels)});
    return options;
}

// The range of the whole file, which "Constant Min/Max" shows.
std::pair<float, float> smallStackRange(int z, int t, int channels)
{
    return {0, rampValue({179, 119}, channels - 1, {z - 1, t - 1})};
}

} // namespace

class DisplayChange : public ProgramsTest {
protected:
    // Turns the wheel over the image once, with a key held.
    void turnWheel(Pair& pair, KeySym key)
    {
        screen.keyDown(key);
        screen.click(pair.canvas, 10, 10, 4);
        screen.keyUp(key);
    }
};

TEST_F(DisplayChange, ThePlotFollowsSectionAndTime)
{
    const Point from{30, 100}, to{160, 20};
    writeConfig("KV_APROF_SCALE_AUTO: false\n");
    for (const auto& [key, z, t] : {
             std::tuple{XK_Shift_L,   3, 1},
             {XK_Control_L, 1, 3}
    }) {
        Pair pair = open({sample("stack.ome.tif", smallStack(z, t, 2))});
        pair.dragSegment(from.x, from.y, to.x, to.y);
        for (Section shown; shown.z < z && shown.t < t; turnWheel(pair, key)) {
            SCOPED_TRACE(std::to_string(shown.z) + ", " + std::to_string(shown.t));
            expectPlot(pair, rampCurves(from, to, {0, 1}, shown), smallStackRange(z, t, 2));
            ++(key == XK_Shift_L ? shown.z : shown.t);
        }
        expectDone(pair);
    }
}

TEST_F(DisplayChange, ThePlotFollowsTheWavelengthToggles)
{
    const Point from{30, 200}, to{370, 60};
    Pair pair = open({ramp()});
    pair.dragSegment(from.x, from.y, to.x, to.y);
    screen.clickCentre(pair.wavelengthToggle(1));
    expectPlot(pair, rampCurves(from, to, {0, 2, 3}));
    screen.clickCentre(pair.wavelengthToggle(3));
    expectPlot(pair, rampCurves(from, to, {0, 2}));
    screen.clickCentre(pair.wavelengthToggle(0));
    expectPlot(pair, rampCurves(from, to, {2}));
    screen.clickCentre(pair.wavelengthToggle(1));
    expectPlot(pair, rampCurves(from, to, {1, 2}));
    expectDone(pair);
}

TEST_F(DisplayChange, OnlyFiveWavelengthsGetACurve)
{
    Pair pair = open({sample("many.ome.tif", {"--pattern", "ramp", "--size", "300x200", "--z", "1", "--time",
                                              "1", "--channels", "7"})});
    const auto shown = [&] {
        int number = 0;
        for (const auto& wavelength : pair.display().wavelengths)
            number += wavelength.displayed;
        return number;
    };
    EXPECT_EQ(shown(), 5);
    for (const int w : {5, 6})
        screen.clickCentre(pair.wavelengthToggle(w));
    drive::waitUntilCalm(screen);
    EXPECT_LE(shown(), 5);
    pair.dragSegment(20, 20, 280, 150);
    drive::waitUntilCalm(screen);
    EXPECT_FALSE(blank(screen.capture(pair.plot)));
    expectDone(pair);
}

TEST_F(DisplayChange, ThePlotFollowsItsWindow)
{
    const Point from{30, 200}, to{370, 60};
    Pair pair = open({ramp()});
    pair.dragSegment(from.x, from.y, to.x, to.y);
    const drive::Rect tool = screen.geometry(pair.toolWindow);
    for (const auto& [wider, higher] : {
             std::pair{150, 120},
             {40,  20 }
    }) {
        XResizeWindow(screen.x(), pair.toolWindow, static_cast<unsigned>(tool.width + wider),
                      static_cast<unsigned>(tool.height + higher));
        XSync(screen.x(), False);
        EXPECT_TRUE(drive::waitUntil([&] { return screen.geometry(pair.plot).height == 200 + higher; }));
        EXPECT_EQ(screen.geometry(pair.plot).width, 500 + wider);
        expectPlot(pair, rampCurves(from, to, {0, 1, 2, 3}));
    }
    expectDone(pair);
}

TEST_F(DisplayChange, WhatCoveredThePlotLeavesNoTrace)
{
    const Point from{30, 200}, to{370, 60};
    Pair pair = open({ramp()});
    pair.dragSegment(from.x, from.y, to.x, to.y);
    XSetWindowAttributes attributes{};
    attributes.override_redirect = True;
    const drive::Rect place = screen.geometry(pair.plot);
    const Window cover = XCreateWindow(screen.x(), screen.root(), place.x + 50, place.y - 20, 200, 150, 0,
                                       CopyFromParent, InputOutput, nullptr, CWOverrideRedirect, &attributes);
    XMapRaised(screen.x(), cover);
    drive::waitUntilCalm(screen);
    XDestroyWindow(screen.x(), cover);
    expectPlot(pair, rampCurves(from, to, {0, 1, 2, 3}));
    expectDone(pair);
}

class Panels : public ProgramsTest {
protected:
    // Panels of the kind "z", "wavelength" or "time", with constant scaling.
    Pair openPanels(const std::string& kind)
    {
        stack = kind == "z" ? std::pair{3, 1} : std::pair{1, kind == "time" ? 3 : 1};
        writeConfig("KV_APROF_SCALE_AUTO: false\n");
        return open({"--panels", kind, sample("panels.ome.tif", smallStack(stack.first, stack.second, 3))});
    }
    void expectCurves(Pair& pair, Point from, Point to, Section section = {})
    {
        expectPlot(pair, rampCurves(from, to, {0, 1, 2}, section),
                   smallStackRange(stack.first, stack.second, 3));
    }
    static std::pair<int, int> whole(const protocol::WindowPosition& at)
    {
        return {static_cast<int>(at.x), static_cast<int>(at.y)};
    }
    void moveTo(Pair& pair, Point data, int panel)
    {
        const auto [x, y] = whole(pair.canvasOf(data.x, data.y, panel));
        screen.moveTo(pair.canvas, x, y);
    }
    // Whether the segment is drawn in the panel.
    bool drawnIn(Pair& pair, int panel)
    {
        const protocol::Geometry geometry = pair.display().geometry;
        const drive::Picture canvas = screen.capture(pair.canvas);
        const auto [left, top] = whole(pair.canvasOf(geometry.originX, geometry.originY, panel));
        int found = 0;
        for (int y = top; y < std::min(top + geometry.panelHeight, canvas.height); ++y)
            for (int x = left; x < std::min(left + geometry.panelWidth, canvas.width); ++x)
                found += canvas.at(x, y) == annotation;
        return found > 20;
    }

    std::pair<int, int> stack; // sections and time points of the image
};

TEST_F(Panels, TheSegmentBelongsToItsPanel)
{
    const Point from{20, 30}, to{150, 90};
    const struct {
        const char* kind;
        int panel;
        Section section;
        std::vector<bool> drawn; // in panels 0, 1, 2
    } rows[] = {
        {"z",          1, {1, 0}, {false, true, false}},
        {"z",          2, {2, 0}, {false, false, true}},
        {"wavelength", 2, {0, 0}, {false, false, true}},
        {"time",       1, {0, 0}, {true, true, true}  }
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.kind) + " panel " + std::to_string(row.panel));
        Pair pair = openPanels(row.kind);
        ASSERT_GE(pair.display().geometry.panelCount, 3);
        ASSERT_EQ(pair.display().geometry.zoom, 1.0);
        moveTo(pair, from, row.panel);
        screen.press();
        moveTo(pair, to, row.panel);
        screen.release();
        expectCurves(pair, from, to, row.section);
        drive::waitUntilCalm(screen);
        EXPECT_EQ((std::vector{drawnIn(pair, 0), drawnIn(pair, 1), drawnIn(pair, 2)}), row.drawn);
        expectDone(pair);
    }
}

TEST_F(Panels, OverAnotherPanelTheSegmentStaysAsItWas)
{
    const Point from{20, 30}, to{150, 90}, elsewhere{60, 100};
    for (const char* kind : {"z", "wavelength", "time"}) {
        SCOPED_TRACE(kind);
        Pair pair = openPanels(kind);
        moveTo(pair, from, 0);
        screen.press();
        moveTo(pair, to, 0);
        expectCurves(pair, from, to);
        moveTo(pair, elsewhere, 1);
        drive::waitUntilCalm(screen);
        expectCurves(pair, from, to);
        moveTo(pair, elsewhere, 0);
        expectCurves(pair, from, elsewhere);
        screen.release();
        expectDone(pair);
    }
}

} // namespace programs
