// SPDX-License-Identifier: MIT
// Overlay commands that clients append to the property _IW_OVERLAY of a canvas (type _IW_OVERLAY, format 8,
// PropModeAppend) and the viewer drains. Every command is one record of fixed size. No X here.
#pragma once

#include "platform/base/DisplayColors.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace protocol {

enum class OverlayKind : std::int32_t { AddPoint = 1, AddLine = 2, Remove = 3, RemoveAll = 4, Redraw = 5 };

struct OverlayCommand {
    OverlayKind kind = OverlayKind::Redraw;
    std::uint32_t client = 0; // the client's announcement window: ids are unique per client, and the viewer
                              // drops the graphics when this window is destroyed
    std::int32_t id = 0;      // > 0 for the kinds that name a graphic
    std::int32_t timePoint = -1;                // shown at this time point only; -1: at every one
    std::int32_t panel = -1;                    // shown in this panel only; -1: in every panel
    std::int32_t width = 1;                     // line width in window pixels
    std::int32_t dash = 0;                      // 0 solid
    std::int32_t color = base::annotationColor; // of base::displayColors, or base::annotationColor
    float x0 = 0, y0 = 0, z0 = -1; // data coordinates; z < 0: on every section, else on section trunc(z) only
    float x1 = 0, y1 = 0, z1 = -1;
    friend bool operator==(const OverlayCommand&, const OverlayCommand&) = default;
};

constexpr std::size_t overlayRecordSize = 64;

// Limits of a valid command; the decoder skips a command that exceeds one.
constexpr std::int32_t maxOverlayWidth = 255;
constexpr std::int32_t maxOverlayDash = 255;
constexpr float maxOverlayCoordinate = 1e9F;

// Whether all coordinates are numbers within maxOverlayCoordinate.
bool validCoordinates(const OverlayCommand& command);

// overlayRecordSize bytes.
std::vector<std::byte> encodeOverlay(const OverlayCommand& command);

// Decodes every whole valid record in bytes; records that are no command are skipped and counted in bad, an
// incomplete one at the end included.
std::vector<OverlayCommand> decodeOverlays(std::span<const std::byte> bytes, int& bad);

} // namespace protocol
