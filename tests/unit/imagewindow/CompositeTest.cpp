// SPDX-License-Identifier: MIT
#include "platform/imagewindow/render/Composite.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

using namespace viewer;

TEST(Composite, BrightnessIsLinearBetweenTheLimits)
{
    const struct {
        float value, low, high;
        int expected;
    } rows[] = {
        {100, 100, 355, 0},
        {355, 100, 355, 255},
        {101, 100, 355, 1},
        {227, 100, 355, 127},
        {99, 100, 355, 0},     // below
        {1e9F, 100, 355, 255}, // above
        {-50, -100, 0, 128},   // 127.5 rounds up
        {0.25F, 0, 0.5F, 128},
        {std::nanf(""), 0, 1, 0},
        {std::numeric_limits<float>::infinity(), 0, 1, 255},
        {-std::numeric_limits<float>::infinity(), 0, 1, 0},
        {7, 7, 7, 0}, // a step at the only value
        {7.5F, 7, 7, 255},
    };
    for (const auto& row : rows)
        EXPECT_EQ(brightness(row.value, {row.low, row.high}), row.expected)
            << row.value << " between " << row.low << " and " << row.high;
}

TEST(Composite, AddsTintedChannelsAndSaturates)
{
    const float full[] = {255}, half[] = {128}, none[] = {0};
    const ContrastLimits all{0, 255};
    const struct {
        const char* what;
        std::vector<CompositeChannel> channels;
        std::uint32_t expected;
    } rows[] = {
        {"nothing", {}, 0x000000},
        {"one", {{half, all, palette[1]}}, 0x800000},
        {"red and green", {{full, all, palette[1]}, {half, all, palette[2]}}, 0xFF8000},
        {"white over red", {{half, all, palette[1]}, {half, all, palette[0]}}, 0xFF8080},
        {"saturated", {{full, all, palette[0]}, {half, all, palette[0]}}, 0xFFFFFF},
        {"black adds nothing", {{none, all, palette[0]}, {half, all, palette[5]}}, 0x800080},
        {"a colour of its own", {{half, all, Rgb{100, 200, 10}}}, 0x326405},
    };
    for (const auto& row : rows) {
        std::uint32_t pixel = 0xABCDEF;
        compose(row.channels, {&pixel, 1});
        EXPECT_EQ(pixel, row.expected) << row.what;
    }
}

// More pixels than one block holds, and five channels: every pixel must come from its own values.
TEST(Composite, LongRowsKeepEveryPixelInItsPlace)
{
    std::vector<float> values(5001);
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] = static_cast<float>(i % 256);
    const std::vector<CompositeChannel> channels(5, {values, {0, 2550}, palette[2]});
    std::vector<std::uint32_t> pixels(values.size());
    compose(channels, pixels);
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        const std::uint32_t one = brightness(values[i], {0, 2550});
        ASSERT_EQ(pixels[i], 5 * one << 8) << i;
    }
}
