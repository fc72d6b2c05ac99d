// SPDX-License-Identifier: MIT
// Both real programs on a private screen: the fixture of the end-to-end tests, and what their windows and
// files must show, computed here from the images' formula and not by the programs' code.
#pragma once

// Before the X headers, whose macros it does not survive.
#include <gtest/gtest.h>

#include "drive/Pair.h"
#include "tests/x/support/Support.h"

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace programs {

namespace fs = std::filesystem;

struct Point {
    int x = 0, y = 0;
    friend bool operator==(const Point&, const Point&) = default;
};

// The image pixels from one to the other, both included: the step along the longer side is one pixel, the
// other coordinate is rounded, halves away from the start.
std::vector<Point> pixelsBetween(Point from, Point to);

struct Section {
    int z = 0, t = 0;
};

// Sample c of pixel (x, y) in the 16-bit pattern "ramp" of makesample.
float rampValue(Point pixel, int c, Section section = {});

struct Curve {
    drive::Pixel color;
    std::vector<float> samples;
};

// The curves of channels of a ramp along the segment, in their display colours.
std::vector<Curve> rampCurves(Point from, Point to, const std::vector<int>& channels = {0, 1, 2, 3},
                              Section section = {});
// The colour in which the plot shows channel c of an image of makesample.
drive::Pixel curveColor(int c);

// Smallest and largest of all samples.
std::pair<float, float> rangeOf(const std::vector<Curve>& curves);

// Empty when the plot shows these curves over the intensity range, to the pixel, and nothing else; otherwise
// where it differs.
std::string plotProblem(drive::Screen& screen, const drive::Picture& plot, const std::vector<Curve>& curves,
                        std::pair<float, float> range);

bool blank(const drive::Picture& plot);
int count(const drive::Picture& picture, const drive::Pixel& color);
constexpr drive::Pixel annotation{255, 184, 28}, plotBackground{0x20, 0x20, 0x20};

class ProgramsTest : public testing::Test {
protected:
    // Writes an image with makesample into the folder; see makeSample.
    fs::path sample(const std::string& name, const std::string& options);
    // 400 x 300 pixels of the pattern ramp, 4 channels, 3 sections, 2 time points.
    fs::path ramp();
    // Both programs, the first section of the first image in the window.
    drive::Pair open(std::vector<std::string> viewerArguments);
    // The tool's settings, as an earlier run would have left them.
    void writeConfig(const std::string& lines) { writeBytes(configFile(), lines); }
    std::unique_ptr<drive::Process> startTool(const std::vector<std::string>& arguments);

    // Waits for the curves, over the range of all of them when none is given.
    void expectPlot(drive::Pair& pair, const std::vector<Curve>& curves,
                    std::optional<std::pair<float, float>> range = {});
    // Drags a segment and waits for the curves of the ramp.
    void drawSegment(drive::Pair& pair, Point from, Point to);
    // The overlay graphics of the tool are in the canvas, or none is.
    bool waitForOverlays(drive::Pair& pair, bool shown);
    // Waits for the dialogue and presses Return in it.
    bool confirm(const std::string& title);
    // The tool ends in order, and after it the image window.
    void expectDone(drive::Pair& pair);
    fs::path configFile() const { return folder.path / "config" / "kelvora" / "config"; }

    drive::Screen screen;
    TempFolder folder;
    std::map<std::string, std::string> environment{
        {"HOME", folder.path},
        {"XDG_CONFIG_HOME", folder / "config"},
        {"XDG_CACHE_HOME", folder / "cache"},
    };
};

} // namespace programs
