// SPDX-License-Identifier: MIT
// Drawing on pixels in memory. Pure.
#pragma once

#include "platform/imagewindow/view/View.h"

#include <cairo.h>

#include <cstdint>
#include <functional>
#include <span>

namespace viewer {

// pixels: 0x00RRGGBB, row by row, size.width * size.height of them. draw gets them as a surface in their own
// frame; the eight upper bits have no meaning afterwards.
void paintOn(std::span<std::uint32_t> pixels, Size size, const std::function<void(cairo_t*)>& draw);

} // namespace viewer
