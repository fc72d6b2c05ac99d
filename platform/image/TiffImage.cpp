#include "platform/image/TiffImage.h"

#include "platform/image/Error.h"
#include "platform/image/ImageJMetadata.h"
#include "platform/image/OmeMetadata.h"
#include "platform/image/WorkerPool.h"

#include <algorithm>
#include <atomic>
#include <cmath>

namespace image {

constexpr std::int64_t parallelPixels = 256 << 10;    // rectangles above are split over the cores
constexpr std::int64_t pixelsPerItem = 64 << 10;      // work item of such a rectangle
constexpr std::size_t groupBytes = 64u << 20;         // blocks that a large read holds at once
constexpr std::size_t recentSectionBytes = 32u << 20; // largest section that a thread holds on to

namespace {

// The section that a thread read last, with the blocks that it touched: reading it again needs no lock and no
// search. One per thread; of sections up to recentSectionBytes.
struct RecentSection {
    std::uint64_t image = 0; // TiffImage::id, 0: none
    SectionIndex section;
    int level = 0;
    std::shared_ptr<TiffFile> file;
    PlanePtr plane;
    int sample = 0;
    std::vector<BlockPtr> blocks; // by block number; empty when the section is too large to be held
};

struct Level {
    int width = 0, height = 0;
    int subDirectory = -1; // of the plane's own list, or
    int following = 0;     // how many pages after the plane's
};

// A block's bytes and where it stands among the plane's blocks.
struct PlacedBlock {
    const std::byte* data;
    int column, row;
};

// Blocks of the plane that a rectangle touches: inclusive columns and rows.
struct BlockRange {
    int columnFirst, columnLast, rowFirst, rowLast;
};

thread_local RecentSection recentSection;
thread_local std::string lastReadError;

class TiffImage final : public ImageFile {
public:
    explicit TiffImage(Dataset&& data);
    ~TiffImage() override;

    const ImageInfo& info() const override { return dataset.info; }
    bool hasSection(const SectionIndex& section) const override { return place(section) != nullptr; }
    bool read(const SectionIndex& section, const PixelRect& rect, std::span<float> out) override;
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
    const PlanePlace* place(const SectionIndex& section) const;
    void checkFirstSection();
    void findLevels(TiffFile& file, const PlanePlace& where, const Plane& plane);
    template<class Action> bool attempt(const SectionIndex& section, Action action);
    bool fail(const SectionIndex& section, std::string reason);
    RecentSection& view(const SectionIndex& section, int level);
    void lookUp(RecentSection& recent, const SectionIndex& section, int level);
    PlanePtr levelPlane(TiffFile& file, const PlanePlace& where, int level);

    BlockPtr cached(const RecentSection& view, int block, bool keep);
    BlockPtr block(RecentSection& view, int block, bool keep = true);
    void readSmall(RecentSection& view, const PixelRect& rect, float* out);
    void readLarge(RecentSection& view, const PixelRect& rect, float* out);
    void finish(const Plane& plane, std::span<float> out) const;

