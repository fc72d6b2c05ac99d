// SPDX-License-Identifier: MIT
// The real images: their dimensions as their makers list them, their pixels as another reader took them
// (tests/data/image/samples.txt).
#include "tests/Folders.h"
#include "tests/unit/image/TestFiles.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <numeric>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

using namespace image;
using testing::_;
using testing::ElementsAre;
using testing::HasSubstr;
namespace fs = std::filesystem;

class Samples : public ::testing::Test {
protected:
    void SetUp() override
    {
        const char* const variable = std::getenv("SAMPLES_DIR");
        if (!variable || !fs::is_directory(variable))
            GTEST_SKIP() << "SAMPLES_DIR names no folder with the sample images.";
        folder = variable;
    }
    fs::path folder;
};

namespace {

const std::string positions = "181003_multi_pos_time_course_1_MMStack.ome.tif",
                  companion = "multifile-companion/multifile";

} // namespace

TEST_F(Samples, DimensionsSpacingAndColours)
{
    const struct {
        std::string name;
        int width, height;
        std::array<int, 4> sizes;     // z, w, t, p
        std::array<float, 3> spacing; // 1: not calibrated
        std::vector<int> colors;
    } rows[] = {
        {"neuron-4Ch.tiff", 502, 623, {1, 4, 1, 1}, {0.1241f, 0.1241f, 1}, {5, 1, 2, 4}},
        {"xyc_16bit__cell_dna_mts_actin.tif",
         350,
         350,
         {1, 3, 1, 1},
         {0.132492f, 0.132492f, 0.5f},
         {6, 5, 3}},
        {"xyzct-mitosis.tif", 171, 196, {5, 2, 3, 1}, {0.0885f, 0.0885f, 1}, {1, 2}},
        {positions, 256, 256, {1, 1, 10, 2}, {5.2304f, 5.2304f, 1}, {0}},
        {"tubhiswt-2D/tubhiswt_C0.ome.tif", 512, 512, {1, 2, 1, 1}, {1, 1, 1}, {0, 0}},
        {"tubhiswt-2D/tubhiswt_C1.ome.tif", 512, 512, {1, 2, 1, 1}, {1, 1, 1}, {0, 0}},
        {companion + "-Z1.ome.tiff", 18, 24, {5, 1, 1, 1}, {1, 1, 1}, {1}},
        {companion + "-Z4.ome.tiff", 18, 24, {5, 1, 1, 1}, {1, 1, 1}, {1}},
        {companion + ".companion.ome", 18, 24, {5, 1, 1, 1}, {1, 1, 1}, {1}},
        {"multi-channel-z-series.ome.tiff", 439, 167, {5, 3, 1, 1}, {1, 1, 1}, {2, 5, 6}},
        {"HE_example.tif", 1380, 1484, {1, 3, 1, 1}, {0.50008f, 0.50008f, 1}, {1, 2, 4}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const auto image = ImageFile::open(folder / row.name);
        const ImageInfo& info = image->info();
        EXPECT_EQ(std::pair(info.width, info.height), std::pair(row.width, row.height));
        EXPECT_EQ(sizesOf(*image), row.sizes);
        EXPECT_EQ(info.calibrated, row.spacing[0] != 1);
        for (std::size_t axis = 0; axis < 3; ++axis)
            EXPECT_NEAR(info.spacing[axis], row.spacing[axis], 1e-5 * row.spacing[axis]);
        std::vector<int> colors;
        for (const Wavelength& wavelength : info.wavelengths)
            colors.push_back(wavelength.colorIndex);
        EXPECT_EQ(colors, row.colors);
    }
}

TEST_F(Samples, PixelValues)
{
    std::ifstream table(fs::path(TEST_DATA_DIR) / "image" / "samples.txt");
    int rows = 0;
    for (std::string line; std::getline(table, line);) {
        if (line.starts_with('#'))
            continue;
        SCOPED_TRACE(line);
        std::istringstream row(line);
        std::string name;
        SectionIndex s;
        double min = 0, max = 0, sum = 0;
        row >> name >> s.z >> s.w >> s.t >> s.p >> min >> max >> sum;
        const auto image = ImageFile::open(folder / name);
        const std::vector<float> pixels = readWhole(*image, s);
        ASSERT_FALSE(pixels.empty()) << image->lastError();
        EXPECT_EQ(std::ranges::min(pixels), min);
        EXPECT_EQ(std::ranges::max(pixels), max);
        EXPECT_EQ(std::accumulate(pixels.begin(), pixels.end(), 0.0), sum);
        int x = 0, y = 0;
        for (double value = 0; row >> x >> y >> value;)
            EXPECT_EQ(pixels[static_cast<std::size_t>(y) * image->info().width + x], value);
        ++rows;
    }
    EXPECT_EQ(rows, 36);
}

TEST_F(Samples, TimesAndStagePositions)
{
    const auto image = ImageFile::open(folder / positions);
    EXPECT_THAT(headerOf(*image, {}), ElementsAre(1.348, -57494.55, _, 101.15, std::nullopt));
    EXPECT_EQ(headerOf(*image, {0, 0, 2, 0})[0], 10.257);
    EXPECT_EQ(headerOf(*image, {0, 0, 0, 2})[0], std::nullopt);
}

TEST_F(Samples, NamesAndDisplayRanges)
{
    const auto neuron = ImageFile::open(folder / "neuron-4Ch.tiff");
    EXPECT_EQ(neuron->info().wavelengths[3].name, "DAPI");
    const auto cell = ImageFile::open(folder / "xyc_16bit__cell_dna_mts_actin.tif");
    EXPECT_EQ(cell->info().wavelengths[0].displayMin, 143.0f);
    EXPECT_EQ(cell->info().wavelengths[2].displayMax, 5055.0f);
}

TEST_F(Samples, MalformedOnesShowWhatIsSoundAndSayWhatIsNot)
{
    const fs::path malformed = folder / "malformed";
    const std::pair<const char*, const char*> rows[] = {
        {"bad_ifd_offset.tif", "beyond the end"},
        {"bad_tag_offset.tif", "description"},
        {"multipage_single_frame_loop.tiff", "circle"},
    };
    for (const auto& [name, sentencePart] : rows) {
        const auto image = ImageFile::open(malformed / name);
        EXPECT_THAT(image->info().remarks, ElementsAre(HasSubstr(sentencePart))) << name;
        EXPECT_FALSE(readWhole(*image, {}).empty()) << name;
    }
    EXPECT_THAT(openFailure(malformed / "bad_strip_offset.tif"), HasSubstr("bad_strip_offset.tif"));
}

TEST_F(Samples, TimesOfFramesByTheirInterval)
{
    const auto mitosis = ImageFile::open(folder / "xyzct-mitosis.tif");
    EXPECT_NEAR(mitosis->extendedHeader({0, 0, 2, 0}, TimeStampSeconds).value_or(-1), 2 * 0.142857, 1e-6);
    EXPECT_EQ(ImageFile::open(folder / "neuron-4Ch.tiff")->info().wavelengths[1].nanometres, 603);
}
