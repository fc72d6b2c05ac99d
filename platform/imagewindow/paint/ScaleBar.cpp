// SPDX-License-Identifier: MIT
#include "platform/imagewindow/paint/ScaleBar.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace viewer {

namespace {

constexpr double minPanelSide = 160, minWidth = 4, edges = 24; // canvas pixels at 96 dots per inch
constexpr int panelShare = 4;

std::string lengthText(double microns)
{
    const struct {
        double unit; // microns
        const char* name;
    } units[] = {{1e4, "cm"}, {1e3, "mm"}, {1, "µm"}, {1e-3, "nm"}};
    const auto* unit = units;
    while (unit != units + 3 && microns < unit->unit * (1 - 1e-9))
        ++unit;
    char text[48];
    std::snprintf(text, sizeof text, "%.6g %s", microns / unit->unit, unit->name);
    return text;
}

// The longest round one in a panel's share, microns.
double automaticLength(double spacing, const protocol::Geometry& geometry)
{
    constexpr double slack = 1 + 1e-9;
    const double longest = geometry.panelWidth / panelShare * spacing / geometry.zoom;
    const double decade = std::pow(10.0, std::floor(std::log10(longest * slack)));
    double length = decade;
    for (const double factor : {2.0, 5.0})
        if (factor * decade <= longest * slack)
            length = factor * decade;
    return length;
}

} // namespace

bool barFits(const BarStyle& style, double spacing, const protocol::Geometry& geometry, double screenScale)
{
    const double width = style.microns / spacing * geometry.zoom;
    return style.microns <= 0 ||
           (width >= minWidth * screenScale && width <= geometry.panelWidth - edges * screenScale);
}

std::optional<ScaleBar> scaleBar(const BarStyle& style, double spacing, const protocol::Geometry& geometry,
                                 double screenScale)
{
    if (!(spacing > 0) || !std::isfinite(spacing) ||
        std::min(geometry.panelWidth, geometry.panelHeight) < minPanelSide * screenScale)
        return std::nullopt;
    const bool chosen = style.microns > 0 && barFits(style, spacing, geometry, screenScale);
    const double length = chosen ? style.microns : automaticLength(spacing, geometry);
    return ScaleBar{static_cast<int>(std::lround(length / spacing * geometry.zoom)), lengthText(length),
                    style.corner, barColors[style.color].rgb};
}

} // namespace viewer
