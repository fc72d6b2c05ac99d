// SPDX-License-Identifier: MIT
// The visible part of one section as floats: what a panel shows of one wavelength, kept for contrast changes
// and for the values under the pointer. Bounded by the visible area: at zoom 1 and above a tile holds data
// pixels, below it holds one box average, or one data pixel, per canvas pixel. No X.
#pragma once

#include "platform/image/ImageFile.h"
#include "platform/protocol/Geometry.h"

#include <optional>
#include <string>
#include <vector>

namespace viewer {

// Which data pixels (zoom >= 1) or canvas pixels (zoom < 1) a tile covers; the same for every panel.
struct TileFrame {
    bool magnified = true;      // one value per data pixel
    bool nearest = false;       // reduced: the pixel in the middle, not the average
    int xFirst = 0, yFirst = 0; // data pixel of the first value when magnified
    int width = 0, height = 0;  // values
    double zoom = 1, originX = 0, originY = 0;
    friend bool operator==(const TileFrame&, const TileFrame&) = default;
};

// nearest: for values that are names rather than amounts.
TileFrame tileFrame(const protocol::Geometry& geometry, bool nearest = false);

// The most reduced copy of an image that still has at least one pixel per canvas pixel at that zoom.
int levelFor(const image::ImageFile& file, double zoom);

// For every canvas column (row) of a panel the column (row) of the tile that it shows.
std::vector<int> tileColumns(const TileFrame& frame, int panelWidth);
std::vector<int> tileRows(const TileFrame& frame, int panelHeight);

// Reads the values of a tile; nothing when the section cannot be read, and then error says why in one
// sentence. A section that the file does not hold gives nothing and leaves error empty.
std::optional<std::vector<float>> readTile(image::ImageFile& file, const image::SectionIndex& section,
                                           const TileFrame& frame, std::string& error);

} // namespace viewer
