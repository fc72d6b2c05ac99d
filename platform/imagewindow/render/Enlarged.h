// SPDX-License-Identifier: MIT
// The pixels of a canvas at a multiple of its resolution, for pictures that are saved. No X.
#pragma once

#include "platform/imagewindow/render/Renderer.h"

#include <cstdint>
#include <vector>

namespace viewer {

// The panels of that geometry, each where the canvas has it: resolution (1 or more) times as many pixels each
// way as the canvas has. A resolution above 1 shows what the image has of finer detail; the renderer is left
// with what that took.
std::vector<std::uint32_t> renderEnlarged(Renderer& renderer, const protocol::Geometry& geometry,
                                          const std::vector<PanelContent>& panels, int resolution);

} // namespace viewer
