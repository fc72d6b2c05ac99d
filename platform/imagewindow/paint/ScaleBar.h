// SPDX-License-Identifier: MIT
// The length of a scale bar and its label. Pure.
#pragma once

#include <optional>
#include <string>

namespace viewer {

struct ScaleBar {
    int width = 0;     // canvas pixels
    std::string label; // "20 µm"
};

// The longest bar of 1, 2 or 5 times a power of ten microns that takes at most a quarter of a panel.
// spacing: microns per data pixel; zoom: canvas pixels per data pixel; screenScale: of the label. Nothing
// where a panel has no room for bar and label, or the spacing is no positive number.
std::optional<ScaleBar> scaleBar(double spacing, double zoom, int panelWidth, int panelHeight,
                                 double screenScale = 1);

} // namespace viewer
