// SPDX-License-Identifier: MIT
// One page with a view, the segment in it and the profile along the segment: plot with axes, units and
// legend. Pure.
#pragma once

#include "platform/imagewindow/figure/SegmentProfile.h"
#include "platform/imagewindow/paint/SavedView.h"

#include <filesystem>
#include <string>

namespace viewer {

struct Figure {
    SavedView view;
    SegmentProfile profile;
    std::string title; // file and section
};

// pdf, svg or png.
bool hasFigureEnding(const std::filesystem::path& path);

// The format is that of the name's ending; a PNG has 300 dots per inch. Throws picture::PictureError; then a
// file that was there before is unchanged.
void saveFigure(const Figure& figure, const std::filesystem::path& path);

} // namespace viewer
