// SPDX-License-Identifier: MIT
#include "tests/x/programs/Programs.h"

#include "tests/Folders.h"

#include <X11/Xutil.h>
#include <X11/keysym.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace programs {

std::vector<Point> pixelsBetween(Point from, Point to)
{
    const int dx = to.x - from.x, dy = to.y - from.y;
    const int length = std::max(std::abs(dx), std::abs(dy));
    const auto step = [length](int k, int side) {
        const int steps = length == 0 ? 0 : (2 * k * std::abs(side) + length) / (2 * length);
        return side < 0 ? -steps : steps;
    };
    std::vector<Point> pixels;
    for (int k = 0; k <= length; ++k)
        pixels.push_back({from.x + step(k, dx), from.y + step(k, dy)});
    return pixels;
}

float rampValue(Point pixel, int c, Section section)
{
    const int value = pixel.x + 11 * pixel.y + 101 * section.z + 1009 * c + 10007 * section.t;
    return static_cast<float>(value % 65536);
}

drive::Pixel curveColor(int c)
{
    constexpr drive::Pixel blue{0x66, 0x66, 255}, green{0, 255, 0}, red{255, 0, 0}, white{255, 255, 255};
    constexpr drive::Pixel colors[] = {blue, green, red, white};
    return colors[c];
}

std::vector<Curve> rampCurves(Point from, Point to, const std::vector<int>& channels, Section section)
{
    std::vector<Curve> curves;
    for (const int c : channels) {
        Curve curve{curveColor(c), {}};
        for (const Point& pixel : pixelsBetween(from, to))
            curve.samples.push_back(rampValue(pixel, c, section));
        curves.push_back(std::move(curve));
    }
    return curves;
}

std::pair<float, float> rangeOf(const std::vector<Curve>& curves)
{
    std::pair range{std::numeric_limits<float>::max(), -std::numeric_limits<float>::max()};
    for (const Curve& curve : curves)
        for (const float value : curve.samples)
            range = {std::min(range.first, value), std::max(range.second, value)};
    return range;
}

namespace {

std::vector<XPoint> plotPoints(const Curve& curve, int width, int height, std::pair<float, float> range)
{
    const float scale = static_cast<float>(height) / (range.second - range.first);
    const int base = static_cast<int>(range.first * scale) + height;
    const int n = static_cast<int>(curve.samples.size());
    std::vector<XPoint> points;
    for (int i = 0; i < n; ++i)
        points.push_back({static_cast<short>(i * width / n),
                          static_cast<short>(base - static_cast<int>(scale * curve.samples[i]))});
    return points;
}

unsigned long valueOf(const drive::Pixel& pixel)
{
    return static_cast<unsigned long>(pixel.red << 16 | pixel.green << 8 | pixel.blue);
}

drive::Picture pictureOf(Display* display, Pixmap pixmap, int width, int height)
{
    drive::Picture picture{width, height, {}};
    XImage* const image = XGetImage(display, pixmap, 0, 0, static_cast<unsigned>(width),
                                    static_cast<unsigned>(height), AllPlanes, ZPixmap);
    for (int i = 0; i < width * height; ++i) {
        const unsigned long value = XGetPixel(image, i % width, i / width);
        picture.pixels.push_back({static_cast<unsigned char>(value >> 16),
                                  static_cast<unsigned char>(value >> 8), static_cast<unsigned char>(value)});
    }
    XDestroyImage(image);
    return picture;
}

// The curves as lines that the X server draws, the later ones over the earlier ones.
drive::Picture drawn(Display* display, int width, int height, const std::vector<Curve>& curves,
                     std::pair<float, float> range)
{
    const auto columns = static_cast<unsigned>(width), rows = static_cast<unsigned>(height);
    const Pixmap pixmap = XCreatePixmap(display, DefaultRootWindow(display), columns, rows, 24);
    const GC gc = XCreateGC(display, pixmap, 0, nullptr);
    XSetForeground(display, gc, valueOf(plotBackground));
    XFillRectangle(display, pixmap, gc, 0, 0, columns, rows);
    XSetLineAttributes(display, gc, 1, LineSolid, CapButt, JoinMiter);
    for (const Curve& curve : curves) {
        std::vector<XPoint> points = plotPoints(curve, width, height, range);
        XSetForeground(display, gc, valueOf(curve.color));
        XDrawLines(display, pixmap, gc, points.data(), static_cast<int>(points.size()), CoordModeOrigin);
    }
    drive::Picture picture = pictureOf(display, pixmap, width, height);
    XFreeGC(display, gc);
    XFreePixmap(display, pixmap);
    return picture;
}

} // namespace

