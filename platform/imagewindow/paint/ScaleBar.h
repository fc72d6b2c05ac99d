// SPDX-License-Identifier: MIT
// The length of a scale bar, its label and its place. Pure.
#pragma once

#include "platform/imagewindow/files/BarStyle.h"
#include "platform/protocol/Geometry.h"

#include <optional>
#include <string>

namespace viewer {

struct ScaleBar {
    int width = 0;     // canvas pixels
    std::string label; // "20 µm"
    BarCorner corner = BarCorner::LowerRight;
    base::Rgb color{255, 255, 255};
};

// A bar as long as the style says; where that is automatic, or does not fit into a panel, the longest of 1, 2
// or 5 times a power of ten microns that takes at most a quarter of a panel. spacing: microns per data pixel;
// screenScale: of the label. Nothing where a panel has no room for bar and label, or the spacing is no
// positive number.
std::optional<ScaleBar> scaleBar(const BarStyle& style, double spacing, const protocol::Geometry& geometry,
                                 double screenScale = 1);

// Whether a bar of the length that the style asks for fits; true where that is automatic.
bool barFits(const BarStyle& style, double spacing, const protocol::Geometry& geometry,
             double screenScale = 1);

} // namespace viewer
