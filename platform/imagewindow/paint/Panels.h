// SPDX-License-Identifier: MIT
// Where the panels stand on the canvas. Pure.
#pragma once

#include "platform/imagewindow/paint/Damage.h"
#include "platform/protocol/Geometry.h"

namespace viewer {

inline Box panelBox(const protocol::Geometry& geometry, int panel)
{
    return {panel % geometry.columns * (geometry.panelWidth + geometry.gap),
            panel / geometry.columns * (geometry.panelHeight + geometry.gap), geometry.panelWidth,
            geometry.panelHeight};
}

} // namespace viewer
