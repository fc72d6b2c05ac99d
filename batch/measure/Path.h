// SPDX-License-Identifier: MIT
// A line on one image: its points in pixels, its length and direction.
#pragma once

#include "batch/lines/Line.h"
#include "platform/image/ImageFile.h"

#include <span>
#include <vector>

namespace batch {

// Where pixel (0, 0) of a section stands on the stage, microns; 0 where the file does not tell.
struct StageOrigin {
    double x = 0, y = 0;
};
StageOrigin stageOriginOf(const image::ImageFile& file, const image::SectionIndex& section);

struct StagePoint {
    float x, y; // microns
};

struct Path {
    std::vector<Point> points; // data coordinates, pixels
    double width = 0;          // of a band, pixels

    const Point& start() const { return points.front(); }
    const Point& end() const { return points.back(); }
    double pixelLength() const; // of all pieces together
};

// The line's points in pixels of the image. A point in microns counts from the image's corner.
void setPoints(Path& path, std::span<const Point> points, bool microns, const image::ImageInfo& info);

// The stage position of a point of a section, as the tool tells it.
StagePoint stageOf(const Point& point, const StageOrigin& origin, const image::ImageInfo& info);

// Length of all pieces in microns, and direction from the first point to the last in degrees, of the stage
// positions as the tool computes both.
struct StageExtent {
    float length, angle;
};
StageExtent extentOf(const Path& path, const StageOrigin& origin, const image::ImageInfo& info);

// Microns between neighbouring samples of a digital line, as the tool counts them: the length divided by the
// number of samples.
float digitalStep(const Path& path, float pixelSize, std::int32_t samples);

} // namespace batch
