// SPDX-License-Identifier: MIT
#include "batch/measure/Sampler.h"

#include "profile/Truncation.h"

#include <algorithm>
#include <vector>

namespace batch {

namespace {

PixelPoint pixelOf(const Point& point, const SectionPixels& section)
{
    const PixelPoint pixel{truncateToInt(static_cast<float>(point.x)),
                           truncateToInt(static_cast<float>(point.y))};
    if (point.x < 0 || point.y < 0 || pixel.x >= section.width() || pixel.y >= section.height())
        throw MeasureError("The line leaves the image.");
    return pixel;
}

} // namespace

// A pixel in which two pieces meet counts once.
void Sampler::walk(const Path& path, const SectionPixels& section)
{
    std::vector<PixelPoint>& all = profile.pixels;
    PixelPoint from = pixelOf(path.start(), section);
    all.assign(1, from);
    for (std::size_t i = 1; i < path.points.size(); ++i) {
        const PixelPoint to = pixelOf(path.points[i], section);
        const WalkRect rect = boundingRect(from, to);
        const std::size_t joint = all.size() - 1;
        all.resize(joint + static_cast<std::size_t>(std::max(rect.width(), rect.height())));
        walkLine(from, to, all.data() + joint);
        from = to;
    }
    if (all.size() < 2)
        throw MeasureError("The line lies in one pixel.");
}

const Profile& Sampler::digital(SectionPixels& section, const Path& path)
{
    profile.exact.clear();
    profile.counts.clear();
    walk(path, section);
    const auto count = static_cast<std::int32_t>(profile.pixels.size());
    section.require(profile.pixels.data(), count);
    profile.values.resize(profile.pixels.size());
    profile.pixelCount = count;
    std::ranges::transform(profile.pixels, profile.values.begin(),
                           [&](const PixelPoint& pixel) { return section.at(pixel.x, pixel.y); });
    return profile;
}

const Profile& Sampler::band(SectionPixels& section, const Path& path, Reduce reduce)
{
    profile.pixels.clear();
    collector.collect(section, path, reduce, profile);
    if (profile.pixelCount == 0)
        throw MeasureError("The band holds no pixel of the image.");
    return profile;
}

} // namespace batch
