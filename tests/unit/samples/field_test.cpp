// The made-up micrograph: repeatable, with the noise of a real camera, and a line worth dragging.
#include "tests/unit/image/TestFiles.h"
#include "tests/unit/samples/SampleRun.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

using namespace sampletest;

namespace {

const std::string oneSection = "--z 1 --time 1 ";

// A whole section with its width.
struct Pixels {
    int width;
    std::vector<float> values;
    double at(int x, int y) const { return values[static_cast<std::size_t>(y * width + x)]; }
};

Pixels pixelsOf(const std::filesystem::path& file, const image::SectionIndex& section = {})
{
    const auto image = image::ImageFile::open(file);
    Pixels pixels{image->info().width, readWhole(*image, section)};
    EXPECT_FALSE(pixels.values.empty()) << image->lastError();
    return pixels;
}

} // namespace

TEST(Field, DependsOnTheSeedAlone)
{
    const TempFolder first, second, other;
    const std::string options = oneSection + "--channels 2 --size 80x60 a.ome.tif ";
    ASSERT_EQ(makeSample(first, options).status, 0);
    ASSERT_EQ(makeSample(second, options).status, 0);
    ASSERT_EQ(makeSample(other, options + "--seed 11").status, 0);
    EXPECT_EQ(readBytes(first / "a.ome.tif"), readBytes(second / "a.ome.tif"));
    EXPECT_NE(pixelsOf(first / "a.ome.tif").values, pixelsOf(other / "a.ome.tif").values);
}

// The field repeats after 512 pixels with new noise: half the mean squared difference of a pixel and its copy
// is the variance, which must be that of the photons plus 1.6 electrons squared of read noise.
TEST(Field, NoiseIsThatOfPhotonsAndCamera)
{
    const TempFolder folder;
    ASSERT_EQ(makeSample(folder, oneSection + "--channels 1 --size 1536x64 a.ome.tif").status, 0);
    const Pixels pixels = pixelsOf(folder / "a.ome.tif");
    double photons = 0, variance = 0;
    int count = 0;
    for (int y = 0; y < 64; ++y) {
        for (int x = 512; x < 1024; ++x) { // a third copy selects the dark pixels without bias
            if (pixels.at(x - 512, y) > 120)
                continue;
            const double a = pixels.at(x, y), b = pixels.at(x + 512, y);
            photons += (a + b) / 2 - 100;
            variance += (a - b) * (a - b) / 2;
            ++count;
        }
    }
    ASSERT_GT(count, 5000);
    EXPECT_NEAR(photons / count, 10, 4);
    EXPECT_NEAR(variance / count, photons / count + 1.6 * 1.6, 0.8);
}

TEST(Field, DescribedSegmentMeetsEveryChannel)
{
    const TempFolder folder;
    const Outcome made = makeSample(folder, "--time 1 --describe a.ome.tif");
    ASSERT_EQ(made.status, 0);
    const std::size_t at = made.output.find("segment ");
    ASSERT_NE(at, std::string::npos);
    int x0 = -1, y0 = -1, x1 = -1, y1 = -1;
    std::istringstream(made.output.substr(at + 8)) >> x0 >> y0 >> x1 >> y1;
    ASSERT_TRUE(std::min({x0, y0, x1, y1}) >= 0 && std::max({x0, y0, x1, y1}) < 512);
    for (int c = 0; c < 4; ++c) {
        const Pixels pixels = pixelsOf(folder / "a.ome.tif", {2, c, 0, 0});
        std::vector<double> along;
        for (int i = 0; i <= 400; ++i)
            along.push_back(pixels.at(x0 + (x1 - x0) * i / 400, y0 + (y1 - y0) * i / 400));
        std::sort(along.begin(), along.end());
        EXPECT_GT(along.back(), 400) << "channel " << c;
        EXPECT_LT(along[along.size() / 10], 140) << "channel " << c;
    }
}

TEST(Field, DescribeAloneWritesNothing)
{
    const TempFolder folder;
    const Outcome made = makeSample(folder, "--describe --size 64x48 --split z --z 2 --channels 1");
    EXPECT_EQ(made.status, 0);
    EXPECT_NE(made.output.find("size 64 48\n"), std::string::npos);
    EXPECT_NE(made.output.find("file sample_Z1.ome.tif\n"), std::string::npos);
    EXPECT_TRUE(namesIn(folder).empty());
}