std::string plotProblem(drive::Screen& screen, const drive::Picture& plot, const std::vector<Curve>& curves,
                        std::pair<float, float> range)
{
    if (plot.width < 2 || plot.height < 2)
        return "there is no plot";
    const drive::Picture expected = drawn(screen.x(), plot.width, plot.height, curves, range);
    const auto [seen, wanted] = std::ranges::mismatch(plot.pixels, expected.pixels);
    const auto at = seen - plot.pixels.begin();
    return seen == plot.pixels.end() ? ""
                                     : "the plot differs in column " + std::to_string(at % plot.width) +
                                           ", row " + std::to_string(at / plot.width);
}

int count(const drive::Picture& picture, const drive::Pixel& color)
{
    return static_cast<int>(std::count(picture.pixels.begin(), picture.pixels.end(), color));
}

bool blank(const drive::Picture& plot)
{
    return plot.width > 0 && count(plot, plotBackground) == plot.width * plot.height;
}

fs::path ProgramsTest::sample(const std::string& name, const std::string& options)
{
    support::makeSample(folder / name, options);
    return folder / name;
}

fs::path ProgramsTest::ramp()
{
    return sample("ramp.ome.tif", "--pattern ramp --size 400x300 --z 3 --channels 4 --time 2");
}

drive::Pair ProgramsTest::open(std::vector<std::string> viewerArguments)
{
    std::vector<std::string> arguments{"--section", "1"};
    arguments.insert(arguments.end(), viewerArguments.begin(), viewerArguments.end());
    return drive::Pair(screen, BIN_DIR, {std::move(arguments), environment});
}

std::unique_ptr<drive::Process> ProgramsTest::startTool(const std::vector<std::string>& arguments)
{
    std::vector<std::string> command{BIN_DIR "/lineprofile"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return std::make_unique<drive::Process>(command, environment);
}

void ProgramsTest::expectPlot(drive::Pair& pair, const std::vector<Curve>& curves,
                              std::optional<std::pair<float, float>> range)
{
    std::string problem;
    drive::waitUntil([&] {
        problem = plotProblem(screen, screen.capture(pair.plot), curves, range.value_or(rangeOf(curves)));
        return problem.empty();
    });
    EXPECT_EQ(problem, "") << "the tool tells: " << pair.message();
}

void ProgramsTest::drawSegment(drive::Pair& pair, Point from, Point to)
{
    pair.dragSegment(from.x, from.y, to.x, to.y);
    expectPlot(pair, rampCurves(from, to));
}

bool ProgramsTest::waitForOverlays(drive::Pair& pair, bool shown)
{
    return drive::waitUntil([&] {
        const drive::Picture canvas = screen.capture(pair.canvas);
        return canvas.width > 0 && (count(canvas, annotation) > 0) == shown;
    });
}

bool ProgramsTest::confirm(const std::string& title)
{
    if (screen.findTitle(title) == None || !drive::waitUntilCalm(screen))
        return false;
    screen.key(XK_Return);
    return drive::waitUntil([&] { return screen.findTitleNow(title) == None; });
}

void ProgramsTest::expectDone(drive::Pair& pair)
{
    screen.clickCentre(pair.button(drive::Pair::Done));
    EXPECT_EQ(pair.tool->wait(), 0) << pair.tool->errors();
    pair.closeImageWindows();
    EXPECT_EQ(pair.viewer.wait(), 0) << pair.viewer.errors();
}

} // namespace programs
