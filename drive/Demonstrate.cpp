// SPDX-License-Identifier: MIT
// Shows the two programs at work on the present display: opens images, starts the line profile tool on the
// first one, drives both through XTEST as a user would: drags two segments, keeps their profiles, writes them
// to a spreadsheet file, and takes a picture of both windows. Status 0 only if all worked.
// CLI11 first: its enumerators carry names that Xlib defines as macros.
#include <CLI/CLI.hpp>

#include "drive/Pair.h"
#include "drive/Structure.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

namespace {

namespace fs = std::filesystem;
using drive::Line; // canvas pixels
using drive::Pair;

struct Options {
    std::vector<std::string> files;
    fs::path out = "out";
    std::vector<double> segment; // x0 y0 x1 y1 in image pixels
};

void require(bool condition, const std::string& sentence)
{
    if (!condition)
        throw std::runtime_error(sentence);
}

// Removed with all that is in it.
class TemporaryFolder {
public:
    TemporaryFolder()
    {
        std::string name = fs::temp_directory_path() / "demonstrate-XXXXXX";
        require(mkdtemp(name.data()) != nullptr, "cannot make a temporary folder");
        path = name;
    }
    ~TemporaryFolder()
    {
        std::error_code error;
        fs::remove_all(path, error);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    fs::path path;
};

// The wished segment, else a line along the longest structure of the first panel.
Line mainLine(Pair& pair, const Options& options)
{
    if (!options.segment.empty()) {
        const auto start = pair.canvasOf(options.segment[0], options.segment[1]);
        const auto end = pair.canvasOf(options.segment[2], options.segment[3]);
        return {start.x, start.y, end.x, end.y};
    }
    const protocol::Geometry geometry = pair.display().geometry;
    drive::Rect panel = pair.screen.geometry(pair.canvas);
    panel.width = std::min(panel.width, geometry.panelWidth);
    constexpr int scaleBarRoom = 40;
    panel.height = std::max(1, std::min(panel.height, geometry.panelHeight) - scaleBarRoom);
    return drive::longestStructure(pair.screen.capture(panel));
}

// Through the middle of another one at a right angle, as far as the canvas reaches.
Line acrossLine(Pair& pair, const Line& line)
{
    constexpr double half = 30;
    const drive::Rect canvas = pair.screen.geometry(pair.canvas);
    const double dx = line.x1 - line.x0, dy = line.y1 - line.y0, length = std::max(1.0, std::hypot(dx, dy));
    const double x = (line.x0 + line.x1) / 2, y = (line.y0 + line.y1) / 2;
    const auto end = [&](double step) {
        return std::pair{std::clamp(x - dy / length * step, 1.0, canvas.width - 2.0),
                         std::clamp(y + dx / length * step, 1.0, canvas.height - 2.0)};
    };
    const auto [x0, y0] = end(-half);
    const auto [x1, y1] = end(half);
    return {x0, y0, x1, y1};
}

bool showsCurves(Pair& pair)
{
    const drive::Picture plot = pair.screen.capture(pair.plot);
    return std::any_of(plot.pixels.begin(), plot.pixels.end(),
                       [&](const drive::Pixel& pixel) { return !(pixel == plot.at(0, plot.height - 1)); });
}

// Drags the line and keeps its profile as number count.
void saveProfile(Pair& pair, const Line& line, int count)
{
    constexpr int steps = 25;
    pair.screen.drag(pair.canvas, static_cast<int>(line.x0), static_cast<int>(line.y0),
                     static_cast<int>(line.x1), static_cast<int>(line.y1), steps);
    pair.screen.clickCentre(pair.button(Pair::Save));
    require(drive::waitUntil([&] { return pair.savedCount() == std::to_string(count); }),
            "the profile is not saved");
}

drive::Rect around(const drive::Rect& a, const drive::Rect& b)
{
    constexpr int margin = 12;
    const int left = std::min(a.x, b.x) - margin, top = std::min(a.y, b.y) - margin;
    const int right = std::max(a.x + a.width, b.x + b.width) + margin;
    const int bottom = std::max(a.y + a.height, b.y + b.height) + margin;
    return {left, top, right - left, bottom - top};
}

void takePicture(Pair& pair, const fs::path& path)
{
    drive::Screen& screen = pair.screen;
    screen.moveTo(screen.root(), 1, 1);
    require(drive::waitUntilCalm(screen), "the windows do not come to rest");
    const drive::Picture picture = screen.capture(
        around(screen.frameGeometry(pair.viewerWindow), screen.frameGeometry(pair.toolWindow)));
    require(picture.save(path), "cannot write " + path.string());
    std::printf("Picture of both windows: %s\n", fs::absolute(path).c_str());
}

bool endsWithEndRecord(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return std::move(text).str().ends_with("\nE\n");
}

bool canBeTyped(const std::string& path)
{
    constexpr size_t longest = 200;
    return path.size() < longest &&
           std::all_of(path.begin(), path.end(), [](char c) { return c > 32 && c < 127; });
}

// Through the chooser, by the keyboard. A path that cannot be typed gets the file from folder.
void writeSpreadsheet(Pair& pair, const fs::path& folder, const fs::path& path)
{
    const fs::path wanted = fs::absolute(path).lexically_normal();
    const fs::path typed = canBeTyped(wanted) ? wanted : folder / path.filename();
    fs::remove(typed);
    pair.writeToFile(typed);
    require(drive::waitUntil([&] { return endsWithEndRecord(typed); }),
            "the spreadsheet file is not written");
    if (typed != wanted)
        fs::copy_file(typed, wanted, fs::copy_options::overwrite_existing);
    std::printf("Spreadsheet of two profiles: %s\n", wanted.c_str());
}

void requireGoodEnd(drive::Process& process, const char* name)
{
    const std::optional<int> status = process.wait();
    require(status == 0, std::string(name) + (status ? " ended with " + std::to_string(*status) : " stays") +
                             ": " + process.errors());
}

void demonstrate(const Options& options)
{
    fs::create_directories(options.out);
    const TemporaryFolder folder;
    drive::Screen screen;
    const fs::path bin = fs::read_symlink("/proc/self/exe").parent_path();
    // The user's own settings stay as they are.
    Pair pair(screen, bin, {options.files, {{"XDG_CONFIG_HOME", folder.path / "config"}}});

    const Line line = mainLine(pair, options);
    screen.clickCentre(pair.setting(Pair::FwhmToggle));
    saveProfile(pair, acrossLine(pair, line), 1);
    saveProfile(pair, line, 2);
    require(drive::waitUntil([&] { return showsCurves(pair); }), "the plot stays empty");
    takePicture(pair, options.out / "demo.png");
    writeSpreadsheet(pair, folder.path, options.out / "demo.slk");

    screen.clickCentre(pair.button(Pair::Done));
    requireGoodEnd(*pair.tool, "lineprofile");
    pair.closeImageWindows();
    requireGoodEnd(pair.viewer, "imagewindow");
}

int run(int argc, char** argv)
{
    Options options;
    CLI::App app{"Shows imagewindow and lineprofile at work; leaves demo.png and demo.slk"};
    app.add_option("files", options.files, "Images to open")->required();
    app.add_option("--out", options.out, "Folder of the picture and the spreadsheet file");
    app.add_option("--segment", options.segment, "Segment to drag: x0 y0 x1 y1 in image pixels")->expected(4);
    CLI11_PARSE(app, argc, argv);
    demonstrate(options);
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    try {
        return run(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s: %s\n", argv[0], error.what());
        return 1;
    }
}
