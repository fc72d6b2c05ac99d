// SPDX-License-Identifier: MIT
#include "platform/imagewindow/paint/ScaleBar.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace viewer {

namespace {

constexpr double minPanelSide = 160; // canvas pixels at 96 dots per inch
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

} // namespace

std::optional<ScaleBar> scaleBar(double spacing, double zoom, int panelWidth, int panelHeight,
                                 double screenScale)
{
    if (!(spacing > 0) || !std::isfinite(spacing) ||
        std::min(panelWidth, panelHeight) < minPanelSide * screenScale)
        return std::nullopt;
    constexpr double slack = 1 + 1e-9;
    const double longest = panelWidth / panelShare * spacing / zoom;
    const double decade = std::pow(10.0, std::floor(std::log10(longest * slack)));
    double length = decade;
    for (const double factor : {2.0, 5.0})
        if (factor * decade <= longest * slack)
            length = factor * decade;
    return ScaleBar{static_cast<int>(std::lround(length / spacing * zoom)), lengthText(length)};
}

} // namespace viewer
