// SPDX-License-Identifier: MIT
#include "platform/image/TiffImage.h"

#include "platform/image/Error.h"
#include "platform/image/ImageJMetadata.h"
#include "platform/image/OmeMetadata.h"
#include "platform/image/SectionReader.h"

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <iterator>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace image {
namespace {

// The section that a thread read last. One per thread.
struct RecentSection {
    std::uint64_t image = 0; // TiffImage::id, 0: none
    SectionIndex section;
    int level = 0;
    SectionReader reader;
};

struct Level {
    int width = 0, height = 0;
    int subDirectory = -1; // of the plane's own list, or
    int following = 0;     // how many pages after the plane's
};

thread_local RecentSection recentSection;
thread_local std::string lastReadError;

class TiffImage final : public ImageFile {
public:
    explicit TiffImage(Dataset&& data);
    ~TiffImage() override;

    const ImageInfo& info() const override { return dataset.info; }
    bool hasSection(const SectionIndex& section) const override { return place(section).has_value(); }
    bool isComplete(const SectionIndex& section) override;
    bool read(const SectionIndex& section, const PixelRect& rect, std::span<float> out) override;
    BlockSize blockSize(const SectionIndex& section) override;
    int levelCount() const override { return static_cast<int>(levels.size()); }
    double levelScale(int level) const override;
    int levelWidth(int level) const override { return validLevel(level) ? levels[level].width : 0; }
    int levelHeight(int level) const override { return validLevel(level) ? levels[level].height : 0; }
    bool readLevel(const SectionIndex& section, int level, const PixelRect& rect,
                   std::span<float> out) override;
    std::optional<double> extendedHeader(const SectionIndex& section, int field) const override;
    std::string lastError() const override { return lastReadError; }
    bool valueRange(const SectionIndex& section, const std::stop_token& stop, float& min,
                    float& max) override;
    std::vector<std::filesystem::path> files() const override;

private:
    bool validLevel(int level) const { return level >= 0 && level < levelCount(); }
    std::optional<PlanePlace> place(const SectionIndex& section) const;
    void checkFirstSection();
    void findLevels(TiffFile& file, const PlanePlace& where, const Plane& plane);
    template<class Action> bool attempt(const SectionIndex& section, Action action);
    bool fail(const SectionIndex& section, std::string reason);
    SectionReader& readerOf(const SectionIndex& section, int level);
    void lookUp(SectionReader& reader, const SectionIndex& section, int level);
    PlanePtr levelPlane(TiffFile& file, const PlanePlace& where, int level);

    Dataset dataset;
    std::vector<Level> levels;
    std::uint64_t id;
};

} // namespace

namespace {

std::uint64_t nextImageId()
{
    static std::atomic<std::uint64_t> last = 0;
    return ++last;
}

} // namespace

TiffImage::TiffImage(Dataset&& data) : dataset(std::move(data)), id(nextImageId())
{
    checkFirstSection();
}

TiffImage::~TiffImage()
{
    if (recentSection.image == id)
        recentSection = {};
}

std::optional<PlanePlace> TiffImage::place(const SectionIndex& s) const
{
    const ImageInfo& i = dataset.info;
    if (s.z < 0 || s.w < 0 || s.t < 0 || s.p < 0 || s.z >= i.sizeZ || s.w >= i.sizeW || s.t >= i.sizeT ||
        s.p >= i.sizeP)
        return std::nullopt;
    return dataset.places.find(dataset.key(dataset.planeIndex(s)));
}

// Refuses at once an image whose first section cannot be read.
void TiffImage::checkFirstSection()
{
    const PlanePlace where = dataset.places.runs().front().place;
    const std::shared_ptr<TiffFile> file = dataset.files->file(where.file);
    if (where.page >= file->pages().size())
        throw FormatError("it lacks the page of its first section");
    const PlanePtr plane =
        file->plane(file->pages()[where.page].offset, dataset.declaredType, where.firstByteShift);
    try {
        file->check(*plane);
    } catch (const StalePlane&) {
        throw FormatError("it is being written by another program");
    }
    findLevels(*file, where, *plane);
}

void TiffImage::findLevels(TiffFile& file, const PlanePlace& where, const Plane& plane)
{
    levels = {{plane.width(), plane.height(), -1, 0}};
    const auto add = [&](std::uint64_t offset, Level level) {
        try {
            const PlanePtr reduced = file.plane(offset, dataset.declaredType);
            level.width = reduced->width();
            level.height = reduced->height();
            if (level.width < levels.back().width && level.height <= levels.back().height &&
                reduced->sampleCount == plane.sampleCount && reduced->type == plane.type)
                levels.push_back(level);
        } catch (const FormatError&) {
            // A damaged reduced copy is left out: the full image does without.
        }
    };
    for (std::size_t i = 0; i < plane.directory.subDirectories.size(); ++i)
        add(plane.directory.subDirectories[i], {0, 0, static_cast<int>(i), 0});
    const std::vector<PageSummary>& pages = file.pages();
    for (std::size_t i = where.page + 1; i < pages.size() && pages[i].reduced && levels.size() < 32; ++i)
        add(pages[i].offset, {0, 0, -1, static_cast<int>(i - where.page)});
}

double TiffImage::levelScale(int level) const
{
    return validLevel(level) ? static_cast<double>(info().width) / levels[level].width : 1.0;
}

PlanePtr TiffImage::levelPlane(TiffFile& file, const PlanePlace& where, int level)
{
    PlanePtr plane = file.plane(file.pages()[where.page].offset, dataset.declaredType, where.firstByteShift);
    if (level == 0)
        return plane;
    const Level& wanted = levels[static_cast<std::size_t>(level)];
    if (wanted.following > 0) {
        const std::size_t page = where.page + static_cast<std::size_t>(wanted.following);
        if (page >= file.pages().size())
            throw FormatError("the section has no such reduced copy");
        return file.plane(file.pages()[page].offset, dataset.declaredType);
    }
    const auto& reduced = plane->directory.subDirectories;
    if (wanted.subDirectory >= static_cast<int>(reduced.size()))
        throw FormatError("the section has no such reduced copy");
    return file.plane(reduced[static_cast<std::size_t>(wanted.subDirectory)], dataset.declaredType);
}

void TiffImage::lookUp(SectionReader& reader, const SectionIndex& section, int level)
{
    const std::optional<PlanePlace> where = place(section);
    if (!where)
        throw FormatError("the image has no such section");
    std::shared_ptr<TiffFile> file = dataset.files->file(where->file);
    if (where->page >= file->pages().size())
        throw FormatError("the file has no page " + std::to_string(where->page + 1));
    const PlanePtr plane = levelPlane(*file, *where, level);
    const Level& size = levels[static_cast<std::size_t>(level)];
    if (plane->width() != size.width || plane->height() != size.height)
        throw FormatError("the section has another size than the image");
    if (plane->sampleCount < dataset.samplesPerPlane)
        throw FormatError("the section has fewer samples per pixel than the image");
    reader.take(std::move(file), plane, section.w % dataset.samplesPerPlane, dataset.valueOffset);
}

SectionReader& TiffImage::readerOf(const SectionIndex& section, int level)
{
    RecentSection& recent = recentSection;
    if (recent.image != id || recent.section != section || recent.level != level) {
        recent.image = 0; // in case of an exception
        lookUp(recent.reader, section, level);
        recent.image = id;
        recent.section = section;
        recent.level = level;
    }
    return recent.reader;
}

namespace {

std::string nameOf(const SectionIndex& s)
{
    return "section z " + std::to_string(s.z) + ", wavelength " + std::to_string(s.w) + ", time " +
           std::to_string(s.t) + ", position " + std::to_string(s.p);
}

} // namespace

bool TiffImage::fail(const SectionIndex& section, std::string reason)
{
    const std::optional<PlanePlace> where = place(section);
    try {
        if (where && dataset.files->file(where->file)->changed())
            reason = "the file has changed since it was opened (" + reason + ")";
    } catch (const FormatError&) {
        // The file cannot be opened any more, which the reason says already.
    }
    recentSection = {};
    lastReadError =
        "Cannot read " + nameOf(section) + " of \"" + dataset.info.path.string() + "\": " + reason + ".";
    return false;
}

// Runs a read; a file that was changed meanwhile is looked at anew, once.
template<class Action> bool TiffImage::attempt(const SectionIndex& section, Action action)
{
    try {
        try {
            return action();
        } catch (const StalePlane&) {
            recentSection = {};
            return action();
        }
    } catch (const StalePlane&) {
        return fail(section, "another program is writing to it");
    } catch (const std::bad_alloc&) {
        return fail(section, "there is not enough memory");
    } catch (const std::exception& error) {
        return fail(section, error.what());
    }
}

bool TiffImage::isComplete(const SectionIndex& section)
{
    return attempt(section, [&] {
        readerOf(section, 0).requireComplete();
        return true;
    });
}

ImageFile::BlockSize TiffImage::blockSize(const SectionIndex& section)
{
    BlockSize size = ImageFile::blockSize(section);
    attempt(section, [&] {
        const Plane& page = readerOf(section, 0).page();
        size = {std::min(size.width, page.blockWidth), std::min(size.height, page.blockHeight)};
        return true;
    });
    return size;
}

bool TiffImage::read(const SectionIndex& section, const PixelRect& rect, std::span<float> out)
{
    return readLevel(section, 0, rect, out);
}

bool TiffImage::readLevel(const SectionIndex& section, int level, const PixelRect& rect, std::span<float> out)
{
    return attempt(section, [&] {
        if (!validLevel(level))
            throw FormatError("the image has no such reduced copy");
        const Level& size = levels[static_cast<std::size_t>(level)];
        if (rect.xFirst < 0 || rect.yFirst < 0 || rect.xLast < rect.xFirst || rect.yLast < rect.yFirst ||
            rect.xLast >= size.width || rect.yLast >= size.height)
            throw FormatError("the rectangle is not inside the image");
        const std::int64_t pixels = std::int64_t{rect.width()} * rect.height();
        if (out.size() != static_cast<std::size_t>(pixels))
            throw FormatError("the buffer does not have the rectangle's size");
        readerOf(section, level).read(rect, out);
        return true;
    });
}

bool TiffImage::valueRange(const SectionIndex& section, const std::stop_token& stop, float& min, float& max)
{
    return attempt(section, [&] { return readerOf(section, 0).valueRange(stop, min, max); });
}

std::optional<double> TiffImage::extendedHeader(const SectionIndex& section, int field) const
{
    if (!place(section))
        return std::nullopt;
    if (field == TimeStampSeconds)
        return dataset.time(section);
    if (field == KnownBias)
        return dataset.bias(section);
    const PlaneValues* const known = dataset.valuesOf(section);
    if (!known || field < StageXMicrons || field > StageZMicrons)
        return std::nullopt;
    return known->position[static_cast<std::size_t>(field - StageXMicrons)];
}

std::vector<std::filesystem::path> TiffImage::files() const
{
    std::vector<std::filesystem::path> result = dataset.files->paths();
    if (std::find(result.begin(), result.end(), info().path) == result.end())
        result.push_back(info().path);
    return result;
}

namespace {

// The dialects of TIFF, the most specific first; the last row takes what the others leave.
constexpr struct {
    bool (*matches)(std::string_view description);
    Dataset (*read)(OpenedFile opened);
} dialects[] = {
    {isOmeXml, readOmeDataset},
    {isImageJ, readImageJDataset},
    {[](std::string_view) { return true; }, readPlainDataset},
};

} // namespace

std::unique_ptr<ImageFile> openTiffImage(const std::filesystem::path& path)
{
    OpenedFile opened = openForReading(path);
    std::vector<std::string> remarks = std::move(opened.remarks);
    const auto dialect =
        std::ranges::find_if(dialects, [&](const auto& row) { return row.matches(opened.description); });
    Dataset dataset = dialect->read(std::move(opened));
    dataset.info.path = path;
    std::ranges::move(dataset.info.remarks, std::back_inserter(remarks));
    dataset.info.remarks = std::move(remarks);
    return std::make_unique<TiffImage>(std::move(dataset));
}

} // namespace image
