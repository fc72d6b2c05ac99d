// SPDX-License-Identifier: MIT
// A contrast handle under the pointer: how much processor time the picture of an image with all its
// wavelengths takes from one limit to the next, beside a plain copy of its pixels, and how much of that is
// which step.
#include "bench/Timing.h"
#include "platform/image/ImageFile.h"
#include "platform/imagewindow/paint/Labels.h"
#include "platform/imagewindow/paint/OverlayStore.h"
#include "platform/imagewindow/paint/Pixels.h"
#include "platform/imagewindow/render/Renderer.h"
#include "platform/imagewindow/view/View.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace {

using namespace viewer;

constexpr int rounds = 60;

// Of all threads, microseconds: what else runs on the machine does not count.
double processorTime()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e6 + static_cast<double>(time.tv_nsec) / 1e3;
}

double medianOf(const std::function<void()>& piece)
{
    std::vector<double> times;
    piece(); // warms up
    for (int round = 0; round < rounds; ++round) {
        const double start = processorTime();
        piece();
        times.push_back(processorTime() - start);
    }
    return bench::quantile(times, 0.5);
}

void measure(image::ImageFile& file, const char* name)
{
    View view = initialView(file.info());
    const Size canvas{file.info().width, file.info().height};
    const protocol::Geometry geometry = arrange(file.info(), view, canvas, 0).geometry;
    const std::vector<PanelContent> panels = panelContents(file.info(), view);
    Renderer renderer(file);
    renderer.load(geometry, panels);
    const OverlayStore store;
    const Scene scene{geometry, panels, store, ScaleBar{100, "20 µm"}, 1};
    const auto count = static_cast<std::size_t>(canvas.width) * static_cast<std::size_t>(canvas.height);
    std::vector<std::uint32_t> pixels(count), shown(count);
    float low = 0;
    const auto draw = [&] { renderer.draw(pixels, canvas.width, canvas.height); };
    const auto move = [&](float gamma) {
        const ContrastLimits limits = renderer.limits(0);
        renderer.setGamma(0, gamma);
        renderer.setLimits(0, {limits.low + (low = 1 - low), limits.high});
        renderer.load(geometry, panels);
        draw();
    };
    const auto label = [&] { paintOn(pixels, canvas, [&](cairo_t* cairo) { paintLabels(cairo, scene); }); };
    const auto copy = [&] { std::copy(pixels.begin(), pixels.end(), shown.begin()); };
    const double times[] = {medianOf([&] { move(1); }), medianOf([&] { move(0.5F); }), medianOf(label),
                            medianOf(copy)};
    const double frame = times[0] + times[2] + times[3];
    std::printf(
        "%s: %d x %d, %zu wavelengths: contrast %.1f ms, with gamma %.1f ms, labels %.1f ms, copy %.1f "
        "ms: %.0f pictures a second of one processor, %.1f copies each\n",
        name, canvas.width, canvas.height, panels.front().wavelengths.size(), times[0] / 1e3, times[1] / 1e3,
        times[2] / 1e3, times[3] / 1e3, 1e6 / frame, frame / times[3]);
}

} // namespace

// Arguments: images.
int main(int argc, char** argv)
{
    try {
        for (int i = 1; i < argc; ++i)
            measure(*image::ImageFile::open(argv[i]), argv[i]);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s: %s\n", argv[0], error.what());
        return 1;
    }
}
