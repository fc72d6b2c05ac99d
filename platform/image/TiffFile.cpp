// SPDX-License-Identifier: MIT
#include "platform/image/TiffFile.h"

#include "platform/image/Error.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <span>
#include <string>

namespace image {
namespace {

constexpr std::size_t maxPlanesKept = 1024;
constexpr std::size_t maxTableEntries = 256 << 10; // in the block tables of the planes that are kept
constexpr std::size_t maxIdleDecoders = 4;

std::uint64_t nextFileId()
{
    static std::atomic<std::uint64_t> last = 0;
    return ++last;
}

} // namespace

TiffFile::TiffFile(const std::filesystem::path& path)
    : file(path), opened(file.stamp()), id(nextFileId()), structure(file), chain(structure.pages()),
      current(opened)
{
}

PlanePtr TiffFile::plane(std::uint64_t offset, std::optional<SampleType> declared, std::uint64_t shift)
{
    const PlaneKey key{offset, shift};
    {
        const std::lock_guard lock(mutex);
        const auto found = planes.find(key);
        if (found != planes.end())
            return found->second;
    }
    const std::uint64_t fileId = id;
    auto made = std::make_shared<Plane>(planeOf(structure.directory(offset), declared, shift));
    made->file = fileId;
    const std::lock_guard lock(mutex);
    if (planes.size() >= maxPlanesKept || tableEntries > maxTableEntries) {
        planes.clear();
        completePlanes.clear();
        tableEntries = 0;
    }
    tableEntries += made->directory.blockOffsets.size();
    return planes.emplace(key, std::move(made)).first->second;
}

// Another program may write to the file while it is open here. What was read of its directories is then
// forgotten and read again, so that no pixel is taken from an outdated offset.
void TiffFile::refuseStale(const Plane& plane)
{
    const FileStamp now = file.stamp();
    const std::lock_guard lock(mutex);
    if (now == current && plane.file == id)
        return;
    if (now == current)
        throw StalePlane{};
    current = now;
    ++generation;
    id = nextFileId();
    planes.clear();
    completePlanes.clear();
    tableEntries = 0;
    idleDecoders.clear();
    throw StalePlane{};
}

BlockPtr TiffFile::load(const Plane& plane, int block)
{
    refuseStale(plane);
    auto result = std::make_shared<Block>(plane.blockBytes(block));
    switch (plane.access) {
    case Plane::Access::RawRows:
        loadRows(plane, block, result->bytes());
        break;
    case Plane::Access::RawTiles:
        loadRawTile(plane, block, result->bytes());
        break;
    default:
        decode(plane, block, result->bytes());
        break;
    }
    return result;
}

namespace {

// Bytes [first, first + count) of a strip or tile, which must lie inside it when its size is known.
void requireInside(const Directory& d, std::size_t block, std::uint64_t first, std::uint64_t count)
{
    const bool known = d.blockBytes[block] != 0;
    if ((known && first + count > d.blockBytes[block]) || d.blockOffsets[block] == 0)
        throw FormatError("one of its strips or tiles is incomplete");
}

} // namespace

void TiffFile::loadRows(const Plane& plane, int block, std::span<std::byte> out)
{
    const Directory& d = plane.directory;
    const std::size_t rowBytes = plane.rowBytes, rows = out.size() / rowBytes;
    const int perSample = plane.down, stripsPerSample = d.blocksDown();
    const std::size_t firstStrip = static_cast<std::size_t>(block / perSample) * stripsPerSample;
    const std::size_t firstRow = static_cast<std::size_t>(block % perSample) * plane.blockHeight;
    const auto stripHeight = static_cast<std::size_t>(d.blockHeight);
    std::uint64_t runStart = 0;
    std::size_t runBytes = 0, done = 0; // neighbouring strips are read together
    for (std::size_t row = 0; row < rows;) {
        const std::size_t strip = firstStrip + (firstRow + row) / stripHeight;
        const std::size_t inStrip = (firstRow + row) % stripHeight,
                          take = std::min(stripHeight - inStrip, rows - row);
        if (plane.firstByteShift == 0)
            requireInside(d, strip, inStrip * rowBytes, take * rowBytes);
        const std::uint64_t start = d.blockOffsets[strip] + plane.firstByteShift + inStrip * rowBytes;
        if (start != runStart + runBytes) {
            file.read(runStart, out.subspan(done, runBytes));
            done += runBytes;
            runStart = start;
            runBytes = 0;
        }
        runBytes += take * rowBytes;
        row += take;
    }
    file.read(runStart, out.subspan(done, runBytes));
    if (structure.needsSwap())
        swapSamples(out, plane.type);
}

void TiffFile::loadRawTile(const Plane& plane, int block, std::span<std::byte> out)
{
    const auto index = static_cast<std::size_t>(block);
    requireInside(plane.directory, index, 0, out.size());
    file.read(plane.directory.blockOffsets[index], out);
    if (structure.needsSwap())
        swapSamples(out, plane.type);
}

namespace {

void requireInFile(const Directory& d, std::size_t block, std::uint64_t fileSize)
{
    const std::uint64_t offset = d.blockOffsets[block], bytes = d.blockBytes[block];
    if (offset == 0 || bytes == 0)
        throw FormatError("one of its strips or tiles is missing");
    if (offset > fileSize || bytes > fileSize - offset)
        throw FormatError("the file is truncated: a strip or tile lies beyond its end");
}

} // namespace

void TiffFile::decodeStrips(TiffDecoder& decoder, const Plane& plane, int block, std::span<std::byte> out)
{
    const Directory& d = plane.directory;
    const int sample = block / plane.down, firstRow = block % plane.down * plane.blockHeight;
    const int rows = static_cast<int>(out.size() / plane.rowBytes);
    const std::uint64_t fileSize = file.size();
    for (int row = 0; row < rows; row += d.blockHeight) {
        const int take = std::min(d.blockHeight, rows - row), strip = (firstRow + row) / d.blockHeight;
        const std::size_t index = static_cast<std::size_t>(sample) * d.blocksDown() + strip;
        requireInFile(d, index, fileSize);
        const auto part = out.subspan(row * plane.rowBytes, take * plane.rowBytes);
        if (plane.access == Plane::Access::RgbStrips)
            decoder.rgbStrip(firstRow + row, d.width, take, part);
        else
            decoder.strip(static_cast<std::uint32_t>(index), part);
    }
}

// A part of a long strip, or of two of them.
void TiffFile::decodeRows(TiffDecoder& decoder, const Plane& plane, int block, std::span<std::byte> out)
{
    const Directory& d = plane.directory;
    const int sample = block / plane.down, first = block % plane.down * plane.blockHeight;
    const int last = first + static_cast<int>(out.size() / plane.rowBytes) - 1;
    const std::uint64_t fileSize = file.size();
    for (int strip = first / d.blockHeight; strip <= last / d.blockHeight; ++strip)
        requireInFile(d, static_cast<std::size_t>(sample) * d.blocksDown() + strip, fileSize);
    decoder.rows(sample, first, plane.rowBytes, out);
}

void TiffFile::decode(const Plane& plane, int block, std::span<std::byte> out)
{
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): given back below, or freed with the lease
    Lease lease = takeDecoder(plane, block);
    TiffDecoder& decoder = *lease.decoder;
    const int inSample = block % (plane.across * plane.down);
    const int x = inSample % plane.across * plane.blockWidth, y = inSample / plane.across * plane.blockHeight;
    switch (plane.access) {
    case Plane::Access::DecodedRows:
        decodeRows(decoder, plane, block, out);
        break;
    case Plane::Access::DecodedTiles:
        requireInFile(plane.directory, static_cast<std::size_t>(block), file.size());
        decoder.tile(static_cast<std::uint32_t>(block), out);
        break;
    case Plane::Access::RgbTiles:
        requireInFile(plane.directory, static_cast<std::size_t>(block), file.size());
        decoder.rgbTile(x, y, plane.blockWidth, plane.blockHeight, out);
        break;
    default:
        decodeStrips(decoder, plane, block, out);
        break;
    }
    giveDecoder(std::move(lease));
}

