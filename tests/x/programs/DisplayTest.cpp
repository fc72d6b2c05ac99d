// SPDX-License-Identifier: MIT
// What the image window shows changes under the tool: section, time, wavelengths, panels, size.
#include "tests/x/programs/Programs.h"

#include <X11/keysym.h>

#include <algorithm>
#include <string>
#include <vector>

using drive::Pair;

namespace programs {

namespace {

// So small that a section more or a time point more moves the curves by several rows of the plot.
struct Stack {
    int sections, times, channels;
    std::string options() const
    {
        return "--pattern ramp --size 180x120 --z " + std::to_string(sections) + " --time " +
               std::to_string(times) + " --channels " + std::to_string(channels);
    }
    // Of the whole file, which "Constant Min/Max" shows.
    std::pair<float, float> range() const
    {
        return {0, rampValue({179, 119}, channels - 1, {sections - 1, times - 1})};
    }
};

const std::string constantScaling = "KV_APROF_SCALE_AUTO: false\n";

} // namespace

class DisplayChange : public ProgramsTest {
protected:
    const Point from{30, 200}, to{370, 60};
};

TEST_F(DisplayChange, ThePlotFollowsSectionAndTime)
{
    const Point from{30, 100}, to{160, 20};
    const struct {
        KeySym key;
        Stack stack;
        Section step;
    } rows[] = {
        {XK_Shift_L, {3, 1, 2}, {1, 0}},
        {XK_Control_L, {1, 3, 2}, {0, 1}},
    };
    writeConfig(constantScaling);
    for (const auto& [key, stack, step] : rows) {
        Pair pair = open({"--zoom", "1", sample("stack.ome.tif", stack.options())});
        pair.dragSegment(from.x, from.y, to.x, to.y);
        for (int i = 0; i < 3; ++i) {
            SCOPED_TRACE(std::to_string(step.z * i) + ", " + std::to_string(step.t * i));
            expectPlot(pair, rampCurves(from, to, {0, 1}, {step.z * i, step.t * i}), stack.range());
            support::turnWheelWith(screen, key, pair.canvas);
        }
        expectDone(pair);
    }
}

TEST_F(DisplayChange, ThePlotFollowsTheWavelengthToggles)
{
    const struct {
        int toggled;
        std::vector<int> shown;
    } rows[] = {{1, {0, 2, 3}}, {3, {0, 2}}, {0, {2}}, {1, {1, 2}}};
    Pair pair = open({ramp()});
    drawSegment(pair, from, to);
    for (const auto& [toggled, shown] : rows) {
        screen.clickCentre(pair.wavelengthToggle(toggled));
        expectPlot(pair, rampCurves(from, to, shown));
    }
    expectDone(pair);
}

TEST_F(DisplayChange, OnlyFiveWavelengthsGetACurve)
{
    Pair pair = open({"--zoom", "1", sample("many.ome.tif", Stack{1, 1, 7}.options())});
    const auto shown = [&] {
        const auto wavelengths = pair.display().wavelengths;
        return std::ranges::count_if(wavelengths, [](const auto& w) { return w.displayed; });
    };
    EXPECT_EQ(shown(), 5);
    for (const int w : {5, 6})
        screen.clickCentre(pair.wavelengthToggle(w));
    drive::waitUntilCalm(screen);
    EXPECT_LE(shown(), 5);
    pair.dragSegment(20, 20, 160, 100);
    EXPECT_TRUE(drive::waitUntil([&] { return !blank(screen.capture(pair.plot)); }));
    expectDone(pair);
}

TEST_F(DisplayChange, WhatCoveredThePlotLeavesNoTrace)
{
    Pair pair = open({ramp()});
    drawSegment(pair, from, to);
    XSetWindowAttributes attributes{};
    attributes.override_redirect = True;
    const drive::Rect place = screen.geometry(pair.plot);
    const Window cover = XCreateWindow(screen.x(), screen.root(), place.x + 50, place.y - 20, 200, 150, 0,
                                       CopyFromParent, InputOutput, nullptr, CWOverrideRedirect, &attributes);
    XMapRaised(screen.x(), cover);
    drive::waitUntilCalm(screen);
    XDestroyWindow(screen.x(), cover);
    expectPlot(pair, rampCurves(from, to));
    expectDone(pair);
}

class Panels : public ProgramsTest {
protected:
    static Point whole(const protocol::WindowPosition& at)
    {
        return {static_cast<int>(at.x), static_cast<int>(at.y)};
    }
    void moveTo(Pair& pair, Point data, int panel)
    {
        const Point at = whole(pair.canvasOf(data.x, data.y, panel));
        screen.moveTo(pair.canvas, at.x, at.y);
    }
    // Whether the segment is drawn in the panel, whose edge may have the frame of panels that are plotted.
    bool drawnIn(Pair& pair, int panel)
    {
        constexpr int edge = 2;
        const protocol::Geometry geometry = pair.display().geometry;
        const Point corner = whole(pair.canvasOf(geometry.originX, geometry.originY, panel));
        const drive::Rect canvas = screen.geometry(pair.canvas);
        const drive::Rect place{canvas.x + corner.x + edge, canvas.y + corner.y + edge,
                                geometry.panelWidth - 2 * edge, geometry.panelHeight - 2 * edge};
        return count(screen.capture(place), annotation) > 20;
    }
};

// Over another panel it stays as it was, and goes on where the pointer comes back.
TEST_F(Panels, TheSegmentBelongsToItsPanel)
{
    const Point from{20, 30}, to{150, 90}, elsewhere{60, 100};
    const struct {
        const char* kind;
        Stack stack;
        int panel, other;
        Section section;
        std::vector<bool> drawn; // in panels 0, 1, 2
    } rows[] = {
        {"z", {3, 1, 3}, 1, 0, {1, 0}, {false, true, false}},
        {"z", {3, 1, 3}, 2, 1, {2, 0}, {false, false, true}},
        {"wavelength", {1, 1, 3}, 2, 0, {0, 0}, {false, false, true}},
        {"time", {1, 3, 3}, 1, 2, {0, 0}, {true, true, true}},
    };
    writeConfig(constantScaling);
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.kind) + " panel " + std::to_string(row.panel));
        Pair pair =
            open({"--zoom", "1", "--panels", row.kind, sample("panels.ome.tif", row.stack.options())});
        ASSERT_EQ(pair.display().geometry.zoom, 1.0);
        moveTo(pair, from, row.panel);
        screen.press();
        moveTo(pair, elsewhere, row.panel);
        const std::vector<Curve> before = rampCurves(from, elsewhere, {0, 1, 2}, row.section);
        expectPlot(pair, before, row.stack.range());
        moveTo(pair, to, row.other);
        drive::waitUntilCalm(screen);
        expectPlot(pair, before, row.stack.range());
        moveTo(pair, to, row.panel);
        screen.release();
        expectPlot(pair, rampCurves(from, to, {0, 1, 2}, row.section), row.stack.range());
        drive::waitUntilCalm(screen);
        EXPECT_EQ((std::vector{drawnIn(pair, 0), drawnIn(pair, 1), drawnIn(pair, 2)}), row.drawn);
        expectDone(pair);
    }
}

} // namespace programs
