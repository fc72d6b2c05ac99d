// SPDX-License-Identifier: MIT
#include "platform/image/TiffStructure.h"

#include "platform/image/Error.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <span>
#include <tiff.h>
#include <unordered_set>

namespace image {
namespace {

// Limits far beyond any real image: what exceeds them is a damaged or hostile file.
constexpr std::size_t maxPages = 1 << 20;
constexpr std::uint64_t maxEntries = 4096;
constexpr std::uint64_t maxSide = 1 << 20;
constexpr std::uint64_t maxSamples = 4096;
constexpr std::uint64_t maxBlocks = 1 << 20;
constexpr std::uint64_t maxBlockBytes = 512u << 20;
constexpr std::uint64_t maxDescriptionBytes = 64u << 20;
constexpr std::uint64_t maxSubDirectories = 32;

// Bytes of a value; 0 for a type that there is none of.
std::size_t sizeOfType(std::uint16_t type)
{
    switch (type) {
    case TIFF_BYTE:
    case TIFF_ASCII:
    case TIFF_SBYTE:
    case TIFF_UNDEFINED:
        return 1;
    case TIFF_SHORT:
    case TIFF_SSHORT:
        return 2;
    case TIFF_LONG:
    case TIFF_SLONG:
    case TIFF_FLOAT:
    case TIFF_IFD:
        return 4;
    case TIFF_RATIONAL:
    case TIFF_SRATIONAL:
    case TIFF_DOUBLE:
    case TIFF_LONG8:
    case TIFF_SLONG8:
    case TIFF_IFD8:
        return 8;
    default:
        return 0;
    }
}

bool isIntegerType(std::uint16_t type)
{
    constexpr std::array unsignedTypes{TIFF_BYTE, TIFF_SHORT, TIFF_LONG, TIFF_UNDEFINED,
                                       TIFF_IFD,  TIFF_LONG8, TIFF_IFD8};
    return std::ranges::find(unsignedTypes, type) != unsignedTypes.end();
}

template<class T> T loadAs(std::span<const std::byte> raw, bool swap)
{
    std::array<std::byte, sizeof(T)> copy;
    std::copy_n(raw.begin(), sizeof(T), copy.begin());
    if (swap)
        std::reverse(copy.begin(), copy.end());
    return std::bit_cast<T>(copy);
}

} // namespace

std::uint64_t TiffStructure::number(std::span<const std::byte> raw) const
{
    switch (raw.size()) {
    case 1:
        return std::to_integer<std::uint64_t>(raw[0]);
    case 2:
        return loadAs<std::uint16_t>(raw, swapped);
    case 4:
        return loadAs<std::uint32_t>(raw, swapped);
    default:
        return loadAs<std::uint64_t>(raw, swapped);
    }
}

TiffStructure::TiffStructure(const InputFile& input) : file(input), fileSize(input.size())
{
    std::array<std::byte, 16> header = {};
    const std::size_t got = file.readSome(0, header);
    const char first = static_cast<char>(header[0]), second = static_cast<char>(header[1]);
    if (got < 8 || first != second || (first != 'I' && first != 'M'))
        throw FormatError("it is not a TIFF file");
    swapped = (first == 'M') != (std::endian::native == std::endian::big);
    const std::span<const std::byte> raw = header;
    const std::uint64_t version = number(raw.subspan(2, 2));
    big = version == 43;
    if (version != 42 && (!big || got < 16 || number(raw.subspan(4, 2)) != 8))
        throw FormatError("it is not a TIFF file");
    firstDirectory = big ? number(raw.subspan(8, 8)) : number(raw.subspan(4, 4));
}

const TiffStructure::Entry* TiffStructure::Entries::find(TiffTag tag) const
{
    const auto found = std::find_if(list.begin(), list.end(), [&](const Entry& e) { return e.tag == tag; });
    return found == list.end() ? nullptr : &*found;
}

TiffStructure::Entry TiffStructure::entry(std::span<const std::byte> raw) const
{
    Entry result;
    result.tag = static_cast<std::uint16_t>(number(raw.first(2)));
    result.type = static_cast<std::uint16_t>(number(raw.subspan(2, 2)));
    result.count = number(raw.subspan(4, big ? 8 : 4));
    std::copy(raw.begin() + (big ? 12 : 8), raw.end(), result.value.begin());
    return result;
}

TiffStructure::Entries TiffStructure::entries(std::uint64_t offset) const
{
    if (offset < 8 || offset >= fileSize)
        throw FormatError("a page's directory lies beyond the end of the file");
    const std::size_t countBytes = big ? 8 : 2, entryBytes = big ? 20 : 12, nextBytes = big ? 8 : 4;
    // One read fetches a usual directory whole.
    std::array<std::byte, 512> usual;
    std::vector<std::byte> large;
    std::span<const std::byte> all = std::span(usual).first(file.readSome(offset, usual));
    if (all.size() < countBytes)
        throw FormatError("the file ends inside a page's directory");
    const std::uint64_t count = number(all.first(countBytes));
    if (count == 0 || count > maxEntries)
        throw FormatError("a page's directory is damaged");
    const std::size_t total = countBytes + count * entryBytes + nextBytes;
    if (all.size() < total) {
        large.resize(total);
        all = std::span(large).first(file.readSome(offset, large));
    }
    if (all.size() < total)
        throw FormatError("the file ends inside a page's directory");
    Entries result;
    result.list.reserve(count);
    for (std::uint64_t i = 0; i < count; ++i)
        result.list.push_back(entry(all.subspan(countBytes + i * entryBytes, entryBytes)));
    result.next = number(all.subspan(countBytes + count * entryBytes, nextBytes));
    return result;
}

std::vector<std::byte> TiffStructure::rawValues(const Entry& entry, std::uint64_t maxCount) const
{
    const std::uint64_t size = sizeOfType(entry.type);
    const std::uint64_t count = std::min(entry.count, maxCount), inlineBytes = big ? 8 : 4;
    if (size == 0 || entry.count > fileSize)
        throw FormatError("tag " + std::to_string(entry.tag) + " is damaged");
    std::vector<std::byte> result;
    if (entry.count * size <= inlineBytes) {
        result.assign(entry.value.begin(), entry.value.begin() + static_cast<std::ptrdiff_t>(count * size));
        return result;
    }
    const std::uint64_t offset = number(std::span(entry.value).first(inlineBytes));
    if (offset > fileSize || entry.count * size > fileSize - offset)
        throw FormatError("tag " + std::to_string(entry.tag) + " points beyond the end of the file");
    result.resize(count * size);
    file.read(offset, result);
    return result;
}

std::vector<std::uint64_t> TiffStructure::integers(const Entries& entries, TiffTag tag,
                                                   std::uint64_t maxCount) const
{
    std::vector<std::uint64_t> result;
    const Entry* entry = entries.find(tag);
    if (!entry)
        return result;
    if (!isIntegerType(entry->type))
        throw FormatError("tag " + std::to_string(tag) + " is damaged");
    const std::vector<std::byte> raw = rawValues(*entry, maxCount);
    const std::size_t size = sizeOfType(entry->type);
    result.reserve(raw.size() / size);
    for (std::size_t at = 0; at < raw.size(); at += size)
        result.push_back(number(std::span(raw).subspan(at, size)));
    return result;
}

std::uint64_t TiffStructure::integer(const Entries& entries, TiffTag tag, std::uint64_t fallback) const
{
    const Entry* const entry = entries.find(tag);
    const std::size_t size = entry ? sizeOfType(entry->type) : 0;
    if (entry && entry->count == 1 && size <= (big ? 8 : 4) && isIntegerType(entry->type)) // the usual case
        return number(std::span(entry->value).first(size));
    const std::vector<std::uint64_t> values = integers(entries, tag, 1);
    return values.empty() ? fallback : values[0];
}

PageSummary TiffStructure::summary(std::uint64_t offset, const Entries& entries) const
{
    PageSummary page;
    page.offset = offset;
    page.width = static_cast<std::uint32_t>(integer(entries, TagWidth, 0));
    page.height = static_cast<std::uint32_t>(integer(entries, TagHeight, 0));
    page.bits = static_cast<std::uint16_t>(integer(entries, TagBits, 1));
    page.samples = static_cast<std::uint16_t>(integer(entries, TagSamples, 1));
    page.reduced = (integer(entries, TagSubfileType, 0) & 1) != 0;
    return page;
}

std::uint64_t TiffStructure::bytesOf(const Entries& entries) const
{
    return (big ? 16 : 6) + entries.list.size() * (big ? 20 : 12);
}

namespace {

void refuseSize(std::uint64_t width, std::uint64_t height)
{
    if (width == 0 || height == 0 || width > maxSide || height > maxSide)
        throw FormatError("a page claims " + std::to_string(width) + " x " + std::to_string(height) +
                          " pixels");
}

} // namespace

// Directories that do not overlap have no more bytes than the file: that bounds the time of reading them.
PageChain TiffStructure::pages() const
{
    PageChain chain;
    std::unordered_set<std::uint64_t> visited;
    std::uint64_t bytesLeft = fileSize;
    try {
        for (std::uint64_t offset = firstDirectory; offset != 0;) {
            if (!visited.insert(offset).second)
                throw FormatError("its chain of pages runs in a circle");
            if (chain.pages.size() == maxPages)
                throw FormatError("it has more than " + std::to_string(maxPages) + " pages");
            const Entries page = entries(offset);
            if (bytesOf(page) > bytesLeft)
                throw FormatError("the directories of its pages overlap");
            bytesLeft -= bytesOf(page);
            const PageSummary next = summary(offset, page);
            refuseSize(next.width, next.height);
            chain.pages.push_back(next);
            offset = page.next;
        }
    } catch (const FormatError& error) {
        if (chain.pages.empty())
            throw;
        chain.damage = error.what();
    }
    if (chain.pages.empty())
        throw FormatError("it has no pages");
    return chain;
}

namespace {

std::optional<SampleType> sampleType(std::uint64_t format, std::uint64_t bits)
{
    enum { Unsigned = 1, Signed = 2, Float = 3, Void = 4 };
    if (format == Void)
        format = Unsigned;
    if (format == Unsigned && bits != 8 && bits < 16)
        return SampleType::Bits;
    struct Row {
        std::uint64_t format, bits;
        SampleType type;
    };
    static constexpr Row rows[] = {
        {Unsigned, 8, SampleType::U8},   {Unsigned, 16, SampleType::U16}, {Unsigned, 24, SampleType::U24},
        {Unsigned, 32, SampleType::U32}, {Unsigned, 64, SampleType::U64}, {Signed, 8, SampleType::I8},
        {Signed, 16, SampleType::I16},   {Signed, 32, SampleType::I32},   {Signed, 64, SampleType::I64},
        {Float, 16, SampleType::F16},    {Float, 32, SampleType::F32},    {Float, 64, SampleType::F64},
    };
    for (const Row& row : rows)
        if (row.format == format && row.bits == bits)
            return row.type;
    return std::nullopt;
}

} // namespace

void TiffStructure::readSamples(const Entries& entries, Directory& directory) const
{
    const std::uint64_t samples = integer(entries, TagSamples, 1);
    if (samples == 0 || samples > maxSamples)
        throw FormatError("a page claims " + std::to_string(samples) + " samples per pixel");
    directory.samples = static_cast<int>(samples);
    const std::vector<std::uint64_t> bits = integers(entries, TagBits, samples);
    const std::uint64_t bitCount = bits.empty() ? 1 : bits[0];
    const std::vector<std::uint64_t> formats = integers(entries, TagSampleFormat, samples);
    const auto differsFrom = [](std::uint64_t first) {
        return [first](std::uint64_t v) { return v != first; };
    };
    if (std::any_of(bits.begin(), bits.end(), differsFrom(bitCount)) ||
        (!formats.empty() && std::any_of(formats.begin(), formats.end(), differsFrom(formats[0]))))
        throw FormatError("the samples of a pixel are stored in different ways");
    directory.typeGiven = !formats.empty();
    const std::optional<SampleType> type = sampleType(formats.empty() ? 1 : formats[0], bitCount);
    if (bitCount == 0 || !type)
        throw FormatError("pixels of " + std::to_string(bitCount) + " bits and sample format " +
                          std::to_string(formats.empty() ? 1 : formats[0]) + " cannot be read");
    directory.bits = static_cast<int>(bitCount);
    directory.type = *type;
    const std::vector<std::uint64_t> extra = integers(entries, TagExtraSamples, samples);
    const auto alphas = std::count_if(extra.begin(), extra.end(), [](auto e) { return e == 1 || e == 2; });
    directory.colorSamples = std::max(1, directory.samples - static_cast<int>(alphas));
}

void TiffStructure::readBlocks(const Entries& entries, Directory& d) const
{
    d.tiled = entries.find(TagTileWidth) || entries.find(TagTileOffsets);
    const auto height = static_cast<std::uint64_t>(d.height);
    const std::uint64_t blockWidth = d.tiled ? integer(entries, TagTileWidth, 0) : d.width;
    const std::uint64_t blockHeight = d.tiled ? integer(entries, TagTileHeight, 0)
                                              : std::min(integer(entries, TagRowsPerStrip, height), height);
    if (blockWidth == 0 || blockHeight == 0 || blockWidth > maxSide || blockHeight > maxSide)
        throw FormatError("the size of its strips or tiles is damaged");
    d.blockWidth = static_cast<int>(blockWidth);
    d.blockHeight = static_cast<int>(blockHeight);
    const std::uint64_t blockSamples = d.planar ? 1 : d.samples;
    const bool raw = d.compression == 1 && !d.tiled; // read row by row, whatever the strip's size
    if (!raw && (blockWidth * blockSamples * d.bits + 7) / 8 * blockHeight > maxBlockBytes)
        throw FormatError("one of its strips or tiles would take more than 512 MiB");
    const std::uint64_t count =
        static_cast<std::uint64_t>(d.blocksAcross()) * d.blocksDown() * (d.planar ? d.samples : 1);
    if (count > maxBlocks)
        throw FormatError("it has more than " + std::to_string(maxBlocks) + " strips or tiles per page");
    d.blockOffsets =
        integers(entries, entries.find(TagTileOffsets) ? TagTileOffsets : TagStripOffsets, count);
    d.blockBytes = integers(entries, entries.find(TagTileBytes) ? TagTileBytes : TagStripBytes, count);
    if (d.blockOffsets.size() < count)
        throw FormatError("the table of its strips or tiles is incomplete");
    if (d.blockBytes.size() < count && d.compression != 1)
        throw FormatError("the table of its strips or tiles is incomplete");
    d.blockBytes.resize(count, 0);
}

Directory TiffStructure::directory(std::uint64_t offset) const
{
    const Entries page = entries(offset);
    Directory result;
    result.offset = offset;
    const std::uint64_t width = integer(page, TagWidth, 0), height = integer(page, TagHeight, 0);
    refuseSize(width, height);
    result.width = static_cast<int>(width);
    result.height = static_cast<int>(height);
    result.compression = static_cast<int>(integer(page, TagCompression, 1) & 0xffff);
    result.photometric = static_cast<int>(integer(page, TagPhotometric, 1) & 0xffff);
    result.fillOrder = integer(page, TagFillOrder, 1) == 2 ? 2 : 1;
    result.planar = integer(page, TagPlanar, 1) == 2;
    readSamples(page, result);
    result.planar = result.planar && result.samples > 1;
    readBlocks(page, result);
    result.subDirectories = integers(page, TagSubDirectories, maxSubDirectories);
    for (const std::uint64_t value : integers(page, TagColorMap, 3u << 16))
        result.colorMap.push_back(static_cast<std::uint16_t>(value));
    return result;
}

std::vector<std::uint64_t> TiffStructure::integers(std::uint64_t offset, TiffTag tag,
                                                   std::uint64_t maxCount) const
{
    return integers(entries(offset), tag, maxCount);
}

std::vector<std::byte> TiffStructure::bytes(std::uint64_t offset, TiffTag tag, std::uint64_t maxBytes) const
{
    const Entries page = entries(offset);
    const Entry* entry = page.find(tag);
    if (!entry || sizeOfType(entry->type) != 1)
        return {};
    return rawValues(*entry, maxBytes);
}

std::string TiffStructure::text(std::uint64_t offset, TiffTag tag) const
{
    const Entries page = entries(offset);
    const Entry* entry = page.find(tag);
    if (!entry || sizeOfType(entry->type) != 1)
        return {};
    if (entry->count > maxDescriptionBytes)
        throw FormatError("its description is larger than 64 MiB");
    const std::vector<std::byte> raw = rawValues(*entry, entry->count);
    const auto end = std::find(raw.begin(), raw.end(), std::byte{0});
    return {reinterpret_cast<const char*>(raw.data()), static_cast<std::size_t>(end - raw.begin())};
}

std::optional<double> TiffStructure::rational(std::uint64_t offset, TiffTag tag) const
{
    const Entries page = entries(offset);
    const Entry* entry = page.find(tag);
    if (!entry || entry->type != 5)
        return std::nullopt;
    const std::vector<std::byte> raw = rawValues(*entry, 1);
    if (raw.size() < 8)
        return std::nullopt;
    const double numerator = static_cast<double>(number(std::span(raw).first(4)));
    const double denominator = static_cast<double>(number(std::span(raw).subspan(4, 4)));
    return denominator > 0 ? std::optional(numerator / denominator) : std::nullopt;
}

} // namespace image
