// SPDX-License-Identifier: MIT
// Which blocks of a section are read for which lines, and how often.
#include "batch/measure/Sampler.h"
#include "tests/unit/batch/PixelImage.h"

#include <gtest/gtest.h>

#include <random>
#include <set>
#include <thread>
#include <vector>

namespace {

using namespace batch;
using batchtest::PixelImage;

struct Tiled : PixelImage {
    explicit Tiled(int tile) : PixelImage(2048, 2048)
    {
        block = {tile, tile};
        for (int y = 0; y < 2048; ++y)
            for (int x = 0; x < 2048; ++x)
                at(x, y) = static_cast<float>(x + 3000 * y);
    }
};

std::set<std::pair<int, int>> firstPixels(const PixelImage& image)
{
    std::set<std::pair<int, int>> corners;
    for (const image::PixelRect& rect : image.reads)
        EXPECT_TRUE(corners.emplace(rect.xFirst, rect.yFirst).second) << "a block is read again";
    return corners;
}

TEST(SectionPixels, readsTheBlocksOfALineAndNoOthers)
{
    Tiled image(256);
    SectionPixels section(image, {});
    Sampler sampler;
    sampler.digital(section, Path{{{100, 100}, {400, 100}}, 0});
    EXPECT_EQ(firstPixels(image), (std::set<std::pair<int, int>>{{0, 0}, {256, 0}}));
    sampler.band(section, Path{{{100, 250}, {200, 250}}, 20}, Reduce::Mean);
    EXPECT_EQ(firstPixels(image), (std::set<std::pair<int, int>>{{0, 0}, {256, 0}, {0, 256}}));
}

TEST(SectionPixels, readsEachBlockOnceForManyJobs)
{
    Tiled image(128);
    SectionPixels section(image, {});
    const auto measure = [&](unsigned seed) {
        std::mt19937 random(seed);
        Sampler sampler;
        for (int i = 0; i < 200; ++i) {
            const auto at = [&] { return static_cast<double>(random() % 2048); };
            const Profile& profile = sampler.digital(section, Path{{{at(), at()}, {at(), at()}}, 0});
            for (std::size_t k = 0; k < profile.size(); ++k)
                ASSERT_EQ(profile.values[k],
                          static_cast<float>(profile.pixels[k].x + 3000 * profile.pixels[k].y));
        }
    };
    // The image of the test notes reads without a lock, so blocks are there before the threads start.
    measure(1);
    section.require(WalkRect{0, 2047, 0, 2047});
    const std::size_t reads = firstPixels(image).size();
    EXPECT_EQ(reads, 256U);
    std::vector<std::jthread> jobs;
    for (unsigned seed = 2; seed < 6; ++seed)
        jobs.emplace_back(measure, seed);
    jobs.clear();
    EXPECT_EQ(image.reads.size(), reads);
}

TEST(SectionPixels, saysWhyABlockCannotBeRead)
{
    PixelImage image(100, 100);
    image.broken = true;
    SectionPixels section(image, {});
    Sampler sampler;
    EXPECT_THROW(sampler.digital(section, Path{{{1, 1}, {9, 9}}, 0}), MeasureError);
    EXPECT_THROW(SectionPixels(image, {1, 0, 0, 0}), MeasureError);
}

TEST(DigitalLine, joinsPiecesAndRefusesWhatIsNotInTheImage)
{
    PixelImage image(30, 30);
    SectionPixels section(image, {});
    Sampler sampler;
    const Profile& profile = sampler.digital(section, Path{{{2.9, 3.1}, {5, 3}, {5, 6}}, 0});
    EXPECT_EQ(profile.pixels,
              (std::vector<PixelPoint>{{2, 3}, {3, 3}, {4, 3}, {5, 3}, {5, 4}, {5, 5}, {5, 6}}));
    EXPECT_THROW(sampler.digital(section, Path{{{2, 3}, {30, 3}}, 0}), MeasureError);
    EXPECT_THROW(sampler.digital(section, Path{{{2, 3}, {2, -0.5}}, 0}), MeasureError);
    EXPECT_THROW(sampler.digital(section, Path{{{2.1, 3.1}, {2.9, 3.9}}, 0}), MeasureError);
}

} // namespace
