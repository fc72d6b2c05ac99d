// SPDX-License-Identifier: MIT
// Colours of labels, judged by another measure than the one that chose them: distances in CIELAB, for usual
// eyes and for two kinds of colour blindness (Vienot 1999).
#include "platform/imagewindow/render/LabelColors.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <set>
#include <vector>

using namespace viewer;
using base::Rgb;

namespace {

using Triple = std::array<double, 3>;

double linear(int component)
{
    const double share = component / 255.0;
    return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
}

// Linear red, green and blue as such an eye takes them for.
Triple usual(const Triple& light)
{
    return light;
}
Triple withoutLong(const Triple& light)
{
    const double yellow = 0.11238 * light[0] + 0.88762 * light[1];
    return {yellow, yellow, 0.00401 * light[0] - 0.00401 * light[1] + light[2]};
}
Triple withoutMiddle(const Triple& light)
{
    const double yellow = 0.29275 * light[0] + 0.70725 * light[1];
    return {yellow, yellow, -0.02234 * light[0] + 0.02234 * light[1] + light[2]};
}

Triple labOf(const Rgb& color, Triple (*eye)(const Triple&))
{
    const Triple light = eye({linear(color.red), linear(color.green), linear(color.blue)});
    const auto f = [](double t) { return t > 0.008856 ? std::cbrt(t) : 7.787 * t + 16.0 / 116; };
    const double x = f((0.4124 * light[0] + 0.3576 * light[1] + 0.1805 * light[2]) / 0.9505);
    const double y = f(0.2126 * light[0] + 0.7152 * light[1] + 0.0722 * light[2]);
    const double z = f((0.0193 * light[0] + 0.1192 * light[1] + 0.9505 * light[2]) / 1.089);
    return {116 * y - 16, 500 * (x - y), 200 * (y - z)};
}

double distance(const Rgb& a, const Rgb& b, Triple (*eye)(const Triple&))
{
    const Triple first = labOf(a, eye), second = labOf(b, eye);
    return std::hypot(first[0] - second[0], first[1] - second[1], first[2] - second[2]);
}

const struct {
    const char* name;
    Triple (*eye)(const Triple&);
} eyes[] = {{"usual", usual}, {"without long cones", withoutLong}, {"without middle cones", withoutMiddle}};

} // namespace

TEST(LabelColors, NeighbouringNumbersAreToldApartByAllEyes)
{
    constexpr double clearly = 20; // 2.3 is just to be seen
    for (const auto& row : eyes)
        for (int label = 1; label <= 2 * labelColorCount; ++label)
            for (int step = 1; step <= 2; ++step)
                EXPECT_GT(distance(labelColor(label), labelColor(label + step), row.eye), clearly)
                    << row.name << ": " << label << " and " << label + step;
}

TEST(LabelColors, ZeroIsBlackAndNoLabelIsDark)
{
    EXPECT_EQ(labelColor(0), (Rgb{0, 0, 0}));
    for (const auto& row : eyes)
        for (int label = 1; label <= labelColorCount; ++label)
            EXPECT_GT(labOf(labelColor(label), row.eye)[0], 35) << row.name << ": " << label;
}

TEST(LabelColors, NoTwoInARoundAreAlike)
{
    std::set<std::uint32_t> seen;
    std::vector<float> labels;
    for (int label = 1; label <= labelColorCount; ++label)
        labels.push_back(static_cast<float>(label));
    std::vector<std::uint32_t> pixels(labels.size());
    composeLabels(labels, pixels);
    for (const std::uint32_t pixel : pixels)
        EXPECT_TRUE(seen.insert(pixel).second) << pixel;
}

TEST(LabelColors, AnyNumberHasOne)
{
    const float values[] = {0, -0.0F, 1, -1, 65535, 4294967296.0F, 3e38F, -3e38F, NAN, INFINITY};
    std::uint32_t pixels[std::size(values)];
    composeLabels(values, pixels);
    const Rgb first = labelColor(1), last = labelColor(65535);
    const auto packed = [](const Rgb& c) {
        return static_cast<std::uint32_t>(c.red << 16 | c.green << 8 | c.blue);
    };
    EXPECT_EQ(pixels[0], 0U);
    EXPECT_EQ(pixels[1], 0U);
    EXPECT_EQ(pixels[2], packed(first));
    EXPECT_EQ(pixels[3], packed(first));
    EXPECT_EQ(pixels[4], packed(last));
    EXPECT_NE(pixels[5], 0U);
    for (const int other : {6, 7, 8, 9})
        EXPECT_EQ(pixels[other], 0U) << other;
}
