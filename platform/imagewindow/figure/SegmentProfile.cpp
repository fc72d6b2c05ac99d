// SPDX-License-Identifier: MIT
#include "platform/imagewindow/figure/SegmentProfile.h"

#include "platform/imagewindow/paint/OverlayStore.h"
#include "platform/imagewindow/view/Palette.h"
#include "platform/imagewindow/view/Readout.h"
#include "segment/Geometry.h"

#include <charconv>
#include <cmath>
#include <optional>
#include <stdexcept>

namespace viewer {

namespace {

constexpr std::int64_t maxPatch = 1 << 18; // pixels read at a time

PixelPoint pixelOf(double x, double y)
{
    return {static_cast<std::int32_t>(x), static_cast<std::int32_t>(y)};
}

std::vector<PixelPoint> lineBetween(PixelPoint from, PixelPoint to)
{
    const WalkRect rect = boundingRect(from, to);
    std::vector<PixelPoint> points(static_cast<std::size_t>(rect.width()) +
                                   static_cast<std::size_t>(rect.height()));
    points.resize(static_cast<std::size_t>(walkLine(from, to, points.data())));
    return points;
}

// Run by run, so that a long diagonal does not read all of its rectangle at once.
std::vector<float> valuesAlong(image::ImageFile& file, const image::SectionIndex& section,
                               const std::vector<PixelPoint>& points)
{
    std::vector<float> values, patch;
    const auto count = static_cast<std::int32_t>(points.size());
    for (std::int32_t first = 0; first < count;) {
        const std::int32_t end = runEnd(points.data(), count, first, maxPatch);
        const WalkRect rect =
            boundingRect(points[static_cast<std::size_t>(first)], points[static_cast<std::size_t>(end - 1)]);
        patch.resize(static_cast<std::size_t>(rect.pixels()));
        if (!file.hasSection(section))
            throw std::runtime_error("The file does not hold the section of the segment.");
        if (!file.read(section, {rect.xFirst, rect.yFirst, rect.xLast, rect.yLast}, patch))
            throw std::runtime_error(file.lastError());
        for (; first < end; ++first) {
            const PixelPoint& point = points[static_cast<std::size_t>(first)];
            values.push_back(patch[static_cast<std::size_t>(point.y - rect.yFirst) *
                                       static_cast<std::size_t>(rect.width()) +
                                   static_cast<std::size_t>(point.x - rect.xFirst)]);
        }
    }
    return values;
}

void measure(SegmentProfile& profile, const LinePart& part, const Scale& scale)
{
    profile.calibrated = scale.known;
    const auto dx = static_cast<float>((part.x1 - part.x0) * scale.spacing[0]),
               dy = static_cast<float>((part.y1 - part.y0) * scale.spacing[1]);
    profile.length = stageLength(dx, dy);
    profile.angle = stageAngle(dx, dy);
    profile.step = profile.length / static_cast<float>(profile.pixels.size());
}

} // namespace

SegmentProfile readProfile(image::ImageFile& file, const PanelContent& panel, const SegmentEnds& ends,
                           const Scale& scale)
{
    const image::ImageInfo& info = file.info();
    constexpr double inside = 1e-3; // of a pixel: the far edges belong to no pixel
    const std::optional<LinePart> part =
        clipped({ends.x0, ends.y0, ends.x1, ends.y1}, 0, 0, info.width - inside, info.height - inside);
    if (!part || (part->x0 == part->x1 && part->y0 == part->y1))
        throw std::runtime_error("The segment has no length inside the image.");
    SegmentProfile profile;
    profile.pixels = lineBetween(pixelOf(part->x0, part->y0), pixelOf(part->x1, part->y1));
    measure(profile, *part, scale);
    for (std::size_t i = 0; i < panel.wavelengths.size(); ++i) {
        const int w = panel.wavelengths[i];
        profile.curves.push_back({wavelengthName(info, w),
                                  textPalette[static_cast<std::size_t>(panel.colors[i])],
                                  valuesAlong(file, {panel.z, w, panel.t, panel.p}, profile.pixels)});
    }
    return profile;
}

namespace {

// The shortest text that reads back as the same number.
template<typename Number> std::string numberText(Number number)
{
    char text[64];
    const auto [end, error] = std::to_chars(text, text + sizeof text, number);
    return {text, error == std::errc() ? end : text};
}

std::string quoted(const std::string& text)
{
    if (text.find_first_of(",\"\r\n") == std::string::npos)
        return text;
    std::string result = "\"";
    for (const char c : text)
        result += c == '"' ? std::string("\"\"") : std::string(1, c);
    return result + '"';
}

} // namespace

std::string profileTable(const SegmentProfile& profile)
{
    std::string table = "x (pixel),y (pixel),distance (" + std::string(profile.unit()) + ")";
    for (const ProfileCurve& curve : profile.curves)
        table += "," + quoted(curve.name);
    table += "\r\n";
    for (std::size_t i = 0; i < profile.pixels.size(); ++i) {
        table += numberText(profile.pixels[i].x) + "," + numberText(profile.pixels[i].y) + "," +
                 numberText(static_cast<float>(profile.distanceOf(i)));
        for (const ProfileCurve& curve : profile.curves)
            table += "," + numberText(curve.values[i]);
        table += "\r\n";
    }
    return table;
}

} // namespace viewer
