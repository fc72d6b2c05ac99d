// SPDX-License-Identifier: MIT
// Stacks and hyperstacks as ImageJ writes them: planes are stored channel by channel, then slice by slice,
// then frame by frame.
#include "platform/image/Dataset.h"
#include "platform/image/Error.h"
#include "platform/image/ImageJMetadata.h"
#include "platform/image/Plausible.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <vector>

namespace image {
namespace {

std::uint64_t bytesOfPlane(const Plane& plane)
{
    const Directory& d = plane.directory;
    return static_cast<std::uint64_t>(plane.rowBytes) * static_cast<std::uint64_t>(d.height) *
           static_cast<std::uint64_t>(d.planar ? d.samples : 1);
}

// A stack over 4 GB has one page only; its other planes follow the first one's data. Returns how many there
// are.
std::int64_t contiguousPlanes(const OpenedFile& opened, const Plane& plane, std::int64_t images)
{
    if (!opened.tiff->damage().empty() || plane.access != Plane::Access::RawRows)
        return 1;
    const std::uint64_t start = plane.directory.blockOffsets[0], end = opened.tiff->size();
    const std::uint64_t fit = start < end ? (end - start) / bytesOfPlane(plane) : 0;
    return std::max<std::int64_t>(1, std::min(images, static_cast<std::int64_t>(fit)));
}

void setImageJSizes(Dataset& dataset, const ImageJMetadata& metadata, std::int64_t planes)
{
    constexpr std::int64_t limit = 1 << 24;
    const std::int64_t c = metadata.channels, z = metadata.slices, t = metadata.frames;
    const std::int64_t images = std::max(metadata.images, planes);
    const bool fits = c <= limit && z <= limit && t <= limit && c * z <= limit && c * z * t == images;
    if (fits)
        setSizes(dataset, z, c * dataset.samplesPerPlane, t, 1);
    else
        setSizes(dataset, images, dataset.samplesPerPlane, 1, 1);
}

void placePlanes(Dataset& dataset, const OpenedFile& opened, const Plane& plane, std::int64_t images)
{
    const std::vector<PageSummary>& pages = opened.tiff->pages();
    const bool single = pages.size() == 1;
    const std::int64_t there =
        single ? contiguousPlanes(opened, plane, images) : static_cast<std::int64_t>(pages.size());
    const std::int64_t count = std::min<std::int64_t>(there, dataset.planesPerPosition());
    const PlaneRun run{0, static_cast<std::uint32_t>(count), {}, single ? bytesOfPlane(plane) : 0};
    dataset.places = PlaneMap({&run, 1});
}

// The resolution tags give pixels per unit; the description gives the unit and the spacing of z.
std::array<std::optional<double>, 3> spacingOf(const ImageJMetadata& metadata, const OpenedFile& opened)
{
    const std::uint64_t page = opened.tiff->pages()[0].offset;
    std::array<std::optional<double>, 3> microns;
    for (const int axis : {0, 1}) {
        const TiffTag tag = axis == 0 ? TagXResolution : TagYResolution;
        const std::optional<double> pixelsPerUnit = opened.tiff->tags().rational(page, tag);
        if (pixelsPerUnit && *pixelsPerUnit > 0 && metadata.unitMicrons[axis])
            microns[static_cast<std::size_t>(axis)] = *metadata.unitMicrons[axis] / *pixelsPerUnit;
    }
    if (!microns[0])
        return {};
    if (metadata.zSpacing && metadata.unitMicrons[2])
        microns[2] = *metadata.zSpacing * *metadata.unitMicrons[2];
    return microns;
}

void setDisplay(Dataset& dataset, const ImageJMetadata& metadata, const Plane& plane)
{
    std::vector<ColorHint> hints(static_cast<std::size_t>(dataset.info.sizeW));
    const bool colored = !metadata.grayscale && !isRgb(plane);
    for (std::size_t w = 0; colored && w < hints.size() && w < metadata.colors.size(); ++w)
        hints[w].color = metadata.colors[w];
    if (colored && hints.size() == 1 && !hints[0].color)
        hints[0].color = paletteColor(plane.directory);
    setWavelengths(dataset, plane, hints);
    if (metadata.signed16 || isRgb(plane))
        return; // ranges refer to other values than those that are read
    const auto setRange = [&](std::size_t w, std::optional<double> min, std::optional<double> max) {
        if (!plausible(min) || !plausible(max))
            return;
        dataset.info.wavelengths[w].displayMin = static_cast<float>(*min);
        dataset.info.wavelengths[w].displayMax = static_cast<float>(*max);
    };
    for (std::size_t w = 0; w < hints.size() && w < metadata.ranges.size(); ++w)
        setRange(w, metadata.ranges[w].first, metadata.ranges[w].second);
    if (metadata.ranges.empty() && hints.size() == 1)
        setRange(0, metadata.min, metadata.max);
}

} // namespace

// By value because OME's reader, a row of the same table, takes it over.
Dataset readImageJDataset(OpenedFile opened) // NOLINT(performance-unnecessary-value-param)
{
    const std::vector<PageSummary>& pages = opened.tiff->pages();
    const PlanePtr plane = opened.tiff->plane(pages[0].offset, std::nullopt);
    const ImageJMetadata metadata = readImageJ(opened.description, opened.tiff->tags(), pages[0].offset);
    Dataset dataset;
    dataset.files = std::make_shared<FileSet>(std::vector{opened.path});
    dataset.files->adopt(opened.path, opened.tiff);
    dataset.samplesPerPlane = plane->sampleCount;
    setImageJSizes(dataset, metadata, static_cast<std::int64_t>(pages.size()));
    setGeometry(dataset, *plane);
    placePlanes(dataset, opened, *plane, metadata.images);
    setSpacing(dataset.info, spacingOf(metadata, opened));
    setDisplay(dataset, metadata, *plane);
    dataset.positions.resize(1);
    dataset.positions[0].timeIncrement = plausible(metadata.frameSeconds);
    if (metadata.signed16 && plane->type == SampleType::U16) {
        dataset.valueOffset = -32768;
        dataset.info.pixelType = PixelType::Int16;
    }
    const bool oneDimension = dataset.channels() == 1 && (dataset.info.sizeZ == 1 || dataset.info.sizeT == 1);
    dataset.info.format = dataset.places.count() == 1 ? "ImageJ image"
                          : oneDimension              ? "ImageJ stack"
                                                      : "ImageJ hyperstack";
    return dataset;
}

} // namespace image
