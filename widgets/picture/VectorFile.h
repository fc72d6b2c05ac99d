// SPDX-License-Identifier: MIT
// Any drawing as vectors on paper: PDF, SVG and PostScript by cairo, without an X server.
#pragma once

#include "widgets/picture/Picture.h"

#include <cairo.h>

#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

namespace picture {

// The size of the drawing in points, 1/72 inch; also the unit and the frame of the drawing function, whose
// origin is the top left corner.
struct PageSize {
    double width = 0, height = 0;
};

using Drawing = std::function<void(cairo_t*)>;

enum class VectorFormat { Pdf, Svg, PostScript };

// By the extension of the name: pdf, svg, ps, eps (one page, encapsulated).
std::optional<VectorFormat> vectorFormatOfName(const std::filesystem::path& path);

// The file's text. Throws PictureError where cairo can't draw.
std::vector<std::byte> encodeVector(VectorFormat format, PageSize size, const Drawing& draw);

// The format is that of the name. Throws PictureError; on failure a file that was there before is unchanged.
void writeVector(const std::filesystem::path& path, PageSize size, const Drawing& draw);

// What becomes of a pixel that covers more than one pixel of the drawing.
enum class Enlarging { Squares, Smooth };

// Draws a picture into the rectangle.
void drawPicture(cairo_t* cairo, const Picture& picture, double x, double y, double width, double height,
                 Enlarging enlarging = Enlarging::Squares);

// What the drawing function draws, in pixels: scale pixels for each point.
Picture rasterize(PageSize size, double scale, const Drawing& draw);

} // namespace picture
