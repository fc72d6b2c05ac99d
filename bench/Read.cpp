// SPDX-License-Identifier: MIT
// Reading the rectangles that segments touch, all channels, against a plain uint16-to-float loop over as many
// pixels. The limit: at most 1.3 times the loop when the data is in the cache.
#include "bench/Timing.h"
#include "platform/image/ImageFile.h"

#include <cstdio>
#include <numeric>
#include <vector>

namespace {

struct Shape {
    const char* name;
    image::PixelRect rect;
    int rounds;
};

std::vector<Shape> shapes(const image::ImageInfo& info)
{
    const int right = info.width - 1, bottom = info.height - 1;
    return {
        {"horizontal", {0, bottom / 2, right, bottom / 2}, 1000},
        {"full diagonal", {0, 0, right, bottom}, 40},
        {"short", {right / 2, bottom / 2, right / 2 + 59, bottom / 2 + 39}, 1000},
    };
}

// noinline, so that the loop is the same code for every shape.
__attribute__((noinline)) void convert(const std::vector<std::uint16_t>& from, std::vector<float>& to)
{
    for (size_t i = 0; i < to.size(); ++i)
        to[i] = from[i];
}

void measure(image::ImageFile& file, const Shape& shape)
{
    const size_t pixels = static_cast<size_t>(shape.rect.width()) * static_cast<size_t>(shape.rect.height());
    const int channels = file.info().sizeW;
    std::vector<std::uint16_t> values(pixels);
    std::iota(values.begin(), values.end(), std::uint16_t{0});
    std::vector<float> patch(pixels);
    bool readable = true;
    const auto read = [&] {
        for (int w = 0; w < channels; ++w)
            readable = file.read({0, w, 0, 0}, shape.rect, patch) && readable;
    };
    const auto loop = [&] {
        for (int w = 0; w < channels; ++w)
            convert(values, patch);
    };
    const std::vector<double> time = bench::medians({read, loop}, shape.rounds);
    std::printf("  %-14s read %9.1f us   plain loop %9.1f us   ratio %5.2f%s\n", shape.name, time[0], time[1],
                time[0] / time[1], readable ? "" : "   NOT READABLE");
}

} // namespace

int main(int argc, char** argv)
{
    try {
        for (int i = 1; i < argc; ++i) {
            const auto file = image::ImageFile::open(argv[i]);
            const image::ImageInfo& info = file->info();
            std::printf("%s: %d x %d, %d channels\n", argv[i], info.width, info.height, info.sizeW);
            for (const Shape& shape : shapes(info))
                measure(*file, shape);
        }
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
