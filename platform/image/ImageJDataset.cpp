// Stacks and hyperstacks as ImageJ writes them: planes are stored channel by channel, then slice by slice,
// then frame by frame.
#include "platform/image/Dataset.h"
#include "platform/image/Error.h"
#include "platform/image/ImageJMetadata.h"

#include <algorithm>

namespace image {

static std::uint64_t bytesOfPlane(const Plane& plane)
{
    const Directory& d = plane.directory;
    return static_cast<std::uint64_t>(plane.rowBytes) * static_cast<std::uint64_t>(d.height) *
           static_cast<std::uint64_t>(d.planar ? d.samples : 1);
}

// A stack over 4 GB has one page only; its other planes follow the first one's data. Returns how many there
// are.
static std::int64_t contiguousPlanes(const OpenedFile& opened, const Plane& plane, std::int64_t images)
{
    if (opened.tiff->pages().size() != 1 || plane.access != Plane::Access::RawRows)
        return 1;
    const std::uint64_t start = plane.directory.blockOffsets[0], end = opened.tiff->size();
    const std::uint64_t fit = start < end ? (end - start) / bytesOfPlane(plane) : 0;
    return std::max<std::int64_t>(1, std::min(images, static_cast<std::int64_t>(fit)));
}

static void setImageJSizes(Dataset& dataset, const ImageJMetadata& metadata, std::int64_t planes)
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

static void placePlanes(Dataset& dataset, const OpenedFile& opened, const Plane& plane, std::int64_t images)
{
    const std::vector<PageSummary>& pages = opened.tiff->pages();
    const bool single = pages.size() == 1;
    const std::int64_t there =
        single ? contiguousPlanes(opened, plane, images) : static_cast<std::int64_t>(pages.size());
    const int channels = dataset.channels(), sizeZ = dataset.info.sizeZ;
    const std::int64_t count =
        std::min<std::int64_t>(there, std::int64_t{channels} * sizeZ * dataset.info.sizeT);
    for (std::int64_t i = 0; i < count; ++i) {
        const PlaneIndex index{static_cast<int>(i / channels % sizeZ), static_cast<int>(i % channels),
                               static_cast<int>(i / channels / sizeZ), 0};
        const auto page = static_cast<std::uint32_t>(single ? 0 : i);
        const std::uint64_t shift = single ? static_cast<std::uint64_t>(i) * bytesOfPlane(plane) : 0;
        dataset.places[dataset.key(index)] = {0, page, shift};
    }
}

static void setSpacing(Dataset& dataset, const ImageJMetadata& metadata, const OpenedFile& opened)
{
    const std::uint64_t page = opened.tiff->pages()[0].offset;
    const std::optional<double> x = opened.tiff->tags().rational(page, TagXResolution);
    const std::optional<double> y = opened.tiff->tags().rational(page, TagYResolution);
    if (!metadata.unitMicrons[0] || !x || *x <= 0)
        return;
    ImageInfo& info = dataset.info;
    info.calibrated = true;
    info.spacing[0] = static_cast<float>(*metadata.unitMicrons[0] / *x);
    info.spacing[1] = y && *y > 0 && metadata.unitMicrons[1]
                          ? static_cast<float>(*metadata.unitMicrons[1] / *y)
                          : info.spacing[0];
    if (metadata.zSpacing && metadata.unitMicrons[2])
        info.spacing[2] = static_cast<float>(*metadata.zSpacing * *metadata.unitMicrons[2]);
}

static void setDisplay(Dataset& dataset, const ImageJMetadata& metadata, const Plane& plane)
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
    for (std::size_t w = 0; w < hints.size() && w < metadata.ranges.size(); ++w) {
        dataset.info.wavelengths[w].displayMin = static_cast<float>(metadata.ranges[w].first);
        dataset.info.wavelengths[w].displayMax = static_cast<float>(metadata.ranges[w].second);
    }
    if (metadata.ranges.empty() && hints.size() == 1 && metadata.min && metadata.max) {
        dataset.info.wavelengths[0].displayMin = static_cast<float>(*metadata.min);
        dataset.info.wavelengths[0].displayMax = static_cast<float>(*metadata.max);
    }
}

Dataset readImageJDataset(const OpenedFile& opened)
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
    setSpacing(dataset, metadata, opened);
    setDisplay(dataset, metadata, *plane);
    if (metadata.signed16 && plane->type == SampleType::U16) {
        dataset.valueOffset = -32768;
        dataset.info.pixelType = PixelType::Int16;
    }
    const bool oneDimension = dataset.channels() == 1 && (dataset.info.sizeZ == 1 || dataset.info.sizeT == 1);
    dataset.info.format = dataset.places.size() == 1 ? "ImageJ image"
                          : oneDimension             ? "ImageJ stack"
                                                     : "ImageJ hyperstack";
    return dataset;
}

} // namespace image
