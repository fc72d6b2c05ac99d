// SPDX-License-Identifier: MIT
// Numbers as people type them. Pure.
#pragma once

#include <optional>
#include <string>

namespace viewer {

// With a point or a comma, spaces around it allowed; nothing when it is no finite number.
std::optional<float> typedNumber(std::string text);

} // namespace viewer
