// SPDX-License-Identifier: MIT
#include "batch/lines/Line.h"

#include <algorithm>
#include <cmath>

namespace batch {

namespace {

constexpr double maxCoordinate = 1e7; // beyond the side of any image

// Why the line cannot be measured; empty when it can.
std::string problemOf(const Line& line, std::span<const Point> points)
{
    if (points.size() < 2)
        return "The line has fewer than two points.";
    const auto usable = [](double v) { return std::isfinite(v) && std::fabs(v) <= maxCoordinate; };
    if (!std::ranges::all_of(points, [&](const Point& p) { return usable(p.x) && usable(p.y); }))
        return "A coordinate of the line is no number, or lies beyond any image.";
    if (line.section.z < 0 || line.section.t < 0 || line.section.p < 0)
        return "Sections, time points and positions count from 1.";
    if (!(line.width >= 0 && line.width <= maxCoordinate))
        return "The width of the line is no width.";
    return {};
}

} // namespace

void LineList::add(Line line, std::span<const Point> its)
{
    if (lines.size() >= maxLines || points.size() + its.size() > maxPoints)
        throw LineFileError("There are more lines than can be measured in one run.");
    if (std::string problem = problemOf(line, its); !problem.empty()) {
        problems.push_back({line.name, std::move(problem)});
        return;
    }
    line.firstPoint = static_cast<std::uint32_t>(points.size());
    line.pointCount = static_cast<std::uint32_t>(its.size());
    points.insert(points.end(), its.begin(), its.end());
    lines.push_back(std::move(line));
}

std::uint32_t LineList::imageNumber(const std::string& name)
{
    const auto [found, isNew] = imageNumbers.try_emplace(name, static_cast<std::uint32_t>(images.size()));
    if (isNew)
        images.push_back(name);
    return found->second;
}

} // namespace batch
