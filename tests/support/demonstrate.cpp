// Shows the two programs at work on the present display: opens images, starts the line profile tool on the
// first one, drives both through XTEST as a user would, and leaves a picture of both windows. Status 0 only
// if all worked.
#include "platform/protocol/DisplayRecord.h"
#include "tests/support/Drive.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

struct Options {
    std::vector<std::string> files;
    fs::path out = "out";
    std::vector<int> segment; // x0 y0 x1 y1 in image pixels
};

void require(bool condition, const std::string& sentence)
{
    if (!condition)
        throw std::runtime_error(sentence);
}

fs::path programFolder()
{
    return fs::read_symlink("/proc/self/exe").parent_path();
}

// The number in the viewer's first line "window N: FILE".
int firstWindowNumber(drive::Process& viewer)
{
    int number = 0;
    drive::waitUntil([&] {
        return std::sscanf(viewer.output().c_str(), "window %d:", &number) == 1 || !viewer.running();
    });
    require(number > 0, "imagewindow showed no image: " + viewer.errors());
    return number;
}

std::vector<std::string> viewerCommand(const Options& options)
{
    std::vector<std::string> command{programFolder() / "imagewindow"};
    command.insert(command.end(), options.files.begin(), options.files.end());
    return command;
}

protocol::DisplayRecord display(drive::Screen& screen, Window canvas)
{
    const std::string bytes = screen.property(canvas, "_IW_DISPLAY");
    const auto record = protocol::decodeDisplay(std::as_bytes(std::span(bytes)));
    require(record.has_value(), "the image window does not tell what it shows");
    return *record;
}

// Without a wish: across the middle of the image.
std::vector<int> segmentOf(const Options& options, const protocol::Geometry& geometry)
{
    if (!options.segment.empty())
        return options.segment;
    return {geometry.imageWidth / 5, geometry.imageHeight / 2, geometry.imageWidth * 4 / 5,
            geometry.imageHeight / 2};
}

void dragSegment(drive::Screen& screen, Window canvas, const Options& options)
{
    const protocol::Geometry geometry = display(screen, canvas).geometry;
    const std::vector<int> segment = segmentOf(options, geometry);
    const auto start = protocol::windowFromData(geometry, {double(segment[0]), double(segment[1]), 0});
    const auto end = protocol::windowFromData(geometry, {double(segment[2]), double(segment[3]), 0});
    screen.drag(canvas, int(start.x), int(start.y), int(end.x), int(end.y), 25);
}

// Waits until two pictures that are some frames apart are equal: the programs have drawn all they had to.
void waitUntilCalm(drive::Screen& screen)
{
    drive::Picture last = screen.captureScreen();
    int equal = 0;
    const auto calm = [&] {
        drive::Picture now = screen.captureScreen();
        equal = now.pixels == last.pixels ? equal + 1 : 0;
        last = std::move(now);
        return equal >= 5;
    };
    require(drive::waitUntil(calm), "the windows do not come to rest");
}

drive::Rect around(const drive::Rect& a, const drive::Rect& b)
{
    constexpr int margin = 12;
    const int left = std::min(a.x, b.x) - margin, top = std::min(a.y, b.y) - margin;
    const int right = std::max(a.x + a.width, b.x + b.width) + margin;
    const int bottom = std::max(a.y + a.height, b.y + b.height) + margin;
    return {left, top, right - left, bottom - top};
}

void takePicture(drive::Screen& screen, const fs::path& path, Window canvas, Window tool)
{
    screen.moveTo(screen.root(), 1, 1);
    waitUntilCalm(screen);
    const drive::Picture picture =
        screen.capture(around(screen.frameGeometry(canvas), screen.frameGeometry(tool)));
    require(picture.save(path), "cannot write " + path.string());
    std::printf("Picture of both windows: %s\n", fs::absolute(path).c_str());
}

void demonstrate(const Options& options)
{
    drive::Screen screen;
    fs::create_directories(options.out);

    drive::Process viewer(viewerCommand(options));
    const int number = firstWindowNumber(viewer);
    const Window canvas = screen.findImageWindow(number);
    require(canvas != None, "the image window does not appear");

    drive::Process tool({programFolder() / "lineprofile", std::to_string(number)});
    const Window toolWindow = screen.findTitle("Arbitrary Line Profile");
    require(toolWindow != None, "the line profile tool does not appear: " + tool.errors());
    waitUntilCalm(screen);

    dragSegment(screen, canvas, options);
    takePicture(screen, options.out / "demo.png", canvas, toolWindow);

    screen.requestClose(toolWindow);
    require(tool.wait() == 0, "the line profile tool did not end well: " + tool.errors());
    viewer.signal(SIGTERM);
    viewer.wait();
}

} // namespace

int main(int argc, char** argv)
{
    Options options;
    CLI::App app{"Shows imagewindow and lineprofile at work and takes a picture of them"};
    app.add_option("files", options.files, "Images to open")->required();
    app.add_option("--out", options.out, "Folder of the picture");
    app.add_option("--segment", options.segment, "Segment to drag: x0 y0 x1 y1 in image pixels")->expected(4);
    CLI11_PARSE(app, argc, argv);
    try {
        demonstrate(options);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s: %s\n", argv[0], error.what());
        return 1;
    }
}
