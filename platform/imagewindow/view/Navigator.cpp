// SPDX-License-Identifier: MIT
#include "platform/imagewindow/view/Navigator.h"

#include "platform/imagewindow/view/View.h"

#include <algorithm>
#include <cmath>

namespace viewer {

namespace {

constexpr double longestSide = 150, shortestSide = 48, margin = 10; // canvas pixels at 96 dots per inch
constexpr double mostInSight = 0.9; // of the image: beyond, the overview would hide more than is out of sight
constexpr double panelShare = 0.3;  // of a panel's shorter side, at most

} // namespace

std::optional<Navigator> navigatorOf(const protocol::Geometry& geometry, bool low, double screenScale)
{
    const protocol::Geometry& g = geometry;
    const double shown = std::min(1.0, g.panelWidth / (g.zoom * g.imageWidth)) *
                         std::min(1.0, g.panelHeight / (g.zoom * g.imageHeight));
    if (shown > mostInSight)
        return std::nullopt;
    const double side =
        std::min(longestSide * screenScale, panelShare * std::min(g.panelWidth, g.panelHeight));
    if (side < shortestSide * screenScale)
        return std::nullopt;
    Navigator navigator;
    navigator.scale = side / std::max(g.imageWidth, g.imageHeight);
    navigator.width = scaledSide(g.imageWidth, navigator.scale);
    navigator.height = scaledSide(g.imageHeight, navigator.scale);
    const int edge = static_cast<int>(std::lround(margin * screenScale));
    navigator.x = g.panelWidth - edge - navigator.width;
    navigator.y = low ? g.panelHeight - edge - navigator.height : edge;
    const double perPixel = navigator.scale / g.zoom;
    navigator.visible = {navigator.x + g.originX * navigator.scale, navigator.y + g.originY * navigator.scale,
                         std::min<double>(navigator.width, g.panelWidth * perPixel),
                         std::min<double>(navigator.height, g.panelHeight * perPixel)};
    return navigator;
}

} // namespace viewer
