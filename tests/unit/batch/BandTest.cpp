// SPDX-License-Identifier: MIT
// Bands by what must hold of every band, and by small ones that can be counted.
#include "batch/measure/Sampler.h"
#include "tests/Rows.h"
#include "tests/unit/batch/PixelImage.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numeric>
#include <random>
#include <vector>

namespace {

using namespace batch;
using batchtest::PixelImage;

struct Banded {
    std::vector<double> values;
    std::vector<std::int32_t> counts;
    std::int64_t pixels;
    friend bool operator==(const Banded& a, const Banded& b)
    {
        const auto same = [](double x, double y) { return x == y || (std::isnan(x) && std::isnan(y)); };
        return a.counts == b.counts && a.pixels == b.pixels && std::ranges::equal(a.values, b.values, same);
    }
};

Banded bandOf(PixelImage& image, std::vector<Point> points, double width, Reduce reduce)
{
    SectionPixels section(image, {});
    Sampler sampler;
    try {
        const Profile& profile = sampler.band(section, Path{std::move(points), width}, reduce);
        return {profile.exact, profile.counts, profile.pixelCount};
    } catch (const MeasureError&) {
        return {{}, {}, 0}; // it holds no pixel
    }
}

// Values that no sum of a few keeps exactly in single precision.
struct Speckled : PixelImage {
    Speckled() : PixelImage(60, 50)
    {
        std::mt19937 random(7);
        for (float& value : values)
            value = static_cast<float>(random()) / 3.0f;
    }
};

// By 90 degrees.
struct Turned : PixelImage {
    explicit Turned(PixelImage& image) : PixelImage(image.description.height, image.description.width)
    {
        for (int y = 0; y < image.description.height; ++y)
            for (int x = 0; x < image.description.width; ++x)
                at(image.description.height - 1 - y, x) = image.at(x, y);
    }
};

// Points on a grid of quarter pixels, where ties are frequent, some of them outside the image.
std::vector<Point> somePoints(std::mt19937& random, std::size_t count)
{
    std::vector<Point> points;
    for (std::size_t i = 0; i < count; ++i)
        points.push_back(
            {static_cast<int>(random() % 300) / 4.0 - 8, static_cast<int>(random() % 260) / 4.0 - 8});
    return points;
}

struct Reduction {
    const char* name;
    Reduce reduce;
    std::size_t points;
};
class EachReduction : public testing::TestWithParam<Reduction> {};

TEST_P(EachReduction, isTheSameWhenImageAndLineAreTurned)
{
    Speckled image;
    Turned quarter(image);
    std::mt19937 random(3);
    for (int round = 0; round < 300; ++round) {
        const std::vector<Point> points = somePoints(random, GetParam().points);
        const double width = static_cast<int>(random() % 40 + 1) / 4.0;
        std::vector<Point> there;
        for (const Point& point : points)
            there.push_back({50 - point.y, point.x});
        ASSERT_EQ(bandOf(image, points, width, GetParam().reduce),
                  bandOf(quarter, there, width, GetParam().reduce))
            << "round " << round;
    }
}

INSTANTIATE_TEST_SUITE_P(Lines, EachReduction,
                         testing::Values(Reduction{"mean", Reduce::Mean, 2},
                                         Reduction{"median", Reduce::Median, 2},
                                         Reduction{"max", Reduce::Max, 2}, Reduction{"sum", Reduce::Sum, 2},
                                         Reduction{"meanOfPolylines", Reduce::Mean, 5},
                                         Reduction{"sumOfPolylines", Reduce::Sum, 4}),
                         RowName());

// A pixel's place in a band, in whole numbers: coordinates are multiples of a quarter pixel, so distances
// along and across times the length are multiples of 1/64.
bool holds(const Point& from, const Point& to, double width, int x, int y)
{
    const auto units = [](double v) { return static_cast<std::int64_t>(std::llround(v * 8)); };
    const std::int64_t dx = units(to.x - from.x), dy = units(to.y - from.y);
    const std::int64_t px = units(x + 0.5 - from.x), py = units(y + 0.5 - from.y), w = units(width);
    const std::int64_t s = px * dx + py * dy, d = py * dx - px * dy, length2 = dx * dx + dy * dy;
    const bool near = d > 0 ? 4 * d * d <= w * w * length2 : 4 * d * d < w * w * length2;
    return s >= 0 && s < length2 && near;
}

TEST(Band, countsEachOfItsPixelsOnceAndNoOther)
{
    Speckled image;
    std::mt19937 random(5);
    for (int round = 0; round < 300; ++round) {
        const std::vector<Point> line = somePoints(random, 2);
        const double width = static_cast<int>(random() % 60 + 1) / 8.0 * 2;
        double sum = 0;
        std::int64_t pixels = 0;
        for (int y = 0; y < 50; ++y)
            for (int x = 0; x < 60; ++x)
                if (holds(line[0], line[1], width, x, y)) {
                    ++pixels;
                    sum += double{image.at(x, y)};
                }
        const Banded band = bandOf(image, line, width, Reduce::Sum);
        ASSERT_EQ(band.pixels, pixels) << "round " << round;
        EXPECT_EQ(std::accumulate(band.counts.begin(), band.counts.end(), std::int64_t{0}), pixels);
        double total = 0;
        for (const double value : band.values)
            total += std::isnan(value) ? 0 : value;
        EXPECT_NEAR(total, sum, 1e-9 * std::fabs(sum) + 1e-9);
    }
}

TEST(Band, sharesNoPixelWithThoseBesideIt)
{
    PixelImage image(80, 80);
    for (int i = 0; i < 6400; ++i)
        image.values[static_cast<std::size_t>(i)] = 1;
    std::mt19937 random(11);
    for (int round = 0; round < 100; ++round) {
        // Directions of whole length, so that the bands beside each other meet exactly.
        const double scale = static_cast<int>(random() % 4 + 4);
        const double dx = (round % 2 ? 3 : -4) * scale, dy = (round % 2 ? 4 : 3) * scale;
        const Point from{40 - dx / 2, 40 - dy / 2};
        const double nx = -dy / std::hypot(dx, dy), ny = dx / std::hypot(dx, dy);
        const auto shifted = [&](double by) {
            return std::vector<Point>{{from.x + nx * by, from.y + ny * by},
                                      {from.x + dx + nx * by, from.y + dy + ny * by}};
        };
        const auto pixels = [&](double by, double width) {
            return bandOf(image, shifted(by), width, Reduce::Sum).pixels;
        };
        EXPECT_EQ(pixels(-2.5, 5) + pixels(2.5, 5), pixels(0, 10)) << "round " << round;
    }
}

struct Small {
    const char* name;
    std::vector<Point> points;
    double width;
    std::vector<std::int32_t> counts;
    std::vector<double> sums; // of pixels with the value x + 100 y; -1: an empty bin
};
class SmallBand : public testing::TestWithParam<Small> {};

TEST_P(SmallBand, hasTheseBins)
{
    PixelImage image(20, 10);
    for (int y = 0; y < 10; ++y)
        for (int x = 0; x < 20; ++x)
            image.at(x, y) = static_cast<float>(x + 100 * y);
    Banded band = bandOf(image, GetParam().points, GetParam().width, Reduce::Sum);
    for (double& value : band.values)
        value = std::isnan(value) ? -1 : value;
    EXPECT_EQ(band.counts, GetParam().counts);
    EXPECT_EQ(band.values, GetParam().sums);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, SmallBand,
    testing::Values(
        Small{"throughCentres", {{2.5, 3.5}, {5.5, 3.5}}, 1, {1, 1, 1}, {302, 303, 304}},
        Small{"onAnEdgeTakesTheRight", {{2, 3}, {5, 3}}, 1, {1, 1, 1}, {302, 303, 304}},
        Small{"backwardsOnAnEdgeTakesTheOther", {{5, 3}, {2, 3}}, 1, {1, 1, 1}, {204, 203, 202}},
        Small{"evenWidthThroughCentres", {{2.5, 3.5}, {4.5, 3.5}}, 2, {2, 2}, {704, 706}},
        Small{"endsInAPartOfABin", {{2, 3.5}, {3.75, 3.5}}, 1, {1, 1}, {302, 303}},
        Small{"diagonalSkipsBins", {{0.5, 0.5}, {3.5, 3.5}}, 1, {1, 1, 1, 0, 0}, {0, 101, 202, -1, -1}},
        Small{"leavesTheImage", {{18.5, 9.5}, {22.5, 9.5}}, 3, {2, 2, 0, 0}, {1736, 1738, -1, -1}},
        // Around the corner (5, 3): the pixels of its outer side within 1.5 count for the corner.
        Small{"bend", {{2.5, 3.5}, {5.5, 3.5}, {5.5, 5.5}}, 1, {1, 1, 1, 1, 1}, {302, 303, 304, 305, 405}}),
    RowName());

TEST(Band, ofAPolylineCountsNoPixelTwice)
{
    PixelImage image(60, 50);
    for (float& value : image.values)
        value = 1;
    std::mt19937 random(13);
    for (int round = 0; round < 200; ++round) {
        const Banded band = bandOf(image, somePoints(random, 6), 9, Reduce::Max);
        EXPECT_LE(band.pixels, 3000);
        const Banded sum = bandOf(image, somePoints(random, 6), 500, Reduce::Sum);
        EXPECT_LE(std::accumulate(sum.values.begin(), sum.values.end(), 0.0,
                                  [](double a, double b) { return a + (std::isnan(b) ? 0 : b); }),
                  3000);
    }
}

TEST(Band, ofAStraightPolylineIsThatOfTheLine)
{
    Speckled image;
    const Banded whole = bandOf(image, {{4.25, 7.5}, {52.25, 43.5}}, 7, Reduce::Median);
    const Banded pieces =
        bandOf(image, {{4.25, 7.5}, {20.25, 19.5}, {28.25, 25.5}, {52.25, 43.5}}, 7, Reduce::Median);
    EXPECT_GT(whole.pixels, 300);
    EXPECT_EQ(whole, pieces);
}

TEST(Band, refusesWhatCannotBeWorkedOff)
{
    PixelImage image(2000, 2000);
    std::vector<Point> zigzag;
    for (int i = 0; i < 100000; ++i)
        zigzag.push_back({i % 2 * 1999.0, i % 1999 * 1.0});
    SectionPixels section(image, {});
    Sampler sampler;
    EXPECT_THROW(sampler.band(section, Path{zigzag, 1e6}, Reduce::Mean), MeasureError);
}

} // namespace