    Dataset dataset;
    std::vector<Level> levels;
    std::uint64_t id;
};

} // namespace

static std::uint64_t nextImageId()
{
    static std::atomic<std::uint64_t> last = 0;
    return ++last;
}

TiffImage::TiffImage(Dataset&& data) : dataset(std::move(data)), id(nextImageId())
{
    checkFirstSection();
}

TiffImage::~TiffImage()
{
    if (recentSection.image == id)
        recentSection = {};
}

const PlanePlace* TiffImage::place(const SectionIndex& s) const
{
    const ImageInfo& i = dataset.info;
    if (s.z < 0 || s.w < 0 || s.t < 0 || s.p < 0 || s.z >= i.sizeZ || s.w >= i.sizeW || s.t >= i.sizeT ||
        s.p >= i.sizeP)
        return nullptr;
    const auto found = dataset.places.find(dataset.key(dataset.planeIndex(s)));
    return found == dataset.places.end() ? nullptr : &found->second;
}

// Refuses at once an image whose first section cannot be read.
void TiffImage::checkFirstSection()
{
    const auto first = std::min_element(dataset.places.begin(), dataset.places.end(),
                                        [](const auto& a, const auto& b) { return a.first < b.first; });
    const PlanePlace& where = first->second;
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
            // The full image is readable without it.
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

void TiffImage::lookUp(RecentSection& recent, const SectionIndex& section, int level)
{
    const PlanePlace* where = place(section);
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
    if (recent.plane != plane) {
        std::size_t bytes = 0;
        for (int b = 0; b < plane->blockCount() && bytes <= recentSectionBytes; ++b)
            bytes += plane->blockBytes(b);
        recent.blocks.clear();
        recent.blocks.resize(bytes <= recentSectionBytes ? static_cast<std::size_t>(plane->blockCount()) : 0);
    }
    recent.image = id;
    recent.section = section;
    recent.level = level;
    recent.file = std::move(file);
    recent.plane = plane;
    recent.sample = section.w % dataset.samplesPerPlane;
}

RecentSection& TiffImage::view(const SectionIndex& section, int level)
{
    RecentSection& recent = recentSection;
    if (recent.image != id || recent.section != section || recent.level != level) {
        recent.image = 0; // in case of an exception
        lookUp(recent, section, level);
    }
    return recent;
}

BlockPtr TiffImage::cached(const RecentSection& view, int number, bool keep)
{
    const Plane& plane = *view.plane;
    const BlockKey key{plane.file, plane.directory.offset, plane.firstByteShift,
                       static_cast<std::uint64_t>(number)};
    const auto load = [&] { return view.file->load(plane, number); };
    if (keep)
        return BlockCache::instance().get(key, load);
    const BlockPtr found = BlockCache::instance().find(key);
    return found ? found : load();
}

BlockPtr TiffImage::block(RecentSection& view, int number, bool keep)
{
    if (view.blocks.empty())
        return cached(view, number, keep);
    BlockPtr& held = view.blocks[static_cast<std::size_t>(number)];
    if (!held)
        held = cached(view, number, keep);
    return held;
}

static BlockRange blocksOf(const Plane& plane, const PixelRect& rect)
{
    const int rowFirst = rect.yFirst / plane.blockHeight, rowLast = rect.yLast / plane.blockHeight;
    if (plane.across == 1)
        return {0, 0, rowFirst, rowLast};
    return {rect.xFirst / plane.blockWidth, rect.xLast / plane.blockWidth, rowFirst, rowLast};
}

// Converts what the rectangle and the block have in common, from row yFirst to yLast of the
// image.
static void convertPart(const Plane& plane, int sample, const PlacedBlock& block, const PixelRect& rect,
                        int yFirst, int yLast, float* out)
{
    const int left = block.column * plane.blockWidth, top = block.row * plane.blockHeight;
    const int x0 = std::max(rect.xFirst, left), x1 = std::min(rect.xLast, left + plane.blockWidth - 1);
    const int y0 = std::max(yFirst, top), y1 = std::min(yLast, top + plane.blockHeight - 1);
    SampleSource source;
    source.first = block.data;
    source.rowBytes = plane.rowBytes;
    source.samples = plane.samples;
    source.sample = plane.samples > 1 ? sample : 0;
    source.bits = plane.bits;
    source.x = x0 - left;
    source.y = y0 - top;
    source.width = x1 - x0 + 1;
    source.height = y1 - y0 + 1;
    const auto width = static_cast<std::size_t>(rect.width());
    converterOf(plane.type)(
        source, out + static_cast<std::size_t>(y0 - rect.yFirst) * width + (x0 - rect.xFirst), width);
}

void TiffImage::readSmall(RecentSection& view, const PixelRect& rect, float* out)
{
    const Plane& plane = *view.plane;
    const BlockRange range = blocksOf(plane, rect);
    for (int row = range.rowFirst; row <= range.rowLast; ++row)
        for (int column = range.columnFirst; column <= range.columnLast; ++column) {
            const int number = plane.blockAt(column, row, view.sample);
            const Block* held =
                view.blocks.empty() ? nullptr : view.blocks[static_cast<std::size_t>(number)].get();
            const BlockPtr fetched = held ? nullptr : block(view, number);
            convertPart(plane, view.sample, {held ? held->first() : fetched->first(), column, row}, rect,
                        rect.yFirst, rect.yLast, out);
        }
}

// Reads in groups of block rows, so that the blocks of a huge rectangle are not all held at once: first the
// group's blocks are loaded, several at once, then all of its rows are converted, several bands at once.
void TiffImage::readLarge(RecentSection& view, const PixelRect& rect, float* out)
{
    const Plane& plane = *view.plane;
    const BlockRange range = blocksOf(plane, rect);
    const int columns = range.columnLast - range.columnFirst + 1;
    const std::size_t rowBytes = plane.rowBytes * static_cast<std::size_t>(plane.blockHeight) * columns;
    const int groupRows = static_cast<int>(std::clamp<std::size_t>(groupBytes / rowBytes, 1, 1 << 20));
    for (int first = range.rowFirst; first <= range.rowLast; first += groupRows) {
        const int last = std::min(range.rowLast, first + groupRows - 1);
        std::vector<BlockPtr> blocks(static_cast<std::size_t>(last - first + 1) *
                                     static_cast<std::size_t>(columns));
        const auto numberOf = [&](int i) {
            return plane.blockAt(range.columnFirst + i % columns, first + i / columns, view.sample);
        };
        std::vector<int> absent;
        for (int i = 0; i < static_cast<int>(blocks.size()); ++i) {
            if (!view.blocks.empty())
                blocks[static_cast<std::size_t>(i)] = view.blocks[static_cast<std::size_t>(numberOf(i))];
            if (!blocks[static_cast<std::size_t>(i)])
                absent.push_back(i);
        }
        parallelFor(static_cast<int>(absent.size()), [&](int item) {
            const int i = absent[static_cast<std::size_t>(item)];
            blocks[static_cast<std::size_t>(i)] = cached(view, numberOf(i), true);
        });
        for (const int i : absent)
            if (!view.blocks.empty())
                view.blocks[static_cast<std::size_t>(numberOf(i))] = blocks[static_cast<std::size_t>(i)];
        const int top = std::max(rect.yFirst, first * plane.blockHeight);
        const int bottom = std::min(rect.yLast, (last + 1) * plane.blockHeight - 1);
        const int bandRows = static_cast<int>(std::max<std::int64_t>(1, pixelsPerItem / rect.width()));
        parallelFor((bottom - top) / bandRows + 1, [&](int band) {
            const int y0 = top + band * bandRows, y1 = std::min(bottom, y0 + bandRows - 1);
            // Of tiles, row by row: out is then written from front to back, which is what the memory likes.
            const int step = columns > 1 ? 1 : y1 - y0 + 1;
            for (int y = y0; y <= y1; y += step)
                for (int row = y / plane.blockHeight; row <= std::min(y1, y + step - 1) / plane.blockHeight;
                     ++row)
                    for (int column = 0; column < columns; ++column) {
                        const auto at = static_cast<std::size_t>((row - first) * columns + column);
                        convertPart(plane, view.sample,
                                    {blocks[at]->first(), range.columnFirst + column, row}, rect, y,
                                    y + step - 1, out);
                    }
        });
    }
}

void TiffImage::finish(const Plane& plane, std::span<float> out) const
{
    const float gain = plane.inverted ? -1.0f : 1.0f;
    const float top = plane.inverted ? std::ldexp(1.0f, plane.bits) - 1 : 0.0f;
    if (plane.inverted || dataset.valueOffset != 0)
        rescale(out, gain, top + dataset.valueOffset);
}

static std::string nameOf(const SectionIndex& s)
{
    return "section z " + std::to_string(s.z) + ", wavelength " + std::to_string(s.w) + ", time " +
           std::to_string(s.t) + ", position " + std::to_string(s.p);
}

bool TiffImage::fail(const SectionIndex& section, std::string reason)
{
    const PlanePlace* where = place(section);
    try {
        if (where && dataset.files->file(where->file)->changed())
            reason = "the file has changed since it was opened (" + reason + ")";
    } catch (const FormatError&) {
        // The reason says already that the file is not there.
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
        RecentSection& recent = view(section, level);
        if (pixels > parallelPixels)
            readLarge(recent, rect, out.data());
        else
            readSmall(recent, rect, out.data());
        finish(*recent.plane, out);
        return true;
    });
}

bool TiffImage::valueRange(const SectionIndex& section, const std::stop_token& stop, float& min, float& max)
{
    return attempt(section, [&] {
        RecentSection& recent = view(section, 0);
        const Plane& plane = *recent.plane;
        std::vector<float> values;
        bool any = false;
        for (int row = 0; row < plane.down; ++row)
            for (int column = 0; column < plane.across; ++column) {
                if (stop.stop_requested())
                    return false;
                const BlockPtr data = block(recent, plane.blockAt(column, row, recent.sample), false);
                const int left = column * plane.blockWidth, top = row * plane.blockHeight;
                const int right = std::min(plane.width(), left + plane.blockWidth) - 1;
                const int bottom = std::min(plane.height(), top + plane.blockHeight) - 1;
                const int bandRows =
                    static_cast<int>(std::max<std::int64_t>(1, pixelsPerItem / (right - left + 1)));
                for (int y = top; y <= bottom; y += bandRows) {
                    const PixelRect part{left, y, right, std::min(bottom, y + bandRows - 1)};
                    values.resize(static_cast<std::size_t>(part.width()) * part.height());
                    convertPart(plane, recent.sample, {data->first(), column, row}, part, part.yFirst,
                                part.yLast, values.data());
                    finish(plane, values);
                    float low = 0, high = 0;
                    if (!finiteRange(values, low, high))
                        continue;
                    min = any ? std::min(min, low) : low;
                    max = any ? std::max(max, high) : high;
                    any = true;
                }
            }
        return any;
    });
}

std::optional<double> TiffImage::extendedHeader(const SectionIndex& section, int field) const
{
    if (!place(section))
        return std::nullopt;
    if (field == KnownBias) {
        const auto at = static_cast<std::size_t>(section.p) * info().sizeW + section.w;
        return at < dataset.bias.size() ? dataset.bias[at] : std::nullopt;
    }
    const auto found = dataset.values.find(dataset.key(dataset.planeIndex(section)));
    if (found == dataset.values.end())
        return std::nullopt;
    switch (field) {
    case TimeStampSeconds:
        return found->second.deltaT;
    case StageXMicrons:
        return found->second.position[0];
    case StageYMicrons:
        return found->second.position[1];
    case StageZMicrons:
        return found->second.position[2];
    default:
        return std::nullopt;
    }
}

std::vector<std::filesystem::path> TiffImage::files() const
{
    std::vector<std::filesystem::path> result = dataset.files->paths();
    if (std::find(result.begin(), result.end(), info().path) == result.end())
        result.push_back(info().path);
    return result;
}

// The formats, the most specific first.
static constexpr struct {
    bool (*matches)(std::string_view description);
    Dataset (*read)(const OpenedFile& opened);
} formats[] = {
    {isOmeXml, readOmeDataset},
    {isImageJ, readImageJDataset},
    {[](std::string_view) { return true; }, readPlainDataset},
};

std::unique_ptr<ImageFile> openTiffImage(const std::filesystem::path& path)
{
    const OpenedFile opened = openForReading(path);
    for (const auto& format : formats)
        if (format.matches(opened.description)) {
            Dataset dataset = format.read(opened);
            dataset.info.path = path;
            return std::make_unique<TiffImage>(std::move(dataset));
        }
    throw FormatError("its format is not known");
}

} // namespace image
