// SPDX-License-Identifier: MIT
// The made-up micrograph: repeatable, with the noise of a real camera, and a line worth dragging.
#include "tests/unit/samples/SampleRun.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

using namespace sampletest;

namespace {

std::vector<float> pixelsOf(const Sample& sample, const image::SectionIndex& section = {})
{
    const auto image = sample.open();
    const std::vector<float> pixels = readWhole(*image, section);
    EXPECT_FALSE(pixels.empty()) << image->lastError();
    return pixels;
}

} // namespace

TEST(Field, DependsOnTheSeedAlone)
{
    const std::string options = "--z 1 --time 1 --channels 2 --size 80x60 ";
    const Sample first(options), second(options), other(options + "--seed 11");
    EXPECT_EQ(readBytes(first.file), readBytes(second.file));
    EXPECT_NE(pixelsOf(first), pixelsOf(other));
}

// The field repeats after 512 pixels with new noise: half the mean squared difference of a pixel and its copy
// is the variance, which must be that of the photons plus 1.6 electrons squared of read noise.
TEST(Field, NoiseIsThatOfPhotonsAndCamera)
{
    constexpr std::size_t width = 1536, repeat = 512;
    const std::vector<float> pixels = pixelsOf(Sample("--z 1 --time 1 --channels 1 --size 1536x64"));
    double photons = 0, variance = 0;
    int count = 0;
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        // A third copy selects the dark pixels without bias.
        if (i % width < repeat || i % width >= 2 * repeat || pixels[i - repeat] > 120)
            continue;
        const double a = pixels[i], b = pixels[i + repeat];
        photons += (a + b) / 2 - 100;
        variance += (a - b) * (a - b) / 2;
        ++count;
    }
    ASSERT_GT(count, 5000);
    EXPECT_NEAR(photons / count, 10, 4);
    EXPECT_NEAR(variance / count, photons / count + 1.6 * 1.6, 0.8);
}

TEST(Field, DescribedSegmentMeetsEveryChannel)
{
    const Sample sample("--time 1 --describe");
    const std::string& described = sample.made.output;
    const std::size_t at = described.find("segment ");
    ASSERT_NE(at, std::string::npos);
    int x0 = -1, y0 = -1, x1 = -1, y1 = -1;
    std::istringstream(described.substr(at + 8)) >> x0 >> y0 >> x1 >> y1;
    ASSERT_TRUE(std::min({x0, y0, x1, y1}) >= 0 && std::max({x0, y0, x1, y1}) < 512);
    for (int c = 0; c < 4; ++c) {
        const std::vector<float> pixels = pixelsOf(sample, {2, c, 0, 0});
        std::vector<double> along;
        for (int i = 0; i <= 400; ++i)
            along.push_back(pixels[static_cast<std::size_t>((y0 + (y1 - y0) * i / 400) * 512 + x0 +
                                                            (x1 - x0) * i / 400)]);
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
