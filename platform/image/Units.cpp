// SPDX-License-Identifier: MIT
#include "platform/image/Units.h"

#include <string>

namespace image {
namespace {

struct Prefix {
    std::string_view symbol;
    double factor;
};

// Micro in UTF-8 (the micro sign and the Greek letter), in ISO 8859-1, as an escape, and as a plain u.
constexpr Prefix prefixes[] = {
    {"", 1},           {"Y", 1e24},  {"Z", 1e21},      {"E", 1e18},      {"P", 1e15},    {"T", 1e12},
    {"G", 1e9},        {"M", 1e6},   {"k", 1e3},       {"h", 1e2},       {"da", 1e1},    {"d", 1e-1},
    {"c", 1e-2},       {"m", 1e-3},  {"\u00b5", 1e-6}, {"\u03bc", 1e-6}, {"\xb5", 1e-6}, {"\\u00B5", 1e-6},
    {"\\u00b5", 1e-6}, {"u", 1e-6},  {"n", 1e-9},      {"p", 1e-12},     {"f", 1e-15},   {"a", 1e-18},
    {"z", 1e-21},      {"y", 1e-24},
};

constexpr Prefix lengthsInMetres[] = {
    {"\u00c5", 1e-10},
    {"\u212b", 1e-10},
    {"\xc5", 1e-10},
    {"\\u00C5", 1e-10},
    {"angstrom", 1e-10},
    {"thou", 25.4e-6},
    {"mil", 25.4e-6},
    {"li", 25.4e-3 / 12},
    {"in", 25.4e-3},
    {"inch", 25.4e-3},
    {"inches", 25.4e-3},
    {"\"", 25.4e-3},
    {"ft", 0.3048},
    {"yd", 0.9144},
    {"mi", 1609.344},
    {"pt", 25.4e-3 / 72},
    {"ua", 149597870700.0},
    {"ly", 9460730472580800.0},
    {"pc", 3.0856775814913673e16},
    {"micron", 1e-6},
    {"microns", 1e-6},
    {"micrometer", 1e-6},
    {"micrometre", 1e-6},
    {"nanometer", 1e-9},
    {"nanometre", 1e-9},
    {"millimeter", 1e-3},
    {"millimetre", 1e-3},
    {"centimeter", 1e-2},
    {"meter", 1},
    {"metre", 1},
};

constexpr Prefix timesInSeconds[] = {
    {"min", 60}, {"h", 3600},   {"hr", 3600},   {"d", 86400},
    {"sec", 1},  {"second", 1}, {"seconds", 1}, {"msec", 1e-3},
};

template<std::size_t n> std::optional<double> lookUp(const Prefix (&table)[n], std::string_view symbol)
{
    for (const Prefix& row : table)
        if (row.symbol == symbol)
            return row.factor;
    return std::nullopt;
}

std::optional<double> withPrefix(std::string_view unit, char base)
{
    if (unit.empty() || unit.back() != base)
        return std::nullopt;
    return lookUp(prefixes, unit.substr(0, unit.size() - 1));
}

std::string_view trimmed(std::string_view text)
{
    const auto first = text.find_first_not_of(" \t\r\n");
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t\r\n") + 1 - first);
}

} // namespace

std::optional<double> micronsPer(std::string_view text)
{
    constexpr double micronsPerMetre = 1e6;
    const std::string_view unit = trimmed(text);
    std::optional<double> metres = lookUp(lengthsInMetres, unit);
    if (!metres)
        metres = withPrefix(unit, 'm');
    return metres ? std::optional(*metres * micronsPerMetre) : std::nullopt;
}

std::optional<double> secondsPer(std::string_view text)
{
    const std::string_view unit = trimmed(text);
    const std::optional<double> seconds = lookUp(timesInSeconds, unit);
    return seconds ? seconds : withPrefix(unit, 's');
}

} // namespace image
