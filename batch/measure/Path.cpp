// SPDX-License-Identifier: MIT
#include "batch/measure/Path.h"

#include "profile/Fwhm.h"
#include "segment/Geometry.h"

#include <cmath>

namespace batch {

StageOrigin stageOriginOf(const image::ImageFile& file, const image::SectionIndex& section)
{
    return {file.extendedHeader(section, image::StageXMicrons).value_or(0),
            file.extendedHeader(section, image::StageYMicrons).value_or(0)};
}

double Path::pixelLength() const
{
    double length = 0;
    for (std::size_t i = 1; i < points.size(); ++i)
        length += std::sqrt((points[i].x - points[i - 1].x) * (points[i].x - points[i - 1].x) +
                            (points[i].y - points[i - 1].y) * (points[i].y - points[i - 1].y));
    return length;
}

void setPoints(Path& path, std::span<const Point> points, bool microns, const image::ImageInfo& info)
{
    const double x = microns ? info.spacing[0] : 1, y = microns ? info.spacing[1] : 1;
    path.points.clear();
    for (const Point& point : points)
        if (const Point next{point.x / x, point.y / y}; path.points.size() < 2 || next != path.points.back())
            path.points.push_back(next);
}

// The tool keeps data coordinates in single precision and adds the section's own position in double.
StagePoint stageOf(const Point& point, const StageOrigin& origin, const image::ImageInfo& info)
{
    return {static_cast<float>(origin.x + double{static_cast<float>(point.x)} * info.spacing[0]),
            static_cast<float>(origin.y + double{static_cast<float>(point.y)} * info.spacing[1])};
}

StageExtent extentOf(const Path& path, const StageOrigin& origin, const image::ImageInfo& info)
{
    const StagePoint first = stageOf(path.start(), origin, info);
    StagePoint last = first;
    float length = 0;
    for (std::size_t i = 1; i < path.points.size(); ++i) {
        const StagePoint next = stageOf(path.points[i], origin, info);
        length += stageLength(next.x - last.x, next.y - last.y);
        last = next;
    }
    return {length, stageAngle(last.x - first.x, last.y - first.y)};
}

float digitalStep(const Path& path, float pixelSize, std::int32_t samples)
{
    float step = 0;
    for (std::size_t i = 1; i < path.points.size(); ++i) {
        const Point &from = path.points[i - 1], &to = path.points[i];
        step += sampleStep(static_cast<float>(from.x), static_cast<float>(from.y), static_cast<float>(to.x),
                           static_cast<float>(to.y), pixelSize, samples);
    }
    return step;
}

} // namespace batch
