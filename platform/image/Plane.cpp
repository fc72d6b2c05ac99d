// SPDX-License-Identifier: MIT
#include "platform/image/Plane.h"

#include "platform/image/Error.h"
#include "platform/image/TiffDecoder.h"

#include <algorithm>
#include <string>

namespace image {
namespace {

enum Photometric {
    MinIsWhite = 0,
    MinIsBlack = 1,
    Rgb = 2,
    Palette = 3,
    Mask = 4,
    LogL = 32844,
    Cfa = 32803
};
enum Compression { Uncompressed = 1, OldJpeg = 6, Jpeg = 7 };

constexpr std::size_t rawRunBytes = 512u << 10;      // read together: few system calls, little read in vain
constexpr std::size_t decodedRunBytes = 64u << 10;   // short strips are decoded together up to this
constexpr std::size_t longStripBytes = 32u << 20;    // from here on strips are decoded in parts
constexpr std::size_t longStripRunBytes = 4u << 20;  // such a part
constexpr std::size_t maxWholeBytes = 64u << 20;     // of a strip or tile that is decoded as one
constexpr std::size_t maxConvertedBytes = 32u << 20; // the conversion takes four times as much besides
constexpr std::int64_t maxBlocks = 1 << 26;          // of a plane

int photometricYcbcr()
{
    return 6;
}

bool needsColorConversion(const Directory& d)
{
    const int p = d.photometric;
    if (p == photometricYcbcr())
        return d.compression != Jpeg || d.planar;
    return p != MinIsWhite && p != MinIsBlack && p != Rgb && p != Palette && p != Mask && p != LogL &&
           p != Cfa;
}

// A page without SampleFormat is taken as unsigned; the metadata may know better.
SampleType typeOf(const Directory& d, std::optional<SampleType> declared)
{
    if (d.typeGiven || !declared || bytesOf(*declared) != bytesOf(d.type) || bytesOf(d.type) == 0)
        return d.type;
    return *declared;
}

} // namespace

bool Plane::isTiles() const
{
    return access == Access::RawTiles || access == Access::DecodedTiles || access == Access::RgbTiles;
}

std::size_t Plane::blockBytes(int block) const
{
    const int blockRow = block / across % down;
    return rowBytes * static_cast<std::size_t>(isTiles() ? blockHeight : rowsIn(blockRow));
}

namespace {

// Whether libtiff decodes the rows of a strip one after the other, without room for all of them.
bool decodesRowByRow(int compression)
{
    static constexpr int schemes[] = {2, 3,     4,     5,     7,
                                      8, 32773, 32946, 34925, 50000};    // CCITT, LZW, JPEG, Deflate,
    return std::ranges::find(schemes, compression) != std::end(schemes); // PackBits, LZMA, Zstandard
}

std::size_t bytesOfStrip(const Directory& d)
{
    const auto samples = static_cast<std::size_t>(d.planar ? 1 : d.samples);
    return (static_cast<std::size_t>(d.width) * samples * d.bits + 7) / 8 * d.blockHeight;
}

Plane::Access accessOf(const Directory& d)
{
    if (needsColorConversion(d))
        return d.tiled ? Plane::Access::RgbTiles : Plane::Access::RgbStrips;
    if (d.compression == Uncompressed && d.fillOrder == 1)
        return d.tiled ? Plane::Access::RawTiles : Plane::Access::RawRows;
    if (d.tiled)
        return Plane::Access::DecodedTiles;
    const bool inParts = bytesOfStrip(d) > longStripBytes && decodesRowByRow(d.compression);
    return inParts ? Plane::Access::DecodedRows : Plane::Access::DecodedStrips;
}

int runOfRows(const Plane& plane)
{
    const Directory& d = plane.directory;
    const auto rows = [&](std::size_t bytes) {
        return static_cast<int>(std::clamp<std::size_t>(bytes / plane.rowBytes, 1, d.height));
    };
    if (plane.access == Plane::Access::RawRows)
        return rows(rawRunBytes);
    if (plane.access == Plane::Access::DecodedRows)
        return rows(longStripRunBytes);
    const int strips = std::max(1, rows(decodedRunBytes) / d.blockHeight);
    return std::min(d.height, strips * d.blockHeight);
}

void divideIntoBlocks(Plane& plane)
{
    const Directory& d = plane.directory;
    plane.blockWidth = d.tiled ? d.blockWidth : d.width;
    plane.rowBytes = (static_cast<std::size_t>(plane.blockWidth) * plane.samples * plane.bits + 7) / 8;
    plane.blockHeight = d.tiled ? d.blockHeight : runOfRows(plane);
    const bool converted =
        plane.access == Plane::Access::RgbStrips || plane.access == Plane::Access::RgbTiles;
    const std::size_t limit = converted ? maxConvertedBytes : maxWholeBytes;
    if (plane.rowBytes * static_cast<std::size_t>(plane.blockHeight) > limit)
        throw FormatError("one of its strips or tiles would take more than " + std::to_string(limit >> 20) +
                          " MiB");
    plane.across = (d.width + plane.blockWidth - 1) / plane.blockWidth;
    plane.down = (d.height + plane.blockHeight - 1) / plane.blockHeight;
    if (std::int64_t{plane.across} * plane.down * (d.planar ? d.samples : 1) > maxBlocks)
        throw FormatError("its pages are larger than any image");
}

} // namespace

Plane planeOf(const Directory& directory, std::optional<SampleType> declared, std::uint64_t firstByteShift)
{
    Plane plane;
    plane.firstByteShift = firstByteShift;
    plane.directory = directory;
    plane.access = accessOf(directory);
    plane.type = typeOf(directory, declared);
    plane.bits = directory.bits;
    plane.samples = directory.planar ? 1 : directory.samples;
    plane.sampleCount = directory.colorSamples;
    if (plane.access == Plane::Access::RgbStrips || plane.access == Plane::Access::RgbTiles) {
        plane.type = SampleType::U8;
        plane.bits = 8;
        plane.samples = plane.sampleCount = 3;
    } else if (directory.photometric == LogL) {
        plane.type = SampleType::F32;
        plane.bits = 32;
    }
    const bool isUnsigned = plane.type == SampleType::Bits || plane.type == SampleType::U8 ||
                            plane.type == SampleType::U16 || plane.type == SampleType::U32;
    plane.inverted = directory.photometric == MinIsWhite && isUnsigned;
    divideIntoBlocks(plane);
    return plane;
}

} // namespace image
