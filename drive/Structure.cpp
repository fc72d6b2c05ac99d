// SPDX-License-Identifier: MIT
#include "drive/Structure.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <numbers>
#include <vector>

namespace drive {

namespace {

constexpr int gridSide = 160; // cells of the longer side of the picture in which lines are looked for
constexpr int directions = 36;

// The picture in coarse cells, which keeps noise out and the search short.
struct Grid {
    int width = 0, height = 0;
    double cell = 1; // picture pixels
    std::vector<double> values;
    double at(int x, int y) const { return values[static_cast<size_t>(y) * static_cast<size_t>(width) + x]; }
};

double meanOf(const Picture& picture, double left, double top, double side)
{
    const int right = std::min(picture.width, static_cast<int>(left + side)),
              bottom = std::min(picture.height, static_cast<int>(top + side));
    double sum = 0;
    int count = 0;
    for (int y = static_cast<int>(top); y < bottom; ++y)
        for (int x = static_cast<int>(left); x < right; ++x, ++count) {
            const Pixel& pixel = picture.at(x, y);
            sum += pixel.red + pixel.green + pixel.blue;
        }
    return count > 0 ? sum / count : 0;
}

Grid gridOf(const Picture& picture)
{
    Grid grid;
    grid.cell = std::max(1.0, std::max(picture.width, picture.height) / static_cast<double>(gridSide));
    grid.width = static_cast<int>(picture.width / grid.cell);
    grid.height = static_cast<int>(picture.height / grid.cell);
    for (int y = 0; y < grid.height; ++y)
        for (int x = 0; x < grid.width; ++x)
            grid.values.push_back(meanOf(picture, x * grid.cell, y * grid.cell, grid.cell));
    return grid;
}

// The level that parts ground and structures best: the variance between the two is largest (Otsu 1979).
double partingLevel(const Grid& grid)
{
    constexpr int bins = 766; // three components of 0 to 255
    std::array<double, bins> counts{};
    double total = 0;
    for (const double value : grid.values) {
        counts[static_cast<size_t>(std::clamp(value, 0.0, bins - 1.0))] += 1;
        total += std::floor(value);
    }
    double below = 0, sumBelow = 0, best = 0, level = 0;
    const auto all = static_cast<double>(grid.values.size());
    for (int bin = 0; bin < bins; ++bin) {
        below += counts[static_cast<size_t>(bin)];
        sumBelow += bin * counts[static_cast<size_t>(bin)];
        if (below == 0 || below == all)
            continue;
        const double apart = sumBelow / below - (total - sumBelow) / (all - below);
        const double variance = below * (all - below) * apart * apart;
        if (variance > best) {
            best = variance;
            level = bin + 0.5;
        }
    }
    return level;
}

// Whether most of the picture's edge, where the ground is, lies above the level.
bool brightAtTheEdge(const Grid& grid, double level)
{
    int above = 0, all = 0;
    for (int y = 0; y < grid.height; ++y)
        for (int x = 0; x < grid.width; ++x)
            if (x == 0 || y == 0 || x == grid.width - 1 || y == grid.height - 1) {
                ++all;
                above += grid.at(x, y) > level;
            }
    return above * 2 > all;
}

// Makes structures positive and the ground negative; no more than their mean, so that length counts for more
// than a bright spot. False when all is alike.
bool weigh(Grid& grid)
{
    const double level = partingLevel(grid);
    if (level == 0)
        return false;
    const double sign = brightAtTheEdge(grid, level) ? -1 : 1;
    double sum = 0;
    std::ptrdiff_t count = 0;
    for (double& value : grid.values) {
        value = sign * (value - level);
        sum += std::max(value, 0.0);
        count += value > 0;
    }
    for (double& value : grid.values)
        value = std::min(value, sum / static_cast<double>(std::max<std::ptrdiff_t>(count, 1)));
    return true;
}

struct Found {
    Line line; // cells
    double weight = 0;
};

// The part with the largest sum of the straight line from (x, y) on in steps of (dx, dy).
void search(const Grid& grid, double x, double y, double dx, double dy, Found& best)
{
    double sum = 0, startX = x, startY = y;
    for (; x > -0.5 && y > -0.5 && x < grid.width - 0.5 && y < grid.height - 0.5; x += dx, y += dy) {
        if (sum <= 0) {
            sum = 0;
            startX = x;
            startY = y;
        }
        sum += grid.at(static_cast<int>(std::lround(x)), static_cast<int>(std::lround(y)));
        if (sum > best.weight)
            best = {{startX, startY, x, y}, sum};
    }
}

Found heaviestLine(const Grid& grid)
{
    Found best;
    for (int i = 0; i < directions; ++i) {
        const double angle = std::numbers::pi * i / directions;
        const double dx = std::cos(angle), dy = std::sin(angle);
        for (int x = 0; x < grid.width; ++x)
            search(grid, x, 0, dx, dy, best);
        for (int y = 1; y < grid.height; ++y)
            search(grid, dx < 0 ? grid.width - 1 : 0, y, dx, dy, best);
    }
    return best;
}

// With a tenth of its length more at both ends, inside the picture.
Line extended(const Line& line, const Picture& picture)
{
    constexpr double ground = 0.1, margin = 2;
    const double dx = (line.x1 - line.x0) * ground, dy = (line.y1 - line.y0) * ground;
    const auto inside = [margin](double value, int side) {
        return std::clamp(value, margin, std::max(margin, side - 1 - margin));
    };
    return {inside(line.x0 - dx, picture.width), inside(line.y0 - dy, picture.height),
            inside(line.x1 + dx, picture.width), inside(line.y1 + dy, picture.height)};
}

} // namespace

Line longestStructure(const Picture& picture)
{
    Grid grid = gridOf(picture);
    const double middle = picture.height / 2.0;
    if (!weigh(grid))
        return extended({0, middle, static_cast<double>(picture.width), middle}, picture);
    const Line cells = heaviestLine(grid).line;
    const auto pixel = [&](double place) { return (place + 0.5) * grid.cell; };
    return extended({pixel(cells.x0), pixel(cells.y0), pixel(cells.x1), pixel(cells.y1)}, picture);
}

} // namespace drive
