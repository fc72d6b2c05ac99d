// SPDX-License-Identifier: MIT
// Playing: how many of the sections that are due at a rate are shown, and the processor time that the viewer
// spends on each, and on nothing when it has stopped.
#include "bench/Timing.h"
#include "drive/Process.h"
#include "drive/Screen.h"
#include "platform/protocol/XProtocol.h"

#include <X11/keysym.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

constexpr int rate = 25; // sections a second
constexpr std::chrono::seconds played{4}, rest{2};

// Processor time of all threads of a process so far, milliseconds.
double processorTime(pid_t pid)
{
    clockid_t clock{};
    timespec time{};
    if (clock_getcpuclockid(pid, &clock) != 0 || clock_gettime(clock, &time) != 0)
        return 0;
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

// A folder of settings in which that rate is kept.
class Settings {
public:
    Settings()
    {
        fs::create_directories(folder / "kelvora");
        std::ofstream(folder / "kelvora/imagewindow") << "play: z " << rate << " loop\n";
    }
    ~Settings() { fs::remove_all(folder); }
    Settings(const Settings&) = delete;
    Settings& operator=(const Settings&) = delete;

    const fs::path folder = fs::temp_directory_path() / ("bench_play." + std::to_string(getpid()));
};

// How often the section that clients are told changes in that time.
int sectionsIn(drive::Screen& screen, Window canvas, std::chrono::seconds time)
{
    const auto end = bench::Clock::now() + time;
    int changes = 0, last = -1;
    while (bench::Clock::now() < end) {
        const auto record = protocol::readDisplay(screen.x(), canvas);
        if (!record)
            throw std::runtime_error("the image window is gone");
        changes += last >= 0 && record->z != last;
        last = record->z;
        drive::waitUntil([] { return false; }, drive::Milliseconds{2}, drive::Milliseconds{2});
    }
    return changes;
}

void measure(drive::Screen& screen, const fs::path& program, const std::string& image, const fs::path& config)
{
    drive::Process viewer({program, "--zoom", "1", image},
                          {{"XDG_CONFIG_HOME", config}, {"XDG_DATA_HOME", config}});
    const Window canvas = screen.findImageWindow(1);
    drive::waitUntilCalm(screen);
    const Window window = screen.findTitle("Image window 1");
    screen.click(window, 10, screen.geometry(window).height - 10); // on the status lines
    screen.key(XK_p);
    double before = processorTime(viewer.pid());
    const int shown = sectionsIn(screen, canvas, played);
    const double playing = processorTime(viewer.pid()) - before;
    screen.key(XK_p);
    drive::waitUntilCalm(screen);
    before = processorTime(viewer.pid());
    sectionsIn(screen, canvas, rest);
    const double stopped = processorTime(viewer.pid()) - before;
    const int due = rate * static_cast<int>(played.count());
    std::printf("%s: %d of %d sections shown, ratio %.2f; processor per section %.1f ms; stopped %.1f ms a "
                "second\n",
                image.c_str(), shown, due, static_cast<double>(shown) / due, playing / std::max(1, shown),
                stopped / static_cast<double>(rest.count()));
}

} // namespace

// Arguments: images.
int main(int argc, char** argv)
{
    try {
        const fs::path bin = fs::read_symlink("/proc/self/exe").parent_path();
        const Settings settings;
        drive::Screen screen;
        for (int i = 1; i < argc; ++i)
            measure(screen, bin / "imagewindow", argv[i], settings.folder);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s: %s\n", argv[0], error.what());
        return 1;
    }
}
