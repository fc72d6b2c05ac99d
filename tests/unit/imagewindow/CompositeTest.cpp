// SPDX-License-Identifier: MIT
#include "platform/imagewindow/render/Composite.h"
#include "platform/imagewindow/render/PanelSum.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>
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

TEST(Composite, GammaBendsWhatIsBetweenTheLimits)
{
    for (const float gamma : {0.2F, 0.45F, 0.8F, 1.0F, 2.2F, 5.0F}) {
        const auto table = gammaTable(gamma);
        EXPECT_EQ(table == nullptr, gamma == 1);
        for (const float value : {-1.0F, 0.0F, 0.5F, 3.0F, 20.0F, 99.0F, 100.0F, 500.0F}) {
            std::uint32_t pixel = 0;
            compose(std::vector<CompositeChannel>{{{&value, 1}, {0, 100}, palette[2], table}}, {&pixel, 1});
            const double share = std::clamp(value / 100.0, 0.0, 1.0);
            EXPECT_NEAR(pixel >> 8, 255 * std::pow(share, gamma), 1) << value << " with gamma " << gamma;
        }
    }
    EXPECT_EQ(*gammaTable(0), *gammaTable(minGamma)); // beyond what is possible
    EXPECT_EQ(*gammaTable(99), *gammaTable(maxGamma));
}

namespace {

std::vector<std::uint32_t> composed(const std::vector<CompositeChannel>& channels)
{
    std::vector<std::uint32_t> pixels(channels[0].values.size());
    compose(channels, pixels);
    return pixels;
}

std::vector<std::uint32_t> summed(PanelSum& sum, const std::vector<CompositeChannel>& channels,
                                  std::size_t moving)
{
    const std::size_t count = channels[0].values.size(), half = count / 2;
    std::vector<std::uint32_t> pixels(count);
    sum.begin(channels, moving, count);
    for (const auto& [first, number] : {std::pair{half, count - half}, {std::size_t{0}, half}})
        sum.compose(first, std::span(pixels).subspan(first, number));
    return pixels;
}

} // namespace

// Whatever the user moves in whatever order, the picture is that of all channels.
TEST(Composite, TheSumOfTheOthersIsNeverOutOfDate)
{
    std::vector<float> values(3 * 4000);
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] = static_cast<float>(i * 37 % 4096);
    const auto third = [&](std::size_t i) { return std::span<const float>(values).subspan(i * 4000, 4000); };
    std::vector<CompositeChannel> channels{{third(0), {0, 3000}, palette[1]},
                                           {third(1), {500, 2500}, palette[0]},
                                           {third(2), {0, 4000}, Rgb{100, 200, 10}}};
    PanelSum sum;
    const auto check = [&](std::size_t moving, const char* what) {
        EXPECT_EQ(summed(sum, channels, moving), composed(channels)) << what;
    };
    check(99, "none moves");
    for (const std::size_t moving : {0U, 1U, 1U, 2U, 0U})
        for (float high = 1000; high < 4000; high += 1000) {
            channels[moving].limits.high = high;
            check(moving, "limits");
        }
    channels[0].gamma = gammaTable(0.5F);
    check(0, "gamma");
    check(0, "gamma again");
    channels[1].color = palette[4];
    check(0, "a colour of the others");
    check(0, "and again");
    std::reverse(values.begin(), values.end());
    sum.forget();
    check(0, "other values");
    channels.pop_back();
    check(0, "one less");
    check(99, "one less and none moves");
}
