// The whole way from the pointer to the plot: an XTEST motion in the image window to the plot drawn on the
// screen (the server reports damage of the plot's window). Median and 95th percentile, and whether one plot
// per motion is kept up at 500 motions a second.
#include "bench/Timing.h"
#include "tests/support/Pair.h"

#include <X11/extensions/Xdamage.h>

#include <cstdio>
#include <stdexcept>
#include <thread>

namespace {

struct Shape {
    const char* name;
    double x0, y0, x1, y1; // fractions of the image that the window shows
};

constexpr Shape shapes[] = {
    {"horizontal", 0.02, 0.50, 0.95, 0.50},
    {"diagonal",   0.02, 0.02, 0.95, 0.95},
    {"short",      0.50, 0.50, 0.54, 0.53},
};
constexpr int latencyMotions = 200, rateMotions = 1000;
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

std::vector<double> latencies(PlotWatch& watch, Drag& drag)
{
    std::vector<double> times;
    for (int i = 0; i < latencyMotions; ++i) {
        watch.count();
        const auto start = bench::Clock::now();
        drag.step();
        while (watch.count() == 0)
            if (bench::microsecondsSince(start) > 2e6)
                throw std::runtime_error("a motion brought no plot");
        times.push_back(bench::microsecondsSince(start));
    }
    return times;
}

// Plots drawn for rateMotions motions at 500 a second.
int plotsAtRate(PlotWatch& watch, Drag& drag)
{
    watch.count();
    int plots = 0;
    auto next = bench::Clock::now();
    for (int i = 0; i < rateMotions; ++i) {
        std::this_thread::sleep_until(next += rateInterval);
        drag.step();
        plots += watch.count();
    }
    drive::waitUntil(
        [&] {
            plots += watch.count();
            return plots >= rateMotions;
        },
        drive::Milliseconds{1000});
    return plots;
}

void measure(drive::Pair& pair, const Shape& shape)
{
    PlotWatch watch(pair.screen.x(), pair.plot);
    Drag drag(pair, shape);
    const std::vector<double> times = latencies(watch, drag);
    const int plots = plotsAtRate(watch, drag);
    std::printf(
        "  %-11s motion to plot: median %6.2f ms, 95%% %6.2f ms; at 500 motions/s: %d plots for %d motions\n",
        shape.name, bench::quantile(times, 0.5) / 1e3, bench::quantile(times, 0.95) / 1e3, plots,
        rateMotions);
}

} // namespace

int main(int argc, char** argv)
{
    try {
        const std::filesystem::path bin = std::filesystem::read_symlink("/proc/self/exe").parent_path();
        drive::Screen screen;
        for (int i = 1; i < argc; ++i) {
            drive::Pair pair(screen, bin,
                             {
                                 {"--zoom", "0.25", argv[i]},
                                 {       }
            });
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
