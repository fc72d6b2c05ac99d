// SPDX-License-Identifier: MIT
#include "profile/Fwhm.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace {

using Samples = std::vector<float>;

float width(const Samples& samples, float step = 1.0f)
{
    return peakFwhm(samples.data(), static_cast<int>(samples.size()), step);
}

} // namespace

TEST(Fwhm, MeasuresWorkedPeaks)
{
    const struct {
        const char* name;
        Samples samples;
        float expected;
    } cases[] = {
        {"triangle", {0, 5, 10, 5, 0, 0, 0, 0, 0, 0, 0}, 2},
        {"first sample is highest", {10, 2, 5, 2, 2, 2, 2, 2, 2, 2, 2}, 1},
        {"falling", {11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1}, 0},
        {"rising to the end", {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10}, 0},
        {"flat", {4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4}, 0},
        {"earliest of equal maxima", {0, 8, 0, 0, 0, 0, 8, 8, 8, 0, 0}, 1},
        {"at the half level", {0, 5, 5, 10, 5, 5, 0, 0, 0, 0, 0}, 4},
        {"plateau", {0, 0, 6, 6, 6, 6, 0, 0, 0, 0, 0}, 4},
        {"negative", {-9, -9, -1, -9, -9, -9, -9, -9, -9, -9, -9}, 1},
        {"no left side", {8, 9, 3, 3, 3, 3, 3, 3, 3, 3, 3}, 0},
    };
    for (const auto& c : cases) {
        EXPECT_FLOAT_EQ(width(c.samples), c.expected) << c.name;
        EXPECT_FLOAT_EQ(width(c.samples, 0.25f), c.expected * 0.25f) << c.name;
    }
}

namespace {

// The same measurement by the definition, in double: no shared code, other order of work.
std::optional<double> referenceWidth(const Samples& v, double step)
{
    std::optional<size_t> peak;
    float lowest = v[0];
    for (size_t i = 1; i < v.size(); i++) {
        bool newMinimum = v[i] < lowest;
        lowest = std::min(lowest, v[i]);
        if (!newMinimum && (!peak || v[i] > v[*peak]))
            peak = i;
    }
    if (!peak)
        return {};
    auto half = static_cast<float>((static_cast<double>(lowest) + v[*peak]) / 2);
    auto below = [&](float value) { return value < half; };
    auto right = std::find_if(v.begin() + static_cast<long>(*peak), v.end(), below);
    auto left = std::find_if(v.rend() - static_cast<long>(*peak), v.rend(), below);
    if (right == v.end() || left == v.rend())
        return {};
    double l = static_cast<double>(left.base() - v.begin()) - 1, r = static_cast<double>(right - v.begin());
    double fromLeft = (half - double{*left}) / (double{*left.base()} - *left);
    double fromRight = (half - double{*right}) / (double{*(right - 1)} - *right);
    return std::abs((r - fromRight) - (l + fromLeft)) * step;
}

Samples makePeak(std::mt19937& random)
{
    std::uniform_real_distribution<float> unit(0, 1);
    auto n = static_cast<size_t>(11 + unit(random) * 500);
    float center = unit(random) * static_cast<float>(n), sigma = 0.4f + unit(random) * unit(random) * 60;
    float base = unit(random) * 200, height = 1 + unit(random) * 60000,
          noise = unit(random) < 0.5f ? 0 : height / 8;
    bool whole = unit(random) < 0.5f, clipped = unit(random) < 0.3f; // integers, plateaus, equal maxima
    Samples samples(n);
    for (size_t i = 0; i < n; i++) {
        float d = (static_cast<float>(i) - center) / sigma;
        float value = base + height * std::exp(-d * d / 2) + noise * unit(random);
        value = clipped ? std::min(value, base + height * 0.7f) : value;
        samples[i] = whole ? std::floor(value) : value;
    }
    return samples;
}

} // namespace

TEST(Fwhm, AgreesWithTheDefinitionOnGeneratedPeaks)
{
    std::mt19937 random(20240607);
    int measured = 0;
    for (int round = 0; round < 3000; round++) {
        Samples samples = makePeak(random);
        std::optional<double> expected = referenceWidth(samples, 0.1083);
        measured += expected.has_value();
        float found = width(samples, 0.1083f);
        // The two crossing positions carry single precision of up to n * step each.
        double tolerance = 4e-7 * static_cast<double>(samples.size()) * 0.1083 * 8;
        ASSERT_NEAR(found, expected.value_or(0), tolerance) << "round " << round;
        ASSERT_EQ(found > 0, expected.value_or(0) > 0) << "round " << round;
    }
    EXPECT_GT(measured, 1000);
}

TEST(Fwhm, DividesTheLengthByTheNumberOfSamples)
{
    EXPECT_FLOAT_EQ(sampleStep(0, 0, 30, 40, 0.5f, 50), 0.5f);
    EXPECT_FLOAT_EQ(sampleStep(10.5f, 2, 0.5f, 2, 0.1f, 11), 1.0f / 11);
}

TEST(Fwhm, TextIsCutAtItsBuffer)
{
    const struct {
        float wavelength, fwhm;
        std::string expected;
    } cases[] = {
        {528, 0.4317f, "FWHM [528]: 0.4317 \xB5m"},
        {0, 12.34567f, "FWHM [0]: 12.3457 \xB5m"},
        {1e20f, 1, "FWHM [100000002004087734272]:"},
    };
    for (const auto& c : cases) {
        char text[fwhmTextSize];
        formatFwhm(c.wavelength, c.fwhm, text);
        EXPECT_EQ(std::string(text), c.expected);
    }
}
