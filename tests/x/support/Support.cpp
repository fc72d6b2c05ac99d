// SPDX-License-Identifier: MIT
#include "tests/x/support/Support.h"

#include "tests/Folders.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace support {

std::string problemOf(const std::vector<std::string>& command,
                      const std::map<std::string, std::string>& environment)
{
    constexpr drive::Milliseconds longRun{90000};
    drive::Process process(command, environment);
    const std::optional<int> status = process.wait(longRun);
    if (status == 0)
        return {};
    return command.front() + (status ? " ended with " + std::to_string(*status) : " does not end") + ": " +
           process.errors() + process.output();
}

void makeSample(const std::filesystem::path& path, const std::string& options)
{
    std::vector<std::string> command{BIN_DIR "/makesample"};
    std::istringstream words(options);
    for (std::string word; words >> word;)
        command.push_back(word);
    command.push_back(path);
    if (const std::string problem = problemOf(command); !problem.empty())
        throw std::runtime_error(problem);
}

int lineCount(const std::string& text)
{
    return static_cast<int>(std::count(text.begin(), text.end(), '\n'));
}

bool waitForFocus(drive::Screen& screen, Window window)
{
    return drive::waitUntil([&] {
        Window holder = None;
        int revert = 0;
        XGetInputFocus(screen.x(), &holder, &revert);
        return window != None && holder == window;
    });
}

bool waitForPointerGrab(drive::Screen& screen, bool grabbed)
{
    return drive::waitUntil([&] {
        XGrabServer(screen.x()); // so that no other client meets the trial grab
        const int trial = XGrabPointer(screen.x(), screen.root(), False, ButtonPressMask, GrabModeAsync,
                                       GrabModeAsync, None, None, CurrentTime);
        XUngrabPointer(screen.x(), CurrentTime);
        XUngrabServer(screen.x());
        XSync(screen.x(), False);
        return (trial != GrabSuccess) == grabbed;
    });
}

std::vector<Window> childrenOf(drive::Screen& screen, Window window)
{
    Window root = None, parent = None, *list = nullptr;
    unsigned count = 0;
    if (!XQueryTree(screen.x(), window, &root, &parent, &list, &count))
        return {};
    const std::vector<Window> children(list, list + count);
    if (list)
        XFree(list);
    return children;
}

Window postedMenu(drive::Screen& screen, Window window)
{
    constexpr int clientBits =
        21; // the server gives every client its own upper bits of the numbers of windows
    for (const Window top : childrenOf(screen, screen.root())) {
        XWindowAttributes attributes;
        if ((top >> clientBits) == (window >> clientBits) &&
            XGetWindowAttributes(screen.x(), top, &attributes) && attributes.override_redirect &&
            attributes.map_state == IsViewable)
            return top;
    }
    return None;
}

void turnWheelWith(drive::Screen& screen, KeySym key, Window canvas)
{
    screen.keyDown(key);
    screen.click(canvas, 10, 10, 4);
    screen.keyUp(key);
}

} // namespace support