// Of several decoders of the page, the one that has the least to decode before it comes to the block.
TiffFile::Lease TiffFile::takeDecoder(const Plane& plane, int block)
{
    const int sample = block / plane.down, row = block % plane.down * plane.blockHeight;
    const auto costOf = [&](const std::unique_ptr<TiffDecoder>& decoder) {
        const bool same = decoder->directoryOffset() == plane.directory.offset;
        return same ? decoder->rowsBefore(sample, row) : std::numeric_limits<int>::max();
    };
    const std::lock_guard lock(mutex);
    const auto found = std::ranges::min_element(idleDecoders, {}, costOf);
    if (found == idleDecoders.end() || costOf(*found) == std::numeric_limits<int>::max())
        return {
            std::make_unique<TiffDecoder>(file, structure.bigTiff(), structure.bigEndian(), plane.directory),
            generation};
    Lease result{std::move(*found), generation};
    idleDecoders.erase(found);
    return result;
}

void TiffFile::giveDecoder(Lease lease)
{
    const std::lock_guard lock(mutex);
    if (lease.generation != generation)
        return;
    if (idleDecoders.size() >= maxIdleDecoders)
        idleDecoders.erase(idleDecoders.begin());
    idleDecoders.push_back(std::move(lease.decoder));
}

namespace {

// Without a decoder the pixels themselves say how many bytes there must be; tables are often wrong about the
// last strip.
void requireRawInFile(const Plane& plane, int block, std::uint64_t fileSize)
{
    const Directory& d = plane.directory;
    const int row = d.tiled ? 0 : block % d.blocksDown() * d.blockHeight;
    const int rows = d.tiled ? d.blockHeight : std::min(d.blockHeight, d.height - row);
    const std::uint64_t bytes = static_cast<std::uint64_t>(rows) * plane.rowBytes;
    if (plane.firstByteShift == 0)
        requireInside(d, static_cast<std::size_t>(block), 0, bytes);
    const std::uint64_t offset = d.blockOffsets[static_cast<std::size_t>(block)] + plane.firstByteShift;
    if (offset > fileSize || bytes > fileSize - offset)
        throw FormatError("the file is truncated: a strip or tile lies beyond its end");
}

bool isRaw(const Plane& plane)
{
    return plane.access == Plane::Access::RawRows || plane.access == Plane::Access::RawTiles;
}

} // namespace

