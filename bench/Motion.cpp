// SPDX-License-Identifier: MIT
// The whole way to the plot on the screen, where the server reports damage of the plot's window: from an
// XTEST motion in the image window, and from an exposure of the plot alone (one recomputation and redraw).
// Median and 95th percentile, the processor time that both programs spend on a motion, and whether one plot
// per motion is kept up at 500 motions a second.
#include "bench/Timing.h"
#include "drive/Pair.h"

#include <X11/extensions/Xdamage.h>

#include <chrono>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <functional>
#include <poll.h>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

struct Shape {
    const char* name;
    double x0, y0, x1, y1; // fractions of the image that the window shows
};

constexpr Shape shapes[] = {
    {"horizontal", 0.02, 0.50, 0.95, 0.50},
    {"diagonal", 0.02, 0.02, 0.95, 0.95},
    {"short", 0.50, 0.50, 0.54, 0.53},
};
constexpr int latencySteps = 200, rateMotions = 1000;
constexpr std::chrono::microseconds rateInterval{2000};

class PlotWatch {
public:
    PlotWatch(Display* onDisplay, Window plot) : display(onDisplay)
    {
        int errorBase = 0;
        if (!XDamageQueryExtension(display, &eventBase, &errorBase))
            throw std::runtime_error("the X server has no Damage extension");
        damage = XDamageCreate(display, plot, XDamageReportRawRectangles);
    }
    ~PlotWatch() { XDamageDestroy(display, damage); }
    PlotWatch(const PlotWatch&) = delete;
    PlotWatch& operator=(const PlotWatch&) = delete;

    // Plots drawn since the last call.
    int count()
    {
        int plots = 0;
        while (XPending(display)) {
            XEvent event;
            XNextEvent(display, &event);
            plots += event.type == eventBase + XDamageNotify;
        }
        if (plots > 0)
            XDamageSubtract(display, damage, None, None);
        return plots;
    }

    // Sleeps until there is one, so that the processors are left to those that draw.
    void await()
    {
        constexpr int patience = 2000;
        while (count() == 0) {
            pollfd connection{ConnectionNumber(display), POLLIN, 0};
            if (poll(&connection, 1, patience) <= 0)
                throw std::runtime_error("no plot is drawn");
        }
    }

private:
    Display* display;
    Damage damage = None;
    int eventBase = 0;
};

class Drag {
public:
    Drag(drive::Pair& ofPair, const Shape& shape) : pair(ofPair)
    {
        const drive::Rect place = pair.screen.geometry(pair.canvas);
        x = static_cast<int>(shape.x1 * place.width);
        y = static_cast<int>(shape.y1 * place.height);
        pair.screen.moveTo(pair.canvas, static_cast<int>(shape.x0 * place.width),
                           static_cast<int>(shape.y0 * place.height));
        pair.screen.press();
        pair.screen.moveTo(pair.canvas, x, y);
        drive::waitUntilCalm(pair.screen);
    }
    ~Drag() { pair.screen.release(); }
    Drag(const Drag&) = delete;
    Drag& operator=(const Drag&) = delete;

    // A motion by one pixel, to and fro, so that the segment keeps its shape.
    void step()
    {
        side = !side;
        pair.screen.moveTo(pair.canvas, x + side, y);
    }

private:
    drive::Pair& pair;
    int x = 0, y = 0;
    bool side = false;
};

// Processor time of all threads of a process so far, microseconds.
double processorTime(pid_t pid)
{
    clockid_t clock{};
    timespec time{};
    if (clock_getcpuclockid(pid, &clock) != 0 || clock_gettime(clock, &time) != 0)
        return 0;
    return static_cast<double>(time.tv_sec) * 1e6 + static_cast<double>(time.tv_nsec) / 1e3;
}

// Has the plot drawn anew, as after another window has covered it.
void expose(drive::Pair& pair)
{
    XEvent event{};
    event.xexpose.type = Expose;
    event.xexpose.window = pair.plot;
    event.xexpose.width = event.xexpose.height = 1;
    XSendEvent(pair.screen.x(), pair.plot, False, ExposureMask, &event);
    XFlush(pair.screen.x());
}

// From the step to the plot, microseconds.
std::vector<double> latencies(PlotWatch& watch, const std::function<void()>& step)
{
    std::vector<double> times;
    for (int i = 0; i < latencySteps; ++i) {
        watch.count();
        const auto start = bench::Clock::now();
        step();
        watch.await();
        times.push_back(bench::microsecondsSince(start));
    }
    return times;
}

struct RateResult {
    int plots = 0;
    int lateMotions = 0; // sent more than half an interval late: the next follows close behind
};

// rateMotions motions at 500 a second.
RateResult plotsAtRate(PlotWatch& watch, Drag& drag)
{
    watch.count();
    RateResult result;
    int& plots = result.plots;
    auto next = bench::Clock::now();
    for (int i = 0; i < rateMotions; ++i) {
        std::this_thread::sleep_until(next += rateInterval);
        result.lateMotions += bench::Clock::now() - next > rateInterval / 2;
        drag.step();
        plots += watch.count();
    }
    drive::waitUntil(
        [&] {
            plots += watch.count();
            return plots >= rateMotions;
        },
        drive::Milliseconds{1000});
    return result;
}

void print(const char* what, const std::vector<double>& times)
{
    std::printf("%s median %6.2f ms, 95%% %6.2f ms; ", what, bench::quantile(times, 0.5) / 1e3,
                bench::quantile(times, 0.95) / 1e3);
}

void measure(drive::Pair& pair, const Shape& shape)
{
    PlotWatch watch(pair.screen.x(), pair.plot);
    Drag drag(pair, shape);
    std::printf("  %-11s", shape.name);
    print("redraw", latencies(watch, [&] { expose(pair); }));
    const double tool = processorTime(pair.tool->pid()), viewer = processorTime(pair.viewer.pid());
    print("motion to plot", latencies(watch, [&] { drag.step(); }));
    const double toolSpent = processorTime(pair.tool->pid()) - tool;
    const double viewerSpent = processorTime(pair.viewer.pid()) - viewer;
    std::printf("processor per motion: tool %.2f ms, viewer %.2f ms; ", toolSpent / latencySteps / 1e3,
                viewerSpent / latencySteps / 1e3);
    const RateResult rate = plotsAtRate(watch, drag);
    std::printf("at 500 motions/s %d plots for %d (%d sent late)\n", rate.plots, rateMotions,
                rate.lateMotions);
}

} // namespace

int main(int argc, char** argv)
{
    try {
        const std::filesystem::path bin = std::filesystem::read_symlink("/proc/self/exe").parent_path();
        drive::Screen screen;
        for (int i = 1; i < argc; ++i) {
            drive::Pair pair(
                screen, bin,
                {{"--zoom", "0.25", argv[i]}, {{"XDG_CONFIG_HOME", std::string(argv[i]) + ".config"}}});
            std::printf("%s\n", argv[i]);
            for (const Shape& shape : shapes)
                measure(pair, shape);
        }
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s: %s\n", argv[0], error.what());
        return 1;
    }
}
