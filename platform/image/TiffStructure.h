// SPDX-License-Identifier: MIT
// The directories of a TIFF or BigTIFF file, read without a decoder: where they are, and the tags that say
// how a page's pixels are stored. Every number in the file is checked before it is used. Tag numbers and
// field types: TIFF Revision 6.0 and the BigTIFF layout (8-byte offsets, version 43).
#pragma once

#include "platform/image/InputFile.h"

#include <array>
#include <bit>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace image {

// How one sample is stored after decoding, in the machine's byte order. Bits: packed, most significant bit
// first, rows start at a byte.
enum class SampleType { Bits, U8, I8, U16, I16, F16, U24, U32, I32, F32, U64, I64, F64 };

// Tells one page of the chain apart from another without its block table.
struct PageSummary {
    std::uint64_t offset = 0;
    std::uint32_t width = 0, height = 0;
    std::uint16_t bits = 1, samples = 1;
    bool reduced = false; // a reduced copy of the page before it
};

// One page. TiffStructure::directory has checked it: every count is in range and the block tables are
// complete.
struct Directory {
    std::uint64_t offset = 0;
    int width = 0, height = 0;          // pixels
    int samples = 1;                    // per pixel
    int colorSamples = 1;               // samples without alpha
    int bits = 1;                       // per sample
    SampleType type = SampleType::Bits; // as stored in the file
    bool typeGiven = false;             // SampleFormat was there
    int compression = 1, photometric = 1, fillOrder = 1;
    bool planar = false, tiled = false;
    int blockWidth = 0, blockHeight = 0;                 // of a strip (full width) or tile
    std::vector<std::uint64_t> blockOffsets, blockBytes; // bytes 0: the file does not tell
    std::vector<std::uint64_t> subDirectories;
    std::vector<std::uint16_t> colorMap; // red, green, blue tables one after the other

    int blocksAcross() const { return (width + blockWidth - 1) / blockWidth; }
    int blocksDown() const { return (height + blockHeight - 1) / blockHeight; }
};

enum TiffTag : std::uint16_t {
    TagSubfileType = 254,
    TagWidth = 256,
    TagHeight = 257,
    TagBits = 258,
    TagCompression = 259,
    TagPhotometric = 262,
    TagFillOrder = 266,
    TagDescription = 270,
    TagStripOffsets = 273,
    TagSamples = 277,
    TagRowsPerStrip = 278,
    TagStripBytes = 279,
    TagXResolution = 282,
    TagYResolution = 283,
    TagPlanar = 284,
    TagColorMap = 320,
    TagTileWidth = 322,
    TagTileHeight = 323,
    TagTileOffsets = 324,
    TagTileBytes = 325,
    TagSubDirectories = 330,
    TagExtraSamples = 338,
    TagSampleFormat = 339,
    TagImageJCounts = 50838,
    TagImageJData = 50839
};

// The pages from the first on, and why there are no more of them.
struct PageChain {
    std::vector<PageSummary> pages;
    std::string damage; // a clause; empty when the chain ends as it should
};

// A tag for the user to read.
struct TagText {
    std::uint16_t tag = 0;
    std::string name, value; // the first values of many
};

class TiffStructure {
public:
    // Reads the header; throws FormatError when the file is no TIFF. The file must outlive this.
    explicit TiffStructure(const InputFile& file);

    bool bigEndian() const { return swapped != (std::endian::native == std::endian::big); }
    bool bigTiff() const { return big; }
    bool needsSwap() const { return swapped; }
    std::uint64_t firstPage() const { return firstDirectory; } // offset of its directory

    // Follows the chain of pages up to its end or to the first page that is damaged, was there before or
    // overlaps others. Throws FormatError when that is the first one.
    PageChain pages() const;
    Directory directory(std::uint64_t offset) const;

    // Values of one tag of the directory; empty when it is not there. At most maxCount values are read.
    std::vector<std::uint64_t> integers(std::uint64_t offset, TiffTag tag, std::uint64_t maxCount) const;
    std::vector<std::byte> bytes(std::uint64_t offset, TiffTag tag, std::uint64_t maxBytes) const;
    std::string text(std::uint64_t offset, TiffTag tag) const;
    std::optional<double> rational(std::uint64_t offset, TiffTag tag) const;
    // All tags of the directory. A damaged one's value says so.
    std::vector<TagText> listing(std::uint64_t offset) const;

private:
    struct Entry {
        std::uint16_t tag = 0, type = 0;
        std::uint64_t count = 0;
        std::array<std::byte, 8> value = {}; // the values themselves, or their offset
    };
    struct Entries {
        std::vector<Entry> list;
        std::uint64_t next = 0;
        const Entry* find(TiffTag tag) const;
    };

    Entries entries(std::uint64_t offset) const;
    Entry entry(std::span<const std::byte> raw) const;
    std::vector<std::byte> rawValues(const Entry& entry, std::uint64_t maxCount) const;
    std::vector<std::uint64_t> integers(const Entries& entries, TiffTag tag, std::uint64_t maxCount) const;
    std::uint64_t integer(const Entries& entries, TiffTag tag, std::uint64_t fallback) const;
    std::uint64_t number(std::span<const std::byte> raw) const; // an integer of 1, 2, 4 or 8 bytes
    std::string valueText(std::uint16_t type, std::span<const std::byte> raw) const;
    std::string valuesText(const Entry& entry) const;
    std::uint64_t bytesOf(const Entries& entries) const; // that they take in the file
    PageSummary summary(std::uint64_t offset, const Entries& entries) const;
    void readSamples(const Entries& entries, Directory& directory) const;
    void readBlocks(const Entries& entries, Directory& directory) const;

    const InputFile& file;
    std::uint64_t fileSize = 0, firstDirectory = 0;
    bool swapped = false, big = false;
};

} // namespace image
