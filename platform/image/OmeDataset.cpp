// SPDX-License-Identifier: MIT
// OME-TIFF: one file, several files that name each other, or files whose metadata is in a companion.
#include "platform/image/Dataset.h"
#include "platform/image/Error.h"
#include "platform/image/OmeMetadata.h"
#include "platform/image/SiblingFiles.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace image {
namespace {

class OmeReader {
public:
    explicit OmeReader(OpenedFile opened);
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
    void placeData(const OmeTiffData& data, int p);
    bool isOpen(std::uint32_t file) const { return holder.tiff && siblings->paths()[file] == holder.path; }
    void checkPages();
    void setValues(int p);
    void setChannels(const Plane& plane);
    const OmeChannel* channelOf(const OmeImage& image, int wavelength) const;
    std::string format() const;

    OpenedFile holder; // the file that holds the metadata
    OmeDocument document;
    std::unique_ptr<SiblingFiles> siblings;
    std::vector<std::optional<std::uint32_t>> found; // of siblings, for each of the document's files
    std::shared_ptr<FileSet> files;
    const OmeImage* reference = nullptr;
    std::vector<const OmeImage*> positions; // images of the reference's size
    Dataset dataset;
    std::uint32_t nextUntagged = 0; // page of the holder, for images without TiffData
    std::vector<PlaneRun> runs;     // as named, the same plane perhaps several times
};

} // namespace

namespace {

// Takes the description of the opened file. holder: the file that has the metadata, opened by its name where
// it is another one; uuid: of the opened file.
OmeDocument metadataOf(OpenedFile& opened, OpenedFile& holder, std::string& uuid)
{
    OmeDocument document = parseOme(std::move(opened.description));
    uuid = document.uuid;
    holder = {opened.path, opened.tiff, {}};
    if (document.metadataFile.empty())
        return document;
    const std::filesystem::path name = std::filesystem::path(document.metadataFile).filename();
    const std::filesystem::path path = opened.path.parent_path() / name;
    if (!std::filesystem::exists(path))
        throw FormatError("the file with its metadata, " + name.string() + ", is not there");
    holder = openForReading(path);
    document = parseOme(std::move(holder.description));
    if (!document.metadataFile.empty())
        throw FormatError("the file with its metadata, " + name.string() + ", holds none");
    return document;
}

bool namesOneFile(const OmeDocument& document)
{
    return !document.files.empty() && std::ranges::all_of(document.files, [&](const OmeFile& file) {
        return file.name == document.files[0].name;
    });
}

} // namespace

OmeReader::OmeReader(OpenedFile opened)
{
    std::string uuid;
    document = metadataOf(opened, holder, uuid);
    siblings = std::make_unique<SiblingFiles>(opened, uuid, holder, namesOneFile(document));
    for (const OmeFile& file : document.files)
        found.push_back(siblings->find(file.name, file.uuid));
    for (const OmeImage& image : document.images)
        if (image.tiffData.empty() && holder.tiff)
            siblings->find("", "");
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
        const auto file = found[data.file];
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
    if (const std::size_t others = document.images.size() - positions.size(); others > 0)
        dataset.info.remarks.push_back(counted(others, "image") + " of another size or kind " +
                                       (others == 1 ? "is" : "are") + " not shown.");
    for (const OmeImage* image : positions) {
        const std::string& order = image->dimensionOrder;
        dataset.positions.push_back({{order[2], order[3], order[4]}, image->timeIncrement, {}});
    }
}

// Refuses pages that contradict the metadata, as far as their files are open anyway.
void OmeReader::checkPages()
{
    for (const PlaneRun& run : dataset.places.runs())
        for (std::uint32_t page = run.place.page; isOpen(run.place.file) && page < run.place.page + run.count;
             ++page) {
            const PageSummary& there = holder.tiff->pages()[page];
            if (there.width != reference->sizeX || there.height != reference->sizeY)
                throw FormatError("its metadata claim " + std::to_string(reference->sizeX) + " x " +
                                  std::to_string(reference->sizeY) + " pixels but page " +
                                  std::to_string(page + 1) + " has " + std::to_string(there.width) + " x " +
                                  std::to_string(there.height));
        }
}

