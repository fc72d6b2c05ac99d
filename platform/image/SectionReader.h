// SPDX-License-Identifier: MIT
// Pixel values of one section (or of a reduced copy of it) from the blocks of its page.
#pragma once

#include "platform/image/BlockCache.h"
#include "platform/image/ImageFile.h"
#include "platform/image/TiffFile.h"

#include <memory>
#include <span>
#include <stop_token>
#include <vector>

namespace image {

constexpr std::size_t heldSectionBytes = 32u << 20; // largest section whose blocks a reader holds on to

// Blocks of a page: inclusive columns and rows.
struct BlockRange {
    int columnFirst, columnLast, rowFirst, rowLast;

    int columns() const { return columnLast - columnFirst + 1; }
    int count() const { return columns() * (rowLast - rowFirst + 1); }
};

// Holds on to the blocks that it has touched of sections up to heldSectionBytes, so that reading the same
// section again needs no lock and no search. For one thread at a time.
class SectionReader {
public:
    // Goes over to another section: sample number `sample` of the page's pixels, valueOffset added to each
    // value. Keeps the blocks that it holds when the page is the same.
    void take(std::shared_ptr<TiffFile> newFile, PlanePtr newPlane, int newSample, float newOffset);

    // Throws FormatError when blocks lie outside the file, StalePlane when the file has changed.
    void requireComplete() const { file->requireComplete(*plane); }

    const Plane& page() const { return *plane; }

    // Fills out (rect.width() * rect.height() values, row by row). The rectangle must lie inside the page.
    // Throws FormatError or StalePlane.
    void read(const PixelRect& rect, std::span<float> out);

    // Smallest and largest finite value; what it reads stays out of the cache. False when stopped or when
    // there is none.
    bool valueRange(const std::stop_token& stop, float& min, float& max);

private:
    BlockPtr cached(int number, bool keep) const;
    BlockPtr block(int number, bool keep = true);
    std::vector<BlockPtr> fetch(const BlockRange& range);
    void readSmall(const PixelRect& rect, float* out);
    void readLarge(const PixelRect& rect, float* out);
    void readGroup(const BlockRange& range, const PixelRect& rect, float* out);
    void finish(std::span<float> values) const;

    std::shared_ptr<TiffFile> file;
    PlanePtr plane;
    int sample = 0;
    float valueOffset = 0;
    std::vector<BlockPtr> held; // by block number; empty when the section is too large to be held
};

} // namespace image
