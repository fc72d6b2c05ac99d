// SPDX-License-Identifier: MIT
#include "tests/x/imagewindow/Viewer.h"

#include "tests/Folders.h"

#include <X11/keysym.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace viewertest {

const TempFolder& scratchFolder()
{
    static const TempFolder folder;
    return folder;
}

namespace {

std::vector<std::string> command(const std::vector<std::string>& arguments, const std::string& standardInput)
{
    std::vector<std::string> words;
    if (!standardInput.empty())
        words = {"/bin/sh", "-c", "exec \"$@\" <" + standardInput, "sh"};
    words.emplace_back(BIN_DIR "/imagewindow");
    if (std::find(arguments.begin(), arguments.end(), "--zoom") == arguments.end())
        words.insert(words.end(), {"--zoom", "1"}); // small images open larger
    for (const std::string& argument : arguments)
        words.push_back(argument);
    return words;
}

} // namespace

std::string madeOnce(const std::string& name, const std::string& options)
{
    const fs::path path = scratchFolder() / name;
    if (!fs::exists(path))
        support::makeSample(path, options);
    return path;
}

std::string rgbImage()
{
    return madeOnce("rgb.tif", "--rgb --pattern ramp --pixel-type uint8 --size 40x30 --z 1 --time 1");
}

drive::Pixel rgbPixel(int x, int y)
{
    const auto component = [&](int c) { return static_cast<unsigned char>((x + 11 * y + 1009 * c) % 256); };
    return {component(0), component(1), component(2)};
}

std::string stackImage()
{
    return madeOnce("stack.ome.tif", "--pattern ramp --size 64x48 --z 4 --channels 3 --time 2");
}

Viewer::Viewer(std::vector<std::string> arguments, const std::string& standardInput)
    : process(command(std::move(arguments), standardInput), {{"XDG_CACHE_HOME", scratchFolder() / "cache"},
                                                             {"XDG_CONFIG_HOME", scratchFolder() / "config"},
                                                             {"XDG_DATA_HOME", scratchFolder() / "data"}})
{
    drive::waitUntil([&] {
        return std::sscanf(process.output().c_str(), "window %d:", &number) == 1 || !process.running();
    });
    if (number > 0)
        canvas = screen.findImageWindow(number);
}

std::optional<protocol::DisplayRecord> Viewer::record()
{
    return protocol::readDisplay(screen.x(), canvas);
}

protocol::DisplayRecord
Viewer::waitForRecord(const std::function<bool(const protocol::DisplayRecord&)>& condition)
{
    protocol::DisplayRecord last;
    drive::waitUntil([&] {
        if (const auto read = record())
            last = *read;
        return condition(last);
    });
    return last;
}

bool Viewer::waitForPixel(int x, int y, const drive::Pixel& pixel)
{
    return drive::waitUntil([&] { return pixelAt(x, y) == pixel; });
}

void Viewer::focus()
{
    const Window window = screen.findTitle("Image window " + std::to_string(number));
    screen.click(window, 10, screen.geometry(window).height - 10); // on the status lines
    EXPECT_TRUE(support::waitForFocus(screen, window));
}

void Viewer::control(KeySym key)
{
    focus();
    screen.keyWith(XK_Control_L, key);
}

Window Viewer::waitForMenu()
{
    Window menu = None;
    drive::waitUntil([&] {
        menu = support::postedMenu(screen, canvas);
        return menu != None;
    });
    return menu;
}

} // namespace viewertest
