// SPDX-License-Identifier: MIT
// Writing saved profiles as a spreadsheet against writing as many bytes that are at hand already, both to the
// same folder: how far the writer is from the speed of the file system.
#include "bench/Timing.h"
#include "saved/Sylk.h"

#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

constexpr int profileCount = 200, samples = 2000, channels = 5, rounds = 5;

// One record of five channels; it points into the vectors.
struct Record {
    std::vector<float> values = std::vector<float>(samples);
    std::vector<float*> lines = std::vector<float*>(channels, values.data());
    std::vector<FloatPair> points = std::vector<FloatPair>(samples);
    std::string name = "/images/cells.ome.tif";
    SavedProfile profile{};

    Record()
    {
        for (int i = 0; i < samples; ++i) {
            const float x = static_cast<float>(i);
            values[static_cast<size_t>(i)] = 1000 + 700 * std::sin(x / 37);
            points[static_cast<size_t>(i)] = {x, x / 3};
        }
        profile.imageName = name.data();
        std::strcpy(profile.savedAt, "Sat Nov 21 12:00:00 2026");
        profile.sampleCount = samples;
        profile.channelSamples = lines.data();
        profile.pixelPoints = profile.micronPoints = points.data();
        profile.channelCount = channels;
    }
};

using File = std::unique_ptr<FILE, decltype(&std::fclose)>;

File create(const std::filesystem::path& path)
{
    return {std::fopen(path.c_str(), "w"), &std::fclose};
}

void measure(const std::filesystem::path& folder)
{
    const auto sheet = folder / "sheet.slk", plain = folder / "plain.bytes";
    if (!create(sheet) || !create(plain))
        throw std::runtime_error("cannot write into " + folder.string());
    Record record;
    const std::vector<SavedProfile*> profiles(profileCount, &record.profile);
    const auto write = [&] { writeSylk(create(sheet).get(), profiles.data(), profileCount, 1); };
    write();
    const std::vector<char> bytes(std::filesystem::file_size(sheet), 'x');
    const auto writeBytes = [&] { std::fwrite(bytes.data(), 1, bytes.size(), create(plain).get()); };
    const auto times = bench::medians({write, writeBytes}, rounds);
    const double megabytes = static_cast<double>(bytes.size()) / 1e6;
    std::printf("  %d profiles of %d x %d samples: %.1f MB in %.0f ms (%.0f MB/s); the bytes alone %.0f ms; "
                "ratio %.1f\n",
                profileCount, samples, channels, megabytes, times[0] / 1e3, megabytes / times[0] * 1e6,
                times[1] / 1e3, times[0] / times[1]);
    std::filesystem::remove(sheet);
    std::filesystem::remove(plain);
}

} // namespace

int main(int argc, char** argv)
{
    try {
        measure(argc > 1 ? argv[1] : ".");
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s: %s\n", argv[0], error.what());
        return 1;
    }
}
