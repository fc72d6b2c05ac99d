// SPDX-License-Identifier: MIT
// What an image window tells about what it shows: texts to the user, the display record to clients, what
// stands on the image to those who draw it. No X.
#pragma once

#include "platform/imagewindow/paint/Scene.h"
#include "platform/imagewindow/state/Shown.h"
#include "platform/imagewindow/view/Navigator.h"
#include "platform/protocol/DisplayRecord.h"

#include <optional>
#include <string>
#include <vector>

namespace viewer {

struct CanvasPlace {
    int x = 0, y = 0; // canvas pixels
};

// pointer: nothing when it is not on the canvas.
StatusTexts statusOf(const Shown& shown, const std::optional<CanvasPlace>& pointer);

// What is wrong with the image or its file, one sentence; empty when all is well.
const std::string& problemOf(const Shown& shown);

// What the status lines may come to show with the present view.
StatusTexts widestStatus(const Shown& shown);

// As of the arrangement that was drawn last.
protocol::DisplayRecord recordOf(const Shown& shown);

// As arranged and drawn last; it refers to both. screenScale: 1 at 96 dots per inch.
Scene sceneOf(const Shown& shown, const OverlayStore& overlays, double screenScale);

// The panels whose sections a tool plots along the segment that came last, where there are several panels:
// the one of the segment's z section, the first of time points, all of wavelengths.
std::vector<int> plottedPanels(const Shown& shown, const OverlayStore& overlays);

// The overview as arranged last; nothing where it is switched off or nearly all is in sight. It keeps
// out of the scale bar's corner.
std::optional<Navigator> navigatorNow(const Shown& shown, double screenScale);

} // namespace viewer
