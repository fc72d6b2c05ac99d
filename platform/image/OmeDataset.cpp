// OME-TIFF: one file, several files that name each other, or files whose metadata is in a companion.
#include "platform/image/Dataset.h"
#include "platform/image/Error.h"
#include "platform/image/OmeMetadata.h"
#include "platform/image/SiblingFiles.h"

#include <algorithm>
#include <set>

namespace image {

namespace {

class OmeReader {
public:
    explicit OmeReader(const OpenedFile& opened);
    Dataset read();

private:
    struct Place {
        std::uint32_t file, page;
    };

    std::uint32_t pageCount(std::uint32_t file)
    {
        return static_cast<std::uint32_t>(files->file(file)->pages().size());
    }
    std::optional<Place> firstPlace(const OmeImage& image);
    PlanePtr findReference();
    void setSamplesPerPlane(const Plane& plane);
    void findPositions();
    void placeImage(int p);
    void placeData(const OmeTiffData& data, const OmeImage& image, int p);
    void place(const OmeImage& image, std::int64_t raster, int p, Place where);
    void checkPage(Place where);
    void setValues(int p);
    void setChannels(const Plane& plane);
    const OmeChannel* channelOf(const OmeImage& image, int wavelength) const;
    std::string format() const;

    OpenedFile holder; // the file that holds the metadata
    OmeDocument document;
    std::unique_ptr<SiblingFiles> siblings;
    std::shared_ptr<FileSet> files;
    const OmeImage* reference = nullptr;
    std::vector<const OmeImage*> positions; // images of the reference's size
    Dataset dataset;
    std::uint32_t nextUntagged = 0; // page of the holder, for images without TiffData
    std::int64_t steps = 0;         // planes named so far, the same one counted again
};

} // namespace

static OmeDocument metadataOf(const OpenedFile& opened, OpenedFile& holder)
{
    OmeDocument document = parseOme(opened.description);
    holder = {opened.path, opened.tiff, {}};
    if (document.metadataFile.empty())
        return document;
    const std::filesystem::path name = std::filesystem::path(document.metadataFile).filename();
    const std::filesystem::path path = opened.path.parent_path() / name;
    if (!std::filesystem::exists(path))
        throw FormatError("the file with its metadata, " + name.string() + ", is not there");
    holder = openForReading(path);
    document = parseOme(holder.description);
    if (!document.metadataFile.empty())
        throw FormatError("the file with its metadata, " + name.string() + ", holds none");
    return document;
}

static bool namesOneFile(const OmeDocument& document)
{
    std::set<std::string> names;
    for (const OmeImage& image : document.images)
        for (const OmeTiffData& data : image.tiffData)
            names.insert(data.fileName);
    return names.size() == 1;
}

OmeReader::OmeReader(const OpenedFile& opened) : document(metadataOf(opened, holder))
{
    siblings = std::make_unique<SiblingFiles>(opened, holder, namesOneFile(document));
    for (const OmeImage& image : document.images) {
        for (const OmeTiffData& data : image.tiffData)
            siblings->find(data.fileName, data.uuid);
        if (image.tiffData.empty() && holder.tiff)
            siblings->find("", "");
    }
    if (siblings->paths().empty())
        throw FormatError(siblings->missing().empty() ? "its metadata name no file with pixels"
                                                      : "none of the files that it names is there");
    files = std::make_shared<FileSet>(siblings->paths());
    files->adopt(holder.path, holder.tiff);
    files->adopt(opened.path, opened.tiff);
}

std::optional<OmeReader::Place> OmeReader::firstPlace(const OmeImage& image)
{
    if (image.tiffData.empty()) {
        const auto file = siblings->find("", "");
        return file ? std::optional(Place{*file, 0}) : std::nullopt;
    }
    for (const OmeTiffData& data : image.tiffData) {
        const auto file = siblings->find(data.fileName, data.uuid);
        const std::int64_t page = data.page.value_or(0);
        if (file && page >= 0 && page < pageCount(*file))
            return Place{*file, static_cast<std::uint32_t>(page)};
    }
    return std::nullopt;
}

// The first image that has a plane decides the dimensions.
PlanePtr OmeReader::findReference()
{
    for (const OmeImage& image : document.images)
        if (const std::optional<Place> first = firstPlace(image)) {
            reference = &image;
            const std::shared_ptr<TiffFile> file = files->file(first->file);
            return file->plane(file->pages()[first->page].offset, image.type);
        }
    throw FormatError("it holds none of the planes that its metadata name");
}

// SizeC counts samples: an RGB page holds three of them.
void OmeReader::setSamplesPerPlane(const Plane& plane)
{
    const std::int64_t samples = plane.sampleCount, sizeC = reference->sizeC;
    if (samples > 1 && sizeC > samples && sizeC % samples != 0)
        throw FormatError("its metadata claims " + std::to_string(sizeC) + " channels but its pages hold " +
                          std::to_string(samples) + " each");
    dataset.samplesPerPlane = static_cast<int>(std::clamp<std::int64_t>(sizeC, 1, samples));
}

void OmeReader::findPositions()
{
    const OmeImage& r = *reference;
    for (const OmeImage& i : document.images)
        if (i.sizeX == r.sizeX && i.sizeY == r.sizeY && i.sizeZ == r.sizeZ && i.sizeC == r.sizeC &&
            i.sizeT == r.sizeT && i.type == r.type)
            positions.push_back(&i);
    setSizes(dataset, r.sizeZ, r.sizeC, r.sizeT, static_cast<std::int64_t>(positions.size()));
}

// A page that contradicts the metadata is told at once when its file is open anyway.
void OmeReader::checkPage(Place where)
{
    const std::shared_ptr<TiffFile> file = holder.tiff;
    if (!file || siblings->paths()[where.file] != holder.path)
        return;
    const PageSummary& page = file->pages()[where.page];
    if (page.width != reference->sizeX || page.height != reference->sizeY)
        throw FormatError("its metadata claim " + std::to_string(reference->sizeX) + " x " +
                          std::to_string(reference->sizeY) + " pixels but page " +
                          std::to_string(where.page + 1) + " has " + std::to_string(page.width) + " x " +
                          std::to_string(page.height));
}

// raster counts the image's planes in its dimension order.
void OmeReader::place(const OmeImage& image, std::int64_t raster, int p, Place where)
{
    PlaneIndex index{0, 0, 0, p};
    for (const char dimension : image.dimensionOrder.substr(2)) {
        int& value = dimension == 'Z' ? index.z : dimension == 'C' ? index.channel : index.t;
        const int size = dimension == 'Z'   ? dataset.info.sizeZ
                         : dimension == 'C' ? dataset.channels()
                                            : dataset.info.sizeT;
        value = static_cast<int>(raster % size);
        raster /= size;
    }
    checkPage(where);
    dataset.places.try_emplace(dataset.key(index), PlanePlace{where.file, where.page, 0});
}

// Where a plane stands in the image's dimension order; nothing when it is outside the image.
static std::optional<std::int64_t> rasterOf(const OmeImage& image, const Dataset& dataset,
                                            const OmeTiffData& data)
{
    // Some writers count samples in FirstC.
    const std::int64_t channels = dataset.channels();
    const std::int64_t c = data.firstC >= channels ? data.firstC / dataset.samplesPerPlane : data.firstC;
    std::int64_t raster = 0, stride = 1;
    for (const char dimension : image.dimensionOrder.substr(2)) {
        const std::int64_t size = dimension == 'Z'   ? dataset.info.sizeZ
                                  : dimension == 'C' ? channels
                                                     : dataset.info.sizeT;
        const std::int64_t at = dimension == 'Z' ? data.firstZ : dimension == 'C' ? c : data.firstT;
        if (at < 0 || at >= size)
            return std::nullopt;
        raster += at * stride;
        stride *= size;
    }
    return raster;
}

void OmeReader::placeData(const OmeTiffData& data, const OmeImage& image, int p)
{
    constexpr std::int64_t maxSteps = 1 << 25;
    const auto file = siblings->find(data.fileName, data.uuid);
    const std::optional<std::int64_t> raster = rasterOf(image, dataset, data);
    const std::int64_t page = data.page.value_or(0);
    if (!file || !raster || page < 0)
        return;
    const std::int64_t planes = std::int64_t{dataset.info.sizeZ} * dataset.channels() * dataset.info.sizeT;
    std::int64_t count = data.planeCount.value_or(data.page ? 1 : planes);
    // A file of the set that is not open yet need not be opened for a single plane.
    const bool known = holder.tiff && siblings->paths()[*file] == holder.path;
    if (known || count != 1)
        count = std::min<std::int64_t>(count, std::int64_t{pageCount(*file)} - page);
    count = std::min(count, planes - *raster);
    steps += std::max<std::int64_t>(count, 1);
    if (steps > maxSteps || page > (1 << 20))
        throw FormatError("its metadata name more planes than any image has");
    for (std::int64_t i = 0; i < count; ++i)
        place(image, *raster + i, p, {*file, static_cast<std::uint32_t>(page + i)});
}

void OmeReader::placeImage(int p)
{
    const OmeImage& image = *positions[static_cast<std::size_t>(p)];
    for (const OmeTiffData& data : image.tiffData)
        placeData(data, image, p);
    if (!image.tiffData.empty())
        return;
    const auto file = siblings->find("", "");
    const std::int64_t planes = std::int64_t{dataset.info.sizeZ} * dataset.channels() * dataset.info.sizeT;
    for (std::int64_t i = 0; file && i < planes && nextUntagged < pageCount(*file); ++i)
        place(image, i, p, {*file, nextUntagged++});
}

void OmeReader::setValues(int p)
{
    for (const OmePlane& plane : positions[static_cast<std::size_t>(p)]->planes) {
        const std::int64_t c = plane.c >= dataset.channels() ? plane.c / dataset.samplesPerPlane : plane.c;
        const bool inside = plane.z >= 0 && plane.z < dataset.info.sizeZ && c >= 0 &&
                            c < dataset.channels() && plane.t >= 0 && plane.t < dataset.info.sizeT;
        const bool any = plane.deltaT || plane.position[0] || plane.position[1] || plane.position[2];
        if (inside && any)
            dataset.values[dataset.key({static_cast<int>(plane.z), static_cast<int>(c),
                                        static_cast<int>(plane.t), p})] = {plane.deltaT, plane.position};
    }
}

// The Channel element of a wavelength: one for each plane, or (with some writers) one for each sample.
const OmeChannel* OmeReader::channelOf(const OmeImage& image, int wavelength) const
{
    const bool perSample = static_cast<int>(image.channels.size()) == dataset.info.sizeW;
    const int index = perSample ? wavelength : wavelength / dataset.samplesPerPlane;
    return index < static_cast<int>(image.channels.size()) ? &image.channels[static_cast<std::size_t>(index)]
                                                           : nullptr;
}

void OmeReader::setChannels(const Plane& plane)
{
    const auto count = static_cast<std::size_t>(dataset.info.sizeW);
    std::vector<ColorHint> hints(count);
    const auto samples = static_cast<std::size_t>(dataset.samplesPerPlane);
    std::vector<std::string> names((count + samples - 1) / samples); // of channels
    for (std::size_t w = 0; w < count; ++w)
        if (const OmeChannel* channel = channelOf(*reference, static_cast<int>(w))) {
            hints[w] = channel->hint;
            names[w / samples] = channel->name;
        }
    if (count == 1 && !hints[0].color)
        hints[0].color = paletteColor(plane.directory);
    setWavelengths(dataset, plane, hints, names);
    for (std::size_t w = 0; w < count; ++w)
        dataset.info.wavelengths[w].nanometres =
            static_cast<float>(hints[w].emission.value_or(hints[w].excitation.value_or(0)));
    for (const OmeImage* image : positions)
        for (int w = 0; w < dataset.info.sizeW; ++w) {
            const OmeChannel* channel = channelOf(*image, w);
            dataset.bias.push_back(channel ? channel->detectorOffset : std::nullopt);
        }
}

std::string OmeReader::format() const
{
    const std::size_t count = siblings->paths().size(), lost = siblings->missing().size();
    std::string text = "OME-TIFF";
    if (count > 1 || lost > 0)
        text += ", " + std::to_string(count) + (count == 1 ? " file" : " files");
    if (lost > 0)
        text += " (" + std::to_string(lost) + " missing)";
    return text;
}

Dataset OmeReader::read()
{
    const PlanePtr plane = findReference();
    dataset.files = files;
    dataset.declaredType = reference->type;
    setSamplesPerPlane(*plane);
    findPositions();
    setGeometry(dataset, *plane);
    if (plane->width() != reference->sizeX || plane->height() != reference->sizeY)
        throw FormatError("its metadata claim " + std::to_string(reference->sizeX) + " x " +
                          std::to_string(reference->sizeY) + " pixels but its pages have " +
                          std::to_string(plane->width()) + " x " + std::to_string(plane->height()));
    for (int p = 0; p < dataset.info.sizeP; ++p) {
        placeImage(p);
        setValues(p);
    }
    if (dataset.places.empty())
        throw FormatError("it holds none of the planes that its metadata name");
    setSpacing(dataset.info, reference->spacing);
    setChannels(*plane);
    dataset.info.format = format();
    return std::move(dataset);
}

Dataset readOmeDataset(const OpenedFile& opened)
{
    return OmeReader(opened).read();
}

} // namespace image
