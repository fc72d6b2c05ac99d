// SPDX-License-Identifier: MIT
// What stands on the image of a canvas: the panels' captions, the scale bar and the tools' graphics. The
// frame of all of it is the canvas, in canvas pixels.
#pragma once

#include "platform/imagewindow/paint/OverlayStore.h"
#include "platform/imagewindow/paint/ScaleBar.h"
#include "platform/imagewindow/view/View.h"
#include "platform/protocol/Geometry.h"

#include <optional>
#include <vector>

namespace viewer {

struct Scene {
    const protocol::Geometry& geometry;
    const std::vector<PanelContent>& panels;
    const OverlayStore& store;
    std::optional<ScaleBar> bar; // nothing: shows none
    double screenScale = 1;      // of texts, marks and margins: 1 at 96 dots per inch
    std::vector<int> plotted{};  // panels with a frame: a tool plots what they show
};

} // namespace viewer
