// SPDX-License-Identifier: MIT
#include "platform/imagewindow/render/LabelColors.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <vector>

namespace viewer {

namespace {

using base::Rgb;
using Triple = std::array<double, 3>;
using Matrix = std::array<Triple, 3>;

// Of linear light: as it is, and as people without the long or the middle cones see it (Machado 2009).
constexpr std::array<Matrix, 3> eyes{
    {{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}},
     {{{0.152286, 1.052583, -0.204868}, {0.114503, 0.786281, 0.099216}, {-0.003882, -0.048116, 1.051998}}},
     {{{0.367322, 0.860646, -0.227968}, {0.280085, 0.672501, 0.047413}, {-0.011820, 0.042940, 0.968881}}}}};

// The perceptual space OKLab: equal distances look about equally different.
constexpr Matrix conesOfLight{{{0.4122214708, 0.5363325363, 0.0514459929},
                               {0.2119034982, 0.6806995451, 0.1073969566},
                               {0.0883024619, 0.2817188376, 0.6299787005}}};
constexpr Matrix labOfCones{{{0.2104542553, 0.7936177850, -0.0040720468},
                             {1.9779984951, -2.4285922050, 0.4505937099},
                             {0.0259040371, 0.7827717662, -0.8086757660}}};

constexpr double darkest = 0.5;  // of the lightness, so that all stand out from the black ground
constexpr int near = 4;          // numbers this close get clearly different colours
constexpr double nearWeight = 3; // how much more different than any two

Triple product(const Matrix& matrix, const Triple& vector)
{
    Triple result{};
    for (std::size_t row = 0; row < 3; ++row)
        for (std::size_t i = 0; i < 3; ++i)
            result[row] += matrix[row][i] * vector[i];
    return result;
}

double linear(double component)
{
    return component <= 0.04045 ? component / 12.92 : std::pow((component + 0.055) / 1.055, 2.4);
}

struct Candidate {
    Rgb color;
    std::array<Triple, eyes.size()> seen;
};

Candidate candidateOf(const Rgb& color)
{
    const Triple light{linear(color.red / 255.0), linear(color.green / 255.0), linear(color.blue / 255.0)};
    Candidate candidate{color, {}};
    for (std::size_t eye = 0; eye < eyes.size(); ++eye) {
        Triple cones = product(eyes[eye], light);
        for (double& part : cones)
            part = std::clamp(part, 0.0, 1.0);
        cones = product(conesOfLight, cones);
        for (double& part : cones)
            part = std::cbrt(part);
        candidate.seen[eye] = product(labOfCones, cones);
    }
    return candidate;
}

double distance(const Triple& a, const Triple& b)
{
    return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

double distanceToAllEyes(const Candidate& a, const Candidate& b)
{
    double least = distance(a.seen[0], b.seen[0]);
    for (std::size_t eye = 1; eye < eyes.size(); ++eye)
        least = std::min(least, distance(a.seen[eye], b.seen[eye]));
    return least;
}

std::vector<Candidate> candidates()
{
    constexpr int step = 51;
    std::vector<Candidate> list;
    for (int red = 0; red <= 255; red += step)
        for (int green = 0; green <= 255; green += step)
            for (int blue = 0; blue <= 255; blue += step) {
                const Candidate each =
                    candidateOf({static_cast<std::uint8_t>(red), static_cast<std::uint8_t>(green),
                                 static_cast<std::uint8_t>(blue)});
                if (std::all_of(each.seen.begin(), each.seen.end(),
                                [](const Triple& lab) { return lab[0] >= darkest; }))
                    list.push_back(each);
            }
    return list;
}

// How well it would follow the chosen ones; the last ones stand before the first.
double merit(const Candidate& candidate, const std::vector<Candidate>& chosen)
{
    const int place = static_cast<int>(chosen.size());
    double least = std::numeric_limits<double>::max();
    for (int i = 0; i < place; ++i) {
        const Candidate& other = chosen[static_cast<std::size_t>(i)];
        least = std::min(least, nearWeight * distance(candidate.seen[0], other.seen[0]));
        if (std::min(place - i, i + labelColorCount - place) <= near)
            least = std::min(least, distanceToAllEyes(candidate, other));
    }
    return least;
}

using Table = std::array<std::uint32_t, labelColorCount>; // 0x00RRGGBB

std::uint32_t packed(const Rgb& color)
{
    return static_cast<std::uint32_t>(color.red << 16 | color.green << 8 | color.blue);
}

Table chooseColors()
{
    std::vector<Candidate> left = candidates(), chosen{candidateOf({0, 204, 255})};
    Table table{packed(chosen.front().color)};
    while (chosen.size() < table.size()) {
        const auto best = std::max_element(left.begin(), left.end(), [&](const auto& a, const auto& b) {
            return merit(a, chosen) < merit(b, chosen);
        });
        table[chosen.size()] = packed(best->color);
        chosen.push_back(*best);
        left.erase(best);
    }
    return table;
}

const Table& colors()
{
    static const Table table = chooseColors();
    return table;
}

std::uint32_t pixelOf(std::int64_t label, const Table& table)
{
    return label == 0 ? 0 : table[static_cast<std::size_t>((std::abs(label) - 1) % labelColorCount)];
}

} // namespace

Rgb labelColor(std::int64_t label)
{
    const std::uint32_t pixel = pixelOf(label, colors());
    const auto part = [&](int shift) { return static_cast<std::uint8_t>(pixel >> shift & 255); };
    return {part(16), part(8), part(0)};
}

void composeLabels(std::span<const float> values, std::span<std::uint32_t> out)
{
    constexpr float largest = 1LL << 53;
    const Table& table = colors();
    std::transform(values.begin(), values.end(), out.begin(), [&](float value) {
        return std::fabs(value) <= largest ? pixelOf(static_cast<std::int64_t>(value), table) : 0U;
    });
}

} // namespace viewer
