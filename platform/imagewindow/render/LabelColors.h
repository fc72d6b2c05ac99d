// SPDX-License-Identifier: MIT
// Pixels of label images: each number in a colour of its own, so that neighbouring numbers are told apart, by
// colour-blind people too. Pure arithmetic; called by Renderer.
#pragma once

#include "platform/base/DisplayColors.h"

#include <cstdint>
#include <span>

namespace viewer {

// Numbers that are this many apart have the same colour.
constexpr int labelColorCount = 48;

// Black for 0, the ground between the objects.
base::Rgb labelColor(std::int64_t label);

// Fills out with 0x00RRGGBB, one for each value; values are whole numbers, and what is none is black.
void composeLabels(std::span<const float> values, std::span<std::uint32_t> out);

} // namespace viewer
