// The real images, against figures that another reader took (tests/data/image/samples.txt).
#include "tests/unit/image/TestFiles.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <numeric>
#include <sstream>

using namespace image;
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
    // Calls the row's check for every line that begins with the word.
    template<class Check> int forEachRow(const std::string& word, Check check)
    {
        std::ifstream table(fs::path(TEST_DATA_DIR) / "image" / "samples.txt");
        int rows = 0;
        for (std::string line, first; std::getline(table, line);) {
            std::istringstream row(line);
            row >> first;
            if (first == word && ++rows) {
                SCOPED_TRACE(line);
                check(row);
            }
        }
        return rows;
    }
    fs::path folder;
};

TEST_F(Samples, DimensionsSpacingAndColours)
{
    const int rows = forEachRow("image", [&](std::istringstream& row) {
        std::string name;
        int width = 0, height = 0, z = 0, w = 0, t = 0, p = 0, calibrated = 0;
        float spacing[3] = {};
        row >> name >> width >> height >> z >> w >> t >> p >> spacing[0] >> spacing[1] >> spacing[2] >>
            calibrated;
        const auto image = ImageFile::open(folder / name);
        const ImageInfo& info = image->info();
        EXPECT_EQ(std::tuple(info.width, info.height, info.sizeZ, info.sizeW, info.sizeT, info.sizeP),
                  std::tuple(width, height, z, w, t, p));
        for (int axis = 0; axis < 3; ++axis)
            EXPECT_NEAR(info.spacing[axis], spacing[axis], 1e-5 * spacing[axis]);
        EXPECT_EQ(info.calibrated, calibrated != 0);
        ASSERT_EQ(info.wavelengths.size(), static_cast<std::size_t>(w));
        for (const Wavelength& wavelength : info.wavelengths) {
            int color = -1;
            row >> color;
            EXPECT_EQ(wavelength.colorIndex, color);
        }
    });
    EXPECT_EQ(rows, 11);
}

TEST_F(Samples, PixelValues)
{
    const int rows = forEachRow("section", [&](std::istringstream& row) {
        std::string name;
        SectionIndex s;
        double min = 0, max = 0, sum = 0;
        row >> name >> s.z >> s.w >> s.t >> s.p >> min >> max >> sum;
        const auto image = ImageFile::open(folder / name);
        const std::vector<float> pixels = readWhole(*image, s);
        ASSERT_FALSE(pixels.empty()) << image->lastError();
        EXPECT_EQ(*std::min_element(pixels.begin(), pixels.end()), min);
        EXPECT_EQ(*std::max_element(pixels.begin(), pixels.end()), max);
        EXPECT_EQ(std::accumulate(pixels.begin(), pixels.end(), 0.0), sum);
        int x = 0, y = 0;
        for (double value = 0; row >> x >> y >> value;)
            EXPECT_EQ(pixels[static_cast<std::size_t>(y) * image->info().width + x], value);
    });
    EXPECT_EQ(rows, 36);
}

TEST_F(Samples, TimesAndStagePositions)
{
    const auto image = ImageFile::open(folder / "181003_multi_pos_time_course_1_MMStack.ome.tif");
    EXPECT_DOUBLE_EQ(image->extendedHeader({0, 0, 0, 0}, TimeStampSeconds).value(), 1.348);
    EXPECT_DOUBLE_EQ(image->extendedHeader({0, 0, 2, 0}, TimeStampSeconds).value(), 10.257);
    EXPECT_DOUBLE_EQ(image->extendedHeader({0, 0, 0, 0}, StageXMicrons).value(), -57494.55);
    EXPECT_DOUBLE_EQ(image->extendedHeader({0, 0, 0, 0}, StageZMicrons).value(), 101.15);
    EXPECT_FALSE(image->extendedHeader({0, 0, 0, 0}, KnownBias));
    EXPECT_FALSE(image->extendedHeader({0, 0, 0, 2}, TimeStampSeconds));
}

TEST_F(Samples, NamesAndDisplayRanges)
{
    const auto neuron = ImageFile::open(folder / "neuron-4Ch.tiff");
    EXPECT_EQ(neuron->info().wavelengths[3].name, "DAPI");
    const auto cell = ImageFile::open(folder / "xyc_16bit__cell_dna_mts_actin.tif");
    EXPECT_EQ(cell->info().wavelengths[0].displayMin, 143.0f);
    EXPECT_EQ(cell->info().wavelengths[2].displayMax, 5055.0f);
}

TEST_F(Samples, OneFileOfASetAlone)
{
    const TempFolder alone;
    fs::copy_file(folder / "tubhiswt-2D/tubhiswt_C1.ome.tif", alone / "renamed.tif");
    const auto image = ImageFile::open(alone / "renamed.tif");
    EXPECT_EQ(image->info().sizeW, 2);
    EXPECT_FALSE(image->hasSection({0, 0, 0, 0}));
    EXPECT_TRUE(image->hasSection({0, 1, 0, 0}));
    EXPECT_EQ(readWhole(*image, {0, 0, 0, 0}).size(), 0u);
    EXPECT_FALSE(image->lastError().empty());
    EXPECT_EQ(readWhole(*image, {0, 1, 0, 0}).size(), 512u * 512u);
}

TEST_F(Samples, RenamedFileWithoutIdentifierMeansItself)
{
    const TempFolder other;
    fs::copy_file(folder / "181003_multi_pos_time_course_1_MMStack.ome.tif", other / "other name.tif");
    const auto image = ImageFile::open(other / "other name.tif");
    EXPECT_EQ(image->info().sizeP, 2);
    EXPECT_FALSE(readWhole(*image, {0, 0, 9, 1}).empty());
}

TEST_F(Samples, MalformedOnesAreRefused)
{
    int count = 0;
    for (const auto& entry : fs::directory_iterator(folder / "malformed")) {
        const std::string sentence = openFailure(entry.path());
        EXPECT_NE(sentence.find(entry.path().filename().string()), std::string::npos) << entry.path();
        ++count;
    }
    EXPECT_EQ(count, 4);
}
