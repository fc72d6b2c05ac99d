// SPDX-License-Identifier: MIT
#include "platform/imagewindow/controls/Tools.h"

#include "platform/imagewindow/controls/Desk.h"
#include "platform/imagewindow/controls/Messages.h"

#include <csignal>
#include <cstring>
#include <filesystem>
#include <spawn.h>
#include <string>
#include <utility>

extern char** environ;

namespace viewer {

namespace {

constexpr const char* lineProfileTitle = "Arbitrary Profile"; // as the tool announces itself

// Starts a program that outlives this call; nobody waits for it. Returns 0 or an error number.
int startProgram(const std::string& program, const std::string& argument)
{
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t defaults;
    sigemptyset(&defaults);
    sigaddset(&defaults, SIGCHLD); // ignored here, so that ended programs leave nothing behind
    posix_spawnattr_setsigdefault(&attributes, &defaults);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
    char* arguments[] = {const_cast<char*>(program.c_str()), const_cast<char*>(argument.c_str()), nullptr};
    pid_t child = 0;
    const int error = posix_spawnp(&child, program.c_str(), nullptr, &attributes, arguments, environ);
    posix_spawnattr_destroy(&attributes);
    return error;
}

// Shows another client's window in front of all others; an iconified one comes back.
void raiseWindow(Display* display, Window window)
{
    const protocol::ErrorTrap trap(display);
    const Window root = DefaultRootWindow(display);
    XMapRaised(display, window);
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = XInternAtom(display, "_NET_ACTIVE_WINDOW", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] = 2; // at the user's wish
    event.xclient.data.l[1] = static_cast<long>(CurrentTime);
    XSendEvent(display, root, False, SubstructureRedirectMask | SubstructureNotifyMask, &event);
}

// A program that stands beside this one, else the bare name (then looked up in PATH).
std::string siblingProgram(const std::string& name)
{
    std::error_code error;
    const auto self = std::filesystem::read_symlink("/proc/self/exe", error);
    const auto sibling = self.parent_path() / name;
    return !error && std::filesystem::exists(sibling, error) ? sibling.string() : name;
}

} // namespace

std::vector<protocol::ToolEntry> Tools::running() const
{
    return protocol::announcedTools(XtDisplay(desk.canvas), XtWindow(desk.canvas));
}

void Tools::startLineProfile()
{
    for (const protocol::ToolEntry& tool : running())
        if (tool.title == lineProfileTitle)
            return raiseWindow(XtDisplay(desk.canvas), tool.shell);
    const std::string program = siblingProgram("lineprofile");
    if (const int error = startProgram(program, std::to_string(desk.shown.windowNumber)))
        showError(desk.shell, "Cannot start tool",
                  "The line profile tool cannot be started (" + program + "): " + std::strerror(error) + ".");
}

bool Tools::haveGrown()
{
    const std::size_t before = std::exchange(count, running().size());
    return count > before;
}

} // namespace viewer
