// SPDX-License-Identifier: MIT
// The viewer's part of a drag: from a tool's command that moves its line to the line on the screen, where the
// server reports damage of the canvas, and the processor time that the viewer and the server spend on it.
#include "bench/Timing.h"
#include "drive/Pair.h"
#include "drive/Process.h"
#include "drive/Screen.h"
#include "platform/protocol/XProtocol.h"

#include <X11/extensions/Xdamage.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <poll.h>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

constexpr int moves = 300;

// Processor time of all threads of a process so far, milliseconds.
double processorTime(pid_t pid)
{
    clockid_t clock{};
    timespec time{};
    if (clock_getcpuclockid(pid, &clock) != 0 || clock_gettime(clock, &time) != 0)
        return 0;
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

class Canvas {
public:
    Canvas(Display* display, Window canvas, const protocol::Geometry& geometry)
        : display(display), canvas(canvas), geometry(geometry)
    {
        int errorBase = 0;
        if (!XDamageQueryExtension(display, &eventBase, &errorBase))
            throw std::runtime_error("the X server has no Damage extension");
        damage = XDamageCreate(display, canvas, XDamageReportRawRectangles);
        tool = XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, 1, 1, 0, 0, 0);
    }
    ~Canvas()
    {
        XDamageDestroy(display, damage);
        XDestroyWindow(display, tool);
        XSync(display, False);
    }
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    // Moves the line and waits until its pixels have come.
    void move(double x0, double y0, double x1, double y1)
    {
        protocol::OverlayCommand command{.kind = protocol::OverlayKind::AddLine,
                                         .client = static_cast<std::uint32_t>(tool),
                                         .id = 1,
                                         .width = 2};
        command.x0 = static_cast<float>(x0);
        command.y0 = static_cast<float>(y0);
        command.x1 = static_cast<float>(x1);
        command.y1 = static_cast<float>(y1);
        protocol::appendOverlay(display, canvas, command);
        protocol::appendOverlay(
            display, canvas,
            {.kind = protocol::OverlayKind::Redraw, .client = static_cast<std::uint32_t>(tool)});
        XFlush(display);
        const auto at = protocol::windowFromData(geometry, {x1, y1, 0});
        await(static_cast<int>(at.x), static_cast<int>(at.y));
    }

private:
    // Until the end of the line is drawn, which comes last: the viewer shows parts from the top to the
    // bottom.
    void await(int x, int y)
    {
        constexpr int patience = 2000;
        for (bool come = false; !come;) {
            pollfd connection{ConnectionNumber(display), POLLIN, 0};
            if (!XPending(display) && poll(&connection, 1, patience) <= 0)
                throw std::runtime_error("no line is drawn");
            while (XPending(display) > 0) {
                XEvent event;
                XNextEvent(display, &event);
                come |= event.type == eventBase + XDamageNotify &&
                        holds(reinterpret_cast<const XDamageNotifyEvent&>(event).area, x, y);
            }
        }
        XDamageSubtract(display, damage, None, None);
    }

    static bool holds(const XRectangle& area, int x, int y)
    {
        return x >= area.x && x < area.x + area.width && y >= area.y && y < area.y + area.height;
    }

    Display* display;
    Window canvas, tool = None;
    protocol::Geometry geometry;
    Damage damage = None;
    int eventBase = 0;
};

// serverPid: 0 when it is not known.
void measure(drive::Screen& screen, const std::string& program, const std::vector<std::string>& arguments,
             pid_t serverPid)
{
    std::vector<std::string> command{program};
    command.insert(command.end(), arguments.begin(), arguments.end());
    drive::Process viewer(command);
    const Window window = screen.findImageWindow(1);
    drive::waitUntilCalm(screen);
    const auto record = protocol::readDisplay(screen.x(), window);
    if (!record)
        throw std::runtime_error("no image window: " + viewer.errors());
    const protocol::Geometry& g = record->geometry;
    Canvas canvas(screen.x(), window, g);
    canvas.move(0, 0, 1, 1);
    const double viewerBefore = processorTime(viewer.pid());
    const double serverBefore = serverPid ? processorTime(serverPid) : 0;
    std::vector<double> times;
    for (int i = 0; i < moves; ++i) {
        const auto start = bench::Clock::now();
        canvas.move(0.02 * g.imageWidth, 0.02 * g.imageHeight, 0.95 * g.imageWidth + i % 2,
                    0.95 * g.imageHeight);
        times.push_back(bench::microsecondsSince(start));
    }
    const double viewerTime = processorTime(viewer.pid()) - viewerBefore;
    const double serverTime = serverPid ? processorTime(serverPid) - serverBefore : 0;
    std::printf("canvas %d x %d: command to line median %.2f ms, 95%% %.2f ms; processor per move: viewer "
                "%.2f ms, server %.2f ms\n",
                g.panelWidth, g.panelHeight, bench::quantile(times, 0.5) / 1e3,
                bench::quantile(times, 0.95) / 1e3, viewerTime / moves, serverTime / moves);
}

} // namespace

// Arguments: those of the viewer. SERVER_PID in the environment: of the X server.
int main(int argc, char** argv)
{
    try {
        const std::filesystem::path bin = std::filesystem::read_symlink("/proc/self/exe").parent_path();
        const char* const server = std::getenv("SERVER_PID");
        drive::Screen screen;
        measure(screen, bin / "imagewindow", {argv + 1, argv + argc}, server ? std::atoi(server) : 0);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s: %s\n", argv[0], error.what());
        return 1;
    }
}