namespace {

// The first plane that TiffData mean; nothing when it is outside the image.
std::optional<PlaneIndex> firstPlane(const Dataset& dataset, const OmeTiffData& data, int p)
{
    // Some writers count samples in FirstC.
    const int channels = dataset.channels();
    const int c = data.firstC >= channels ? data.firstC / dataset.samplesPerPlane : data.firstC;
    const bool inside = data.firstZ >= 0 && data.firstZ < dataset.info.sizeZ && c >= 0 && c < channels &&
                        data.firstT >= 0 && data.firstT < dataset.info.sizeT;
    return inside ? std::optional(PlaneIndex{data.firstZ, c, data.firstT, p}) : std::nullopt;
}

} // namespace

void OmeReader::placeData(const OmeTiffData& data, int p)
{
    constexpr std::int64_t maxPage = 1 << 20;
    const auto file = found[data.file];
    const std::optional<PlaneIndex> first = firstPlane(dataset, data, p);
    const std::int64_t page = data.page.value_or(0), planes = dataset.planesPerPosition();
    if (!file || !first || page < 0)
        return;
    if (page > maxPage)
        throw FormatError("its metadata name more planes than any image has");
    std::int64_t count = data.planeCount.value_or(static_cast<std::int32_t>(data.page ? 1 : planes));
    // To limit the run by the pages of its file, the file must be opened; for a single plane that is not
    // worth it.
    if (isOpen(*file) || count != 1)
        count = std::min<std::int64_t>(count, std::int64_t{pageCount(*file)} - page);
    const std::uint32_t key = dataset.key(*first);
    count = std::min(count, planes * (p + 1) - key);
    if (count > 0)
        runs.push_back(
            {key, static_cast<std::uint32_t>(count), {*file, static_cast<std::uint32_t>(page), 0}});
}

void OmeReader::placeImage(int p)
{
    const OmeImage& image = *positions[static_cast<std::size_t>(p)];
    for (const OmeTiffData& data : image.tiffData)
        placeData(data, p);
    if (!image.tiffData.empty())
        return;
    const auto file = siblings->find("", "");
    if (!file || nextUntagged >= pageCount(*file))
        return;
    const std::uint32_t count = std::min(dataset.planesPerPosition(), pageCount(*file) - nextUntagged);
    runs.push_back({dataset.key({0, 0, 0, p}), count, {*file, nextUntagged, 0}});
    nextUntagged += count;
}

// Appends what is known of the position's planes by their keys; of a plane that is described twice the last
// description holds.
void OmeReader::setValues(int p)
{
    const std::vector<OmePlane>& planes = positions[static_cast<std::size_t>(p)]->planes;
    std::vector<std::pair<std::uint32_t, std::uint32_t>> order; // key, index in planes
    order.reserve(planes.size());
    for (std::size_t i = 0; i < planes.size(); ++i) {
        const OmePlane& plane = planes[i];
        const int c = plane.c >= dataset.channels() ? plane.c / dataset.samplesPerPlane : plane.c;
        const bool inside = plane.z >= 0 && plane.z < dataset.info.sizeZ && c >= 0 &&
                            c < dataset.channels() && plane.t >= 0 && plane.t < dataset.info.sizeT;
        if (inside)
            order.emplace_back(dataset.key({plane.z, c, plane.t, p}), static_cast<std::uint32_t>(i));
    }
    std::ranges::sort(order);
    for (std::size_t i = 0; i < order.size(); ++i) {
        const OmePlane& plane = planes[order[i].second];
        if (i + 1 == order.size() || order[i + 1].first != order[i].first)
            dataset.values.push_back({order[i].first, plane.deltaT, plane.position});
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
    for (std::size_t p = 0; p < positions.size(); ++p)
        for (const OmeChannel& channel : positions[p]->channels)
            dataset.positions[p].bias.push_back(channel.detectorOffset);
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
    dataset.places = PlaneMap(runs);
    runs = {};
    checkPages();
    if (dataset.places.empty())
        throw FormatError("it holds none of the planes that its metadata name");
    setSpacing(dataset.info, reference->spacing);
    setChannels(*plane);
    dataset.info.format = format();
    return std::move(dataset);
}

Dataset readOmeDataset(OpenedFile opened)
{
    return OmeReader(std::move(opened)).read();
}

} // namespace image
