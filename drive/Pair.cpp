// SPDX-License-Identifier: MIT
#include "drive/Pair.h"

#include <X11/keysym.h>

#include <algorithm>
#include <cstdio>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace drive {

namespace {

void require(bool condition, const std::string& sentence)
{
    if (!condition)
        throw std::runtime_error(sentence);
}

std::vector<std::string> command(const std::filesystem::path& program,
                                 const std::vector<std::string>& arguments)
{
    std::vector<std::string> result{program};
    result.insert(result.end(), arguments.begin(), arguments.end());
    return result;
}

// The number in the viewer's first line "window N: FILE".
int firstWindowNumber(Process& viewer)
{
    int number = 0;
    waitUntil([&] {
        return std::sscanf(viewer.output().c_str(), "window %d:", &number) == 1 || !viewer.running();
    });
    require(number > 0, "imagewindow showed no image: " + viewer.errors());
    return number;
}

Window largestLeaf(Screen& screen, Window window)
{
    Window largest = None;
    int area = 0;
    for (const Window leaf : screen.leaves(window)) {
        const Rect place = screen.geometry(leaf);
        if (place.width * place.height > area) {
            area = place.width * place.height;
            largest = leaf;
        }
    }
    return largest;
}

} // namespace

Pair::Pair(Screen& onScreen, const std::filesystem::path& fromBin, const PairOptions& options)
    : screen(onScreen),
      viewer(command(fromBin / "imagewindow", options.viewerArguments), options.environment), bin(fromBin),
      environment(options.environment)
{
    number = firstWindowNumber(viewer);
    canvas = screen.findImageWindow(number);
    require(canvas != None, "the image window does not appear");
    viewerWindow = screen.toplevel(canvas);
    restartTool();
}

void Pair::restartTool()
{
    tool = std::make_unique<Process>(command(bin / "lineprofile", {std::to_string(number)}), environment);
    waitUntil([&] {
        return (toolWindow = screen.findTitleNow("Arbitrary Line Profile")) != None || !tool->running();
    });
    require(toolWindow != None, "the line profile tool does not appear: " + tool->errors());
    waitUntilCalm(screen);
    plot = largestLeaf(screen, toolWindow);
}

Window Pair::setting(Setting which)
{
    const std::vector<Window> leaves = screen.leaves(toolWindow);
    require(leaves.size() > IntensityAxis, "the tool window has no settings row");
    return leaves[which];
}

// The buttons are the last leaves of the tool window.
Window Pair::button(Button which)
{
    const std::vector<Window> leaves = screen.leaves(toolWindow);
    constexpr size_t buttonCount = Help + 1;
    require(leaves.size() >= buttonCount, "the tool window has no button row");
    return leaves[leaves.size() - buttonCount + which];
}

std::string Pair::message()
{
    const std::vector<Window> leaves = screen.leaves(toolWindow);
    constexpr size_t buttonCount = Help + 1;
    require(leaves.size() > buttonCount, "the tool window has no message line");
    return screen.textIn(leaves[leaves.size() - buttonCount - 1]);
}

std::string Pair::savedCount()
{
    return screen.textIn(button(SavedCount));
}

// Below the menus and the tool bar.
Window Pair::wavelengthToggle(int w)
{
    std::vector<Window> leaves = screen.leaves(viewerWindow);
    for (int row = 0; row < 2 && !leaves.empty(); ++row) {
        const int top = screen.geometry(leaves.front()).y;
        std::erase_if(leaves, [&](Window leaf) { return screen.geometry(leaf).y == top; });
    }
    const auto toggle = static_cast<size_t>(w);
    require(leaves.size() > toggle, "the image window has no such toggle");
    return leaves[toggle];
}

void Pair::writeToFile(const std::string& path)
{
    screen.clickCentre(button(Write));
    const Window chooser = screen.findTitle("Save as SYLK Spreadsheet");
    require(chooser != None, "the file chooser does not appear");
    waitUntilCalm(screen);
    screen.replaceText(path);
    screen.key(XK_Return);
}

void Pair::closeImageWindows()
{
    constexpr int mostWindows = 50;
    for (int i = 1; i <= mostWindows; ++i) {
        const Window canvasOfWindow = screen.findImageWindow(i, Milliseconds{0});
        if (canvasOfWindow != None)
            screen.requestClose(screen.toplevel(canvasOfWindow));
    }
}

protocol::DisplayRecord Pair::display()
{
    const std::string bytes = screen.property(canvas, "_IW_DISPLAY");
    const auto record = protocol::decodeDisplay(std::as_bytes(std::span(bytes)));
    require(record.has_value(), "the image window does not tell what it shows");
    return *record;
}

protocol::WindowPosition Pair::canvasOf(double x, double y, int panel)
{
    return protocol::windowFromData(display().geometry, {x, y, panel});
}

void Pair::dragSegment(double x0, double y0, double x1, double y1, int steps)
{
    const auto start = canvasOf(x0, y0), end = canvasOf(x1, y1);
    screen.drag(canvas, static_cast<int>(start.x), static_cast<int>(start.y), static_cast<int>(end.x),
                static_cast<int>(end.y), steps);
}

} // namespace drive
