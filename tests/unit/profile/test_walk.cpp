#include "profile/truncation.h"
#include "profile/walk.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

using ::testing::ElementsAreArray;

static bool operator==(PixelPoint a, PixelPoint b)
{
    return a.x == b.x && a.y == b.y;
}

static std::vector<PixelPoint> walk(PixelPoint from, PixelPoint to)
{
    std::vector<PixelPoint> points(
        static_cast<size_t>(std::max(std::abs(to.x - from.x), std::abs(to.y - from.y))) + 1);
    EXPECT_EQ(walkLine(from, to, points.data()), static_cast<int>(points.size()));
    return points;
}

// Worked by hand, with ties of the error term, in every octant and on the axes and diagonals.
TEST(Walk, TakesThePixelsOfTheDigitalLine)
{
    struct Case {
        PixelPoint from, to;
        std::vector<PixelPoint> expected;
    };
    const Case cases[] = {
        {{0, 0},  {4, 2},   {{0, 0}, {1, 1}, {2, 1}, {3, 2}, {4, 2}}        },
        {{0, 0},  {2, 4},   {{0, 0}, {1, 1}, {1, 2}, {2, 3}, {2, 4}}        },
        {{0, 0},  {-2, 4},  {{0, 0}, {-1, 1}, {-1, 2}, {-2, 3}, {-2, 4}}    },
        {{0, 0},  {-4, 2},  {{0, 0}, {-1, 1}, {-2, 1}, {-3, 2}, {-4, 2}}    },
        {{0, 0},  {-4, -2}, {{0, 0}, {-1, -1}, {-2, -1}, {-3, -2}, {-4, -2}}},
        {{0, 0},  {-2, -4}, {{0, 0}, {-1, -1}, {-1, -2}, {-2, -3}, {-2, -4}}},
        {{0, 0},  {2, -4},  {{0, 0}, {1, -1}, {1, -2}, {2, -3}, {2, -4}}    },
        {{0, 0},  {4, -2},  {{0, 0}, {1, -1}, {2, -1}, {3, -2}, {4, -2}}    },
        {{4, 2},  {0, 0},   {{4, 2}, {3, 1}, {2, 1}, {1, 0}, {0, 0}}        },
        {{7, 5},  {3, 5},   {{7, 5}, {6, 5}, {5, 5}, {4, 5}, {3, 5}}        },
        {{2, -1}, {2, 2},   {{2, -1}, {2, 0}, {2, 1}, {2, 2}}               },
        {{0, 0},  {3, -3},  {{0, 0}, {1, -1}, {2, -2}, {3, -3}}             },
        {{0, 0},  {5, 1},   {{0, 0}, {1, 0}, {2, 0}, {3, 1}, {4, 1}, {5, 1}}},
        {{9, 9},  {9, 9},   {{9, 9}}                                        },
    };
    for (const Case& c : cases)
        EXPECT_THAT(walk(c.from, c.to), ElementsAreArray(c.expected)) << c.to.x << ", " << c.to.y;
}

TEST(Walk, StaysWithinHalfAPixelOfTheLine)
{
    std::mt19937 random(1);
    std::uniform_int_distribution<int> coordinate(-300, 300);
    for (int round = 0; round < 500; round++) {
        PixelPoint from{coordinate(random), coordinate(random)}, to{coordinate(random), coordinate(random)};
        std::vector<PixelPoint> points = walk(from, to);
        ASSERT_TRUE(points.front() == from && points.back() == to);
        double gaps = std::max<double>(1.0, static_cast<double>(points.size()) - 1);
        for (size_t i = 0; i < points.size(); i++) {
            double along = static_cast<double>(i) / gaps;
            ASSERT_LE(std::abs(from.x + along * (to.x - from.x) - points[i].x), 0.5 + 1e-9);
            ASSERT_LE(std::abs(from.y + along * (to.y - from.y) - points[i].y), 0.5 + 1e-9);
        }
    }
}

TEST(Walk, RunsAreTheLongestThatFit)
{
    const PixelPoint ends[] = {
        {999,  700  },
        {-40,  900  },
        {1500, 0    },
        {0,    -1500},
        {3,    2    }
    };
    for (PixelPoint to : ends)
        for (int64_t limit : {int64_t{1}, int64_t{7}, int64_t{1000}, int64_t{100000}, int64_t{1} << 40}) {
            std::vector<PixelPoint> points = walk({0, 0}, to);
            auto count = static_cast<int32_t>(points.size());
            for (int32_t first = 0, end = 0; first < count; first = end) {
                end = runEnd(points.data(), count, first, limit);
                ASSERT_GT(end, first);
                auto pixelsTo = [&](int32_t i) {
                    return boundingRect(points[static_cast<size_t>(first)], points[static_cast<size_t>(i)])
                        .pixels();
                };
                ASSERT_LE(pixelsTo(end - 1), limit);
                ASSERT_TRUE(end == count || pixelsTo(end) > limit);
            }
        }
}

TEST(Truncation, GoesTowardZeroAndIsDefinedEverywhere)
{
    const float infinity = std::numeric_limits<float>::infinity();
    const struct {
        float value;
        int32_t expected;
    } cases[] = {
        {10.7f,         10        },
        {-0.5f,         0         },
        {-3.99f,        -3        },
        {2147483520.0f, 2147483520},
        {3e9f,          INT32_MAX },
        {-3e9f,         INT32_MIN },
        {infinity,      INT32_MAX },
        {-infinity,     INT32_MIN },
        {std::nanf(""), 0         },
    };
    for (const auto& c : cases)
        EXPECT_EQ(truncateToInt(c.value), c.expected) << c.value;
    EXPECT_EQ(truncateToWide(-infinity), -truncateToWide(infinity));
}
