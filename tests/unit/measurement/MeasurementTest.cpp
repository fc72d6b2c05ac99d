// SPDX-License-Identifier: MIT
// A whole measurement by a program that has no X: the section, the segment and the sheet are all that it
// needs.
#include "profile/Fwhm.h"
#include "profile/Patch.h"
#include "saved/Sylk.h"
#include "segment/Geometry.h"
#include "tests/Rows.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <link.h>
#include <string>
#include <vector>

namespace {

// A section of any size whose pixel (x, y) has the value 1000 y + x.
struct Ramp {
    static float at(int x, int y) { return static_cast<float>(1000 * y + x); }

    static void read(const WalkRect& rect, std::vector<float>& pixels)
    {
        pixels.clear();
        for (int y = rect.yFirst; y <= rect.yLast; y++)
            for (int x = rect.xFirst; x <= rect.xLast; x++)
                pixels.push_back(at(x, y));
    }
};

struct Sampled {
    std::vector<PixelPoint> points;
    std::vector<float> samples;
    int patches = 0;
    std::size_t largestPatch = 0;
};

Sampled sample(PixelPoint from, PixelPoint to)
{
    Sampled result;
    const WalkRect rect = boundingRect(from, to);
    result.points.resize(static_cast<std::size_t>(rect.width()) + static_cast<std::size_t>(rect.height()));
    const int32_t count = walkLine(from, to, result.points.data());
    result.samples.resize(static_cast<std::size_t>(count));
    std::vector<float> pixels;
    for (int32_t first = 0; first < count; result.patches++) {
        const Patch patch = patchAt(result.points.data(), count, first, rect.pixels());
        Ramp::read(patch.rect, pixels);
        result.largestPatch = std::max(result.largestPatch, pixels.size());
        pickSamples(patch, result.points.data(), pixels.data(), result.samples.data());
        first = patch.end;
    }
    return result;
}

struct PatchCase {
    const char* name;
    PixelPoint from, to;
    bool whole; // in one rectangle
};

class Patches : public testing::TestWithParam<PatchCase> {};

TEST_P(Patches, giveEachPixelOfTheWalkItsValue)
{
    const PatchCase& row = GetParam();
    const Sampled sampled = sample(row.from, row.to);
    EXPECT_EQ(sampled.patches == 1, row.whole);
    EXPECT_LE(sampled.largestPatch, static_cast<std::size_t>(row.whole ? wholePatchPixels : patchPixels));
    for (std::size_t i = 0; i < sampled.samples.size(); i++)
        ASSERT_EQ(sampled.samples[i], Ramp::at(sampled.points[i].x, sampled.points[i].y)) << "sample " << i;
}

INSTANTIATE_TEST_SUITE_P(Segments, Patches,
                         testing::Values(PatchCase{"horizontalBackwards", {10, 5}, {3, 5}, true},
                                         PatchCase{"steep", {0, 0}, {7, 100}, true},
                                         PatchCase{"largestWhole", {0, 0}, {4095, 4095}, true},
                                         PatchCase{"oneColumnMore", {0, 0}, {4096, 4095}, false},
                                         PatchCase{"longDiagonalUpwards", {100, 6000}, {6100, 0}, false}),
                         RowName{});

std::string sheetOf(const std::vector<float>& samples, const std::vector<PixelPoint>& points, float fwhm)
{
    std::vector<float> values = samples;
    std::vector<FloatPair> pixels, microns;
    for (std::size_t i = 0; i < samples.size(); i++) {
        pixels.push_back({static_cast<float>(points[i].x), static_cast<float>(points[i].y)});
        microns.push_back({0.5f * pixels.back().x, 0.5f * pixels.back().y});
    }
    char name[] = "field.tif";
    float* channel = values.data();
    SavedProfile saved{};
    saved.imageName = name;
    saved.sampleCount = static_cast<int32_t>(samples.size());
    saved.channelSamples = &channel;
    saved.pixelPoints = pixels.data();
    saved.micronPoints = microns.data();
    saved.segmentLength = stageLength(5.0f, 0.0f);
    saved.angle = stageAngle(5.0f, 0.0f);
    saved.channelCount = 1;
    saved.channelWaves[0] = 525;
    saved.peakFwhm = fwhm;
    SavedProfile* const records[] = {&saved};
    char* text = nullptr;
    std::size_t size = 0;
    FILE* file = open_memstream(&text, &size);
    writeSylk(file, records, 1, 1);
    std::fclose(file);
    std::string sheet(text, size);
    std::free(text);
    return sheet;
}

TEST(Measurement, reachesTheSheetWithoutADisplay)
{
    const std::vector<float> peak{0, 5, 10, 5, 0, 0, 0, 0, 0, 0, 0};
    const std::vector<PixelPoint> points = sample({0, 0}, {10, 0}).points;
    const float step = sampleStep(0, 0, 10, 0, 0.5f, 11);
    const float fwhm = peakFwhm(peak.data(), 11, step);
    EXPECT_FLOAT_EQ(fwhm, 2 * 5.0f / 11);
    const std::string sheet = sheetOf(peak, points, fwhm);
    EXPECT_NE(sheet.find("C;X9;Y4;K\"0.909091\"\n"), std::string::npos);
    EXPECT_NE(sheet.find("C;X1;Y6;K\"Channel 525\"\n"), std::string::npos);
    EXPECT_NE(sheet.find("C;X1;Y9;K\"10.000000\"\n"), std::string::npos);
}

TEST(Measurement, needsNoLibraryOfTheWindowSystem)
{
    std::vector<std::string> libraries;
    dl_iterate_phdr(
        [](dl_phdr_info* info, std::size_t, void* names) {
            static_cast<std::vector<std::string>*>(names)->emplace_back(info->dlpi_name);
            return 0;
        },
        &libraries);
    EXPECT_GT(libraries.size(), 1u);
    for (const std::string& library : libraries)
        EXPECT_EQ(library.find("libX"), std::string::npos) << library;
}

} // namespace
