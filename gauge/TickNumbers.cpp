// SPDX-License-Identifier: MIT
#include "gauge/TickNumbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace gauge {

namespace {

constexpr int largestPower = 16;
constexpr int mostDecimals = 350; // a double has no more that say anything

constexpr std::array<double, 2 * largestPower + 1> powersOfTen = {
    1e-16, 1e-15, 1e-14, 1e-13, 1e-12, 1e-11, 1e-10, 1e-9, 1e-8, 1e-7, 1e-6,
    1e-5,  1e-4,  1e-3,  1e-2,  1e-1,  1e0,   1e1,   1e2,  1e3,  1e4,  1e5,
    1e6,   1e7,   1e8,   1e9,   1e10,  1e11,  1e12,  1e13, 1e14, 1e15, 1e16};

// Like printf in the C locale, whatever the locale is.
std::string formatted(double value, std::chars_format format, int decimals)
{
    std::array<char, 700> text; // the largest double has 309 digits before the point
    auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), value, format, decimals);
    return error == std::errc() ? std::string(text.data(), end) : std::string();
}

// value * 10^decimals, also where that power is beyond the doubles.
double shifted(double value, int decimals)
{
    constexpr int safe = 300;
    return decimals > safe ? value * powerOfTen(safe) * powerOfTen(decimals - safe)
                           : value * powerOfTen(decimals);
}

} // namespace

double powerOfTen(int exponent)
{
    if (exponent < -largestPower || exponent > largestPower)
        return std::pow(10.0, exponent);
    return powersOfTen.at(exponent + largestPower);
}

int exponentOf(double value)
{
    if (!(value > 0.0) || !std::isfinite(value))
        return 0;
    return static_cast<int>(std::floor(std::log10(value) + 1e-9));
}

int clampPrecision(int precision)
{
    return std::clamp(precision, -largestPower, largestPower);
}

std::string labelText(double value, int precision)
{
    if (precision >= 0)
        return formatted(value, std::chars_format::fixed, std::min(precision, mostDecimals));
    precision = clampPrecision(precision);
    double units = std::floor(value / powerOfTen(-precision) + 0.5);
    if (units + 1.0 == 1.0)
        return "0";
    return formatted(units, std::chars_format::fixed, 0) +
           std::string(static_cast<std::size_t>(-precision), '0');
}

std::string exponentText(double value, int mantissaDecimals)
{
    std::string text = formatted(value, std::chars_format::scientific, std::clamp(mantissaDecimals, 0, 17));
    std::size_t e = text.find('e');
    if (value == 0.0 || e == std::string::npos)
        return "0";
    std::string mantissa = text.substr(0, e);
    if (mantissa.find('.') != std::string::npos) {
        mantissa.erase(mantissa.find_last_not_of('0') + 1);
        if (mantissa.back() == '.')
            mantissa.pop_back();
    }
    return mantissa + "e" + std::to_string(std::stoi(text.substr(e + 1)));
}

double roundToPrecision(double value, int precision)
{
    constexpr double countable = 9007199254740992.0; // from here on doubles have no fractions
    double unit = powerOfTen(-clampPrecision(precision));
    double units = std::floor(value / unit + 0.5);
    return std::fabs(units) < countable ? units * unit : value;
}

double niceNumber(double value, int exponent)
{
    double unit = powerOfTen(exponent);
    double size = std::fabs(value) / unit;
    return (size < 1.5 ? 1.0 : size < 3.0 ? 2.0 : size < 7.0 ? 5.0 : 10.0) * unit;
}

double niceNumberAbove(double value, int exponent)
{
    double unit = powerOfTen(exponent);
    double size = std::fabs(value) / unit;
    return (size <= 1.0 ? 1.0 : size <= 2.0 ? 2.0 : size <= 5.0 ? 5.0 : 10.0) * unit;
}

int rangeDecimals(double range)
{
    if (!(range > 0.0) || !std::isfinite(range))
        return 0;
    int exponent = exponentOf(range);
    return range / powerOfTen(exponent) < 3.0 ? 1 - exponent : -exponent;
}

int decimalsNeeded(double value)
{
    constexpr int mostDigits = 7;
    int first = -exponentOf(std::fabs(value));
    for (int decimals = first; decimals < first + mostDigits; ++decimals) {
        double digits = shifted(value, decimals);
        if (std::fabs(digits - std::round(digits)) <= 1e-9 * std::fabs(digits))
            return decimals;
    }
    return first + mostDigits - 1;
}

} // namespace gauge