void TiffFile::requireComplete(const Plane& plane)
{
    refuseStale(plane);
    const PlaneKey key{plane.directory.offset, plane.firstByteShift};
    {
        const std::lock_guard lock(mutex);
        if (completePlanes.contains(key))
            return;
    }
    const std::uint64_t fileSize = file.size();
    for (std::size_t block = 0; block < plane.directory.blockOffsets.size(); ++block)
        if (isRaw(plane))
            requireRawInFile(plane, static_cast<int>(block), fileSize);
        else
            requireInFile(plane.directory, block, fileSize);
    const std::lock_guard lock(mutex);
    if (plane.file == id)
        completePlanes.insert(key);
}

void TiffFile::check(const Plane& plane)
{
    requireComplete(plane);
    if (isRaw(plane))
        return;
    const Directory& d = plane.directory;
    if (plane.access != Plane::Access::DecodedStrips) {
        load(plane, 0);
        return;
    }
    // The first row of the first strip: a long strip is not decoded for nothing.
    if (!hasCodec(d.compression))
        throw FormatError("compression scheme " + std::to_string(d.compression) + " is not supported");
    try {
        std::vector<std::byte> row(plane.rowBytes);
        takeDecoder(plane).decoder->strip(0, row);
    } catch (const FormatError&) {
        load(plane, 0); // a few codecs decode only whole strips
    }
}

} // namespace image
