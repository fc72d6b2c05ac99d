#include "tests/x/imagewindow/Viewer.h"

#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <unistd.h>

namespace viewertest {

namespace {

// Removed at the end of the run.
struct ScratchFolder {
    std::filesystem::path path =
        std::filesystem::temp_directory_path() / ("imagewindow_x_test." + std::to_string(getpid()));
    ScratchFolder()
    {
        std::filesystem::create_directories(path);
        // The ranges that a viewer keeps do not belong into the cache of the user who tests.
        setenv("XDG_CACHE_HOME", (path / "cache").c_str(), 1);
    }
    ~ScratchFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
};

const std::filesystem::path& scratchFolder()
{
    static const ScratchFolder folder;
    return folder.path;
}

// The server gives every client its own upper bits of the numbers of windows.
constexpr int clientBits = 21;

std::vector<std::string> command(std::vector<std::string> arguments, const std::string& standardInput)
{
    scratchFolder();
    arguments.insert(arguments.begin(), BIN_DIR "/imagewindow");
    if (!standardInput.empty()) {
        const std::vector<std::string> shell{"/bin/sh", "-c", "exec \"$@\" <" + standardInput, "sh"};
        arguments.insert(arguments.begin(), shell.begin(), shell.end());
    }
    return arguments;
}

} // namespace

std::string sampleImage(const std::string& name, const std::vector<std::string>& options)
{
    const auto path = scratchFolder() / name;
    if (std::filesystem::exists(path))
        return path;
    std::vector<std::string> arguments{BIN_DIR "/makesample"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    arguments.push_back(path);
    drive::Process maker(arguments);
    if (maker.wait() != 0)
        throw std::runtime_error("makesample failed: " + maker.errors());
    return path;
}

std::string rgbImage()
{
    return sampleImage("rgb.tif", {"--rgb", "--pattern", "ramp", "--pixel-type", "uint8", "--size", "40x30",
                                   "--z", "1", "--time", "1"});
}

drive::Pixel rgbPixel(int x, int y)
{
    const auto component = [&](int c) { return static_cast<unsigned char>((x + 11 * y + 1009 * c) % 256); };
    return {component(0), component(1), component(2)};
}

std::string stackImage()
{
    return sampleImage("stack.ome.tif", {"--pattern", "ramp", "--size", "64x48", "--z", "4", "--channels",
                                         "3", "--time", "2"});
}

Viewer::Viewer(std::vector<std::string> arguments, std::map<std::string, std::string> environment,
               const std::string& standardInput)
    : process(command(std::move(arguments), standardInput), std::move(environment))
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

bool Viewer::waitForFocus(Window window)
{
    return drive::waitUntil([&] {
        Window holder = None;
        int revert = 0;
        XGetInputFocus(screen.x(), &holder, &revert);
        return window != None && holder == window;
    });
}

void Viewer::focus()
{
    const Window window = screen.findTitle("Image window " + std::to_string(number));
    screen.click(window, 10, screen.geometry(window).height - 10); // on the status lines
    waitForFocus(window);
}

Window Viewer::waitForMenu()
{
    Window menu = None;
    drive::waitUntil([&] {
        Window rootWindow = None, parent = None, *children = nullptr;
        unsigned count = 0;
        if (!XQueryTree(screen.x(), screen.root(), &rootWindow, &parent, &children, &count))
            return false;
        for (unsigned i = 0; i < count && menu == None; ++i) {
            XWindowAttributes attributes;
            protocol::ErrorTrap trap(screen.x());
            if (XGetWindowAttributes(screen.x(), children[i], &attributes) && attributes.override_redirect &&
                attributes.map_state == IsViewable && (children[i] >> clientBits) == (canvas >> clientBits))
                menu = children[i];
        }
        XFree(children);
        return menu != None;
    });
    return menu;
}

} // namespace viewertest
