// SPDX-License-Identifier: MIT
// One page of pixels (or one of the planes that lie behind a single page) as blocks that are loaded one by
// one.
//
// Blocks are what the cache holds: a tile; or a run of whole rows, several short strips together or a part of
// a long one. A block's rows are rowBytes apart; the last run of rows may be shorter, tiles are
// always full.
#pragma once

#include "platform/image/Convert.h"
#include "platform/image/TiffStructure.h"

#include <optional>

namespace image {

struct Plane {
    enum class Access { RawRows, RawTiles, DecodedStrips, DecodedRows, DecodedTiles, RgbStrips, RgbTiles };

    std::uint64_t file = 0;           // the TiffFile's id when the directory was read
    std::uint64_t firstByteShift = 0; // of this plane behind the page's own data
    Directory directory;
    Access access = Access::RawRows;

    SampleType type = SampleType::U8; // in a block
    int bits = 8;                     // of a sample in a block
    int samples = 1;                  // of a pixel in a block
    int sampleCount = 1;              // in all, alpha excluded
    bool inverted = false;            // high values are dark in the file
    int blockWidth = 0, blockHeight = 0;
    int across = 1, down = 1; // blocks per plane; a planar page has these for each sample
    std::size_t rowBytes = 0; // of a block

    int width() const { return directory.width; }
    int height() const { return directory.height; }
    int blockCount() const { return across * down * (directory.planar ? directory.samples : 1); }
    int blockAt(int column, int row, int sample) const
    {
        const int first = directory.planar && samples == 1 ? sample * across * down : 0;
        return first + row * across + column;
    }
    // Rows of the image in blocks of this block row.
    int rowsIn(int blockRow) const { return std::min(blockHeight, height() - blockRow * blockHeight); }
    std::size_t blockBytes(int block) const;
    bool isTiles() const;
};

// Works out how the page's blocks are read. declared: the type that the metadata claims, used where the page
// itself leaves it open. Throws FormatError for what cannot be read.
Plane planeOf(const Directory& directory, std::optional<SampleType> declared, std::uint64_t firstByteShift);

} // namespace image
