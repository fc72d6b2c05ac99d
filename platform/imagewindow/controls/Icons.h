// SPDX-License-Identifier: MIT
// The icons of the tool bar, drawn by cairo at any size: each a row of one table. No X server.
#pragma once

#include "platform/base/DisplayColors.h"
#include "widgets/picture/Picture.h"

#include <string_view>

namespace viewer {

constexpr int iconSide = 20; // pixels of 96 dots per inch

bool hasIcon(std::string_view name);

// Transparent around the lines, iconSide * scale pixels wide and high. name: hasIcon() knows it.
picture::Picture iconPicture(std::string_view name, const base::Rgb& ink, double scale);

} // namespace viewer
