// SPDX-License-Identifier: MIT
// What an image window tells about what it shows: texts to the user, the display record to clients. No X.
#pragma once

#include "platform/imagewindow/state/Shown.h"
#include "platform/protocol/DisplayRecord.h"

#include <optional>

namespace viewer {

struct CanvasPlace {
    int x = 0, y = 0; // canvas pixels
};

// pointer: nothing when it is not on the canvas.
StatusTexts statusOf(const Shown& shown, const std::optional<CanvasPlace>& pointer);

// What the status lines may come to show with the present view.
StatusTexts widestStatus(const Shown& shown);

// As of the arrangement that was drawn last.
protocol::DisplayRecord recordOf(const Shown& shown);

} // namespace viewer
