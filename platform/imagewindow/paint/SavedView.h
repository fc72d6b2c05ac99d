// SPDX-License-Identifier: MIT
// A view as a file: the image with captions, scale bars and graphics, as pixels or as vectors over the image.
// Pure.
#pragma once

#include "platform/imagewindow/paint/Scene.h"
#include "widgets/picture/Picture.h"

#include <cairo.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace viewer {

struct SavedView {
    Scene scene; // what it refers to must live as long
    Size canvas;
    int resolution = 1;               // pixels of the image for each canvas pixel
    std::vector<std::uint32_t> image; // 0x00RRGGBB, canvas times resolution, without captions and graphics
    double micronsPerPixel = 0;       // of the canvas; 0: not known
};

// With all that stands on the image.
picture::Picture rasterOf(const SavedView& view);

// Draws the view, the image in squares, in canvas pixels.
void paintView(cairo_t* cairo, const SavedView& view);

// The endings of names that a view can be saved under: "png, tif, ...".
std::string savedEndings();
// Whether the name has one of them.
bool hasSavedEnding(const std::filesystem::path& path);

// The format is that of the name's ending: pixels at the view's resolution, or a page of the canvas's size at
// 96 dots per inch. A TIFF tells the scale. Throws picture::PictureError; then a file that was there before
// is unchanged.
void saveView(const SavedView& view, const std::filesystem::path& path);

} // namespace viewer
