// SPDX-License-Identifier: MIT
// Elementary functions and random numbers that give the same bits on every machine, so that a seed always
// makes the same image. They use only operations that IEEE 754 defines exactly (the C library's exp, log and
// sin, and the standard library's distributions, differ between systems); the target is compiled without
// contraction to fused operations. Accuracy is about 1e-9, plenty for drawing cells.
#pragma once

#include <array>
#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <numbers>
#include <random>

namespace sample {

// sin(2 pi turns).
inline double sineOfTurns(double turns)
{
    double t = turns - std::floor(turns + 0.5);
    if (t > 0.25)
        t = 0.5 - t;
    else if (t < -0.25)
        t = -0.5 - t;
    const double x = 2 * std::numbers::pi * t, x2 = x * x;
    double sum = 0;
    for (int n = 15; n >= 3; n -= 2)
        sum = (1 + sum) * (-x2 / (n * (n - 1)));
    return x * (1 + sum);
}

inline double cosineOfTurns(double turns)
{
    return sineOfTurns(turns + 0.25);
}

// e to the x, for |x| < 700.
inline double exponential(double x)
{
    const double n = std::floor(x / std::numbers::ln2 + 0.5);
    const double r = x - n * std::numbers::ln2;
    double sum = 1;
    for (int k = 12; k >= 1; --k)
        sum = 1 + sum * r / k;
    return std::ldexp(sum, static_cast<int>(n));
}

// Natural logarithm of a positive number.
inline double logarithm(double x)
{
    int exponent = 0;
    double mantissa = std::frexp(x, &exponent);
    if (mantissa < 1 / std::numbers::sqrt2) {
        mantissa *= 2;
        --exponent;
    }
    const double s = (mantissa - 1) / (mantissa + 1), s2 = s * s;
    double sum = 0;
    for (int k = 15; k >= 1; k -= 2)
        sum = sum * s2 + 1.0 / k;
    return 2 * s * sum + exponent * std::numbers::ln2;
}

inline double gaussian(double x, double sigma)
{
    return exponential(-std::fmin(x * x / (2 * sigma * sigma), 600.0));
}

// 0 below low, 1 above high, smooth between.
inline double smoothStep(double low, double high, double x)
{
    const double t = std::fmin(std::fmax((x - low) / (high - low), 0.0), 1.0);
    return t * t * (3 - 2 * t);
}

// Spreads the bits of an integer (the finaliser of SplitMix64).
constexpr std::uint64_t mixBits(std::uint64_t x)
{
    x += 0x9e3779b97f4a7c15u;
    x = (x ^ (x >> 30)) * 0xbf58476d1ce4e5b9u;
    x = (x ^ (x >> 27)) * 0x94d049bb133111ebu;
    return x ^ (x >> 31);
}

// One stream of random numbers; equal keys give equal streams.
class Random {
public:
    Random(std::initializer_list<std::uint64_t> keys)
    {
        std::uint64_t seed = 0;
        for (std::uint64_t key : keys)
            seed = mixBits(seed ^ mixBits(key));
        engine.seed(seed);
    }

    std::uint64_t bits() { return engine(); }
    // 0 <= result < 1.
    double uniform() { return static_cast<double>(engine() >> 11) * 0x1p-53; }
    double uniform(double low, double high) { return low + (high - low) * uniform(); }
    int below(int count) { return static_cast<int>(uniform() * count); }

    // Mean 0, standard deviation 1 (Marsaglia's polar method).
    double normal()
    {
        if (hasSpare) {
            hasSpare = false;
            return spare;
        }
        double a = 0, b = 0, s = 0;
        do {
            a = 2 * uniform() - 1;
            b = 2 * uniform() - 1;
            s = a * a + b * b;
        } while (s >= 1 || s == 0);
        const double factor = std::sqrt(-2 * logarithm(s) / s);
        spare = b * factor;
        hasSpare = true;
        return a * factor;
    }

private:
    std::mt19937_64 engine;
    double spare = 0;
    bool hasSpare = false;
};

// Smooth random values between 0 and 1 over space, with features of about unit size.
inline double valueNoise(double x, double y, double z, std::uint64_t seed)
{
    const double fx = std::floor(x), fy = std::floor(y), fz = std::floor(z);
    const auto lattice = [&](int dx, int dy, int dz) {
        const auto part = [](double v, int d) {
            return static_cast<std::uint64_t>(static_cast<std::int64_t>(v) + d) & 0x1fffffu;
        };
        const std::uint64_t key = part(fx, dx) << 42 | part(fy, dy) << 21 | part(fz, dz);
        return static_cast<double>(mixBits(seed ^ key) >> 40) * 0x1p-24;
    };
    const auto blend = [](double t) { return t * t * (3 - 2 * t); };
    const double tx = blend(x - fx), ty = blend(y - fy), tz = blend(z - fz);
    const auto alongX = [&](int dy, int dz) { return std::lerp(lattice(0, dy, dz), lattice(1, dy, dz), tx); };
    const auto alongY = [&](int dz) { return std::lerp(alongX(0, dz), alongX(1, dz), ty); };
    return std::lerp(alongY(0), alongY(1), tz);
}

} // namespace sample
