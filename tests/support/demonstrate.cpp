// Shows the two programs at work on the present display: opens images, starts the line profile tool on the
// first one, drives both through XTEST as a user would, and leaves a picture of both windows. Status 0 only
// if all worked.
// CLI11 first: its enumerators carry names that Xlib defines as macros.
#include <CLI/CLI.hpp>

#include "tests/support/Pair.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>

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

// Without a wish: across the middle of the image.
std::vector<int> segmentOf(const Options& options, const protocol::Geometry& geometry)
{
    if (!options.segment.empty())
        return options.segment;
    return {geometry.imageWidth / 5, geometry.imageHeight / 2, geometry.imageWidth * 4 / 5,
            geometry.imageHeight / 2};
}

drive::Rect around(const drive::Rect& a, const drive::Rect& b)
{
    constexpr int margin = 12;
    const int left = std::min(a.x, b.x) - margin, top = std::min(a.y, b.y) - margin;
    const int right = std::max(a.x + a.width, b.x + b.width) + margin;
    const int bottom = std::max(a.y + a.height, b.y + b.height) + margin;
    return {left, top, right - left, bottom - top};
}

void takePicture(drive::Pair& pair, const fs::path& path)
{
    drive::Screen& screen = pair.screen;
    screen.moveTo(screen.root(), 1, 1);
    require(drive::waitUntilCalm(screen), "the windows do not come to rest");
    const drive::Picture picture = screen.capture(
        around(screen.frameGeometry(pair.viewerWindow), screen.frameGeometry(pair.toolWindow)));
    require(picture.save(path), "cannot write " + path.string());
    std::printf("Picture of both windows: %s\n", fs::absolute(path).c_str());
}

void demonstrate(const Options& options)
{
    fs::create_directories(options.out);
    drive::Screen screen;
    const fs::path bin = fs::read_symlink("/proc/self/exe").parent_path();
    drive::Pair pair(screen, bin, {options.files, {}});

    const std::vector<int> segment = segmentOf(options, pair.display().geometry);
    pair.dragSegment(segment[0], segment[1], segment[2], segment[3], 25);
    takePicture(pair, options.out / "demo.png");

    screen.clickCentre(pair.button(drive::Pair::Done));
    require(pair.tool->wait() == 0, "the line profile tool did not end well: " + pair.tool->errors());
    pair.closeImageWindows();
    require(pair.viewer.wait() == 0, "imagewindow did not end well: " + pair.viewer.errors());
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
