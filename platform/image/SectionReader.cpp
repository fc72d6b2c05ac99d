// SPDX-License-Identifier: MIT
#include "platform/image/SectionReader.h"

#include "platform/image/WorkerPool.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <span>

namespace image {

constexpr std::int64_t parallelPixels = 256 << 10; // rectangles above are split over the cores
constexpr std::int64_t pixelsPerItem = 64 << 10;   // work item of such a rectangle
constexpr std::size_t groupBytes = 64u << 20;      // blocks that a large read holds at once

namespace {

// A block's bytes and where it stands among the page's blocks.
struct PlacedBlock {
    const std::byte* data;
    int column, row;
};

BlockRange blocksOf(const Plane& plane, const PixelRect& rect)
{
    const int rowFirst = rect.yFirst / plane.blockHeight, rowLast = rect.yLast / plane.blockHeight;
    if (plane.across == 1)
        return {0, 0, rowFirst, rowLast};
    return {rect.xFirst / plane.blockWidth, rect.xLast / plane.blockWidth, rowFirst, rowLast};
}

// Rows of a rectangle that make one work item.
int rowsPerItem(const PixelRect& rect)
{
    return static_cast<int>(std::max<std::int64_t>(1, pixelsPerItem / rect.width()));
}

// Converts what the rectangle and the block have in common, from row yFirst to yLast of the image.
void convertPart(const Plane& plane, int sample, const PlacedBlock& block, const PixelRect& rect, int yFirst,
                 int yLast, float* out)
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

// The rows y0 to y1 of the rectangle; blocks are those of the range, row by row.
void convertBand(const Plane& plane, int sample, const BlockRange& range, const std::vector<BlockPtr>& blocks,
                 const PixelRect& rect, int y0, int y1, float* out)
{
    // Of tiles, row by row: out is then written from front to back, which is what the memory likes.
    const int step = range.columns() > 1 ? 1 : y1 - y0 + 1;
    for (int y = y0; y <= y1; y += step) {
        const int last = y + step - 1;
        for (int row = y / plane.blockHeight; row <= last / plane.blockHeight; ++row)
            for (int column = range.columnFirst; column <= range.columnLast; ++column) {
                const int at = (row - range.rowFirst) * range.columns() + column - range.columnFirst;
                const std::byte* data = blocks[static_cast<std::size_t>(at)]->first();
                convertPart(plane, sample, {data, column, row}, rect, y, last, out);
            }
    }
}

// Smallest and largest value, joined to those found before.
struct RangeSoFar {
    float& min;
    float& max;
    bool any = false;

    void add(std::span<const float> values)
    {
        float low = 0, high = 0;
        if (!finiteRange(values, low, high))
            return;
        min = any ? std::min(min, low) : low;
        max = any ? std::max(max, high) : high;
        any = true;
    }
};

} // namespace

void SectionReader::take(std::shared_ptr<TiffFile> newFile, PlanePtr newPlane, int newSample, float newOffset)
{
    if (plane != newPlane) {
        std::size_t bytes = 0;
        for (int b = 0; b < newPlane->blockCount() && bytes <= heldSectionBytes; ++b)
            bytes += newPlane->blockBytes(b);
        held.clear();
        held.resize(bytes <= heldSectionBytes ? static_cast<std::size_t>(newPlane->blockCount()) : 0);
    }
    file = std::move(newFile);
    plane = std::move(newPlane);
    sample = newSample;
    valueOffset = newOffset;
}

BlockPtr SectionReader::cached(int number, bool keep) const
{
    const BlockKey key{plane->file, plane->directory.offset, plane->firstByteShift,
                       static_cast<std::uint64_t>(number)};
    const auto load = [&] { return file->load(*plane, number); };
    if (keep)
        return BlockCache::instance().get(key, plane->blockBytes(number), load);
    const BlockPtr found = BlockCache::instance().find(key);
    return found ? found : load();
}

BlockPtr SectionReader::block(int number, bool keep)
{
    if (held.empty())
        return cached(number, keep);
    BlockPtr& mine = held[static_cast<std::size_t>(number)];
    if (!mine)
        mine = cached(number, keep);
    return mine;
}

void SectionReader::read(const PixelRect& rect, std::span<float> out)
{
    if (std::int64_t{rect.width()} * rect.height() > parallelPixels)
        readLarge(rect, out.data());
    else
        readSmall(rect, out.data());
    finish(out);
}

void SectionReader::readSmall(const PixelRect& rect, float* out)
{
    const BlockRange range = blocksOf(*plane, rect);
    for (int row = range.rowFirst; row <= range.rowLast; ++row)
        for (int column = range.columnFirst; column <= range.columnLast; ++column) {
            const int number = plane->blockAt(column, row, sample);
            const Block* mine = held.empty() ? nullptr : held[static_cast<std::size_t>(number)].get();
            const BlockPtr fetched = mine ? nullptr : block(number);
            convertPart(*plane, sample, {mine ? mine->first() : fetched->first(), column, row}, rect,
                        rect.yFirst, rect.yLast, out);
        }
}

// The blocks of the range, row by row; those that are not at hand are loaded several at once.
std::vector<BlockPtr> SectionReader::fetch(const BlockRange& range)
{
    std::vector<BlockPtr> blocks(static_cast<std::size_t>(range.count()));
    const auto numberOf = [&](int i) {
        return plane->blockAt(range.columnFirst + i % range.columns(), range.rowFirst + i / range.columns(),
                              sample);
    };
    std::vector<int> absent;
    for (int i = 0; i < range.count(); ++i) {
        if (!held.empty())
            blocks[static_cast<std::size_t>(i)] = held[static_cast<std::size_t>(numberOf(i))];
        if (!blocks[static_cast<std::size_t>(i)])
            absent.push_back(i);
    }
    parallelFor(static_cast<int>(absent.size()), [&](int item) {
        const int i = absent[static_cast<std::size_t>(item)];
        blocks[static_cast<std::size_t>(i)] = cached(numberOf(i), true);
    });
    if (!held.empty())
        for (const int i : absent)
            held[static_cast<std::size_t>(numberOf(i))] = blocks[static_cast<std::size_t>(i)];
    return blocks;
}

// In groups of blocks, so that those of a huge rectangle are not all held at once.
void SectionReader::readLarge(const PixelRect& rect, float* out)
{
    const BlockRange all = blocksOf(*plane, rect);
    const std::size_t blockBytes = plane->rowBytes * static_cast<std::size_t>(plane->blockHeight);
    const auto groupOf = [](std::size_t bytes) {
        return static_cast<int>(std::clamp<std::size_t>(groupBytes / bytes, 1, 1 << 20));
    };
    const int columns = std::min(all.columns(), groupOf(blockBytes));
    const int rows = groupOf(blockBytes * static_cast<std::size_t>(columns));
    for (int row = all.rowFirst; row <= all.rowLast; row += rows)
        for (int column = all.columnFirst; column <= all.columnLast; column += columns)
            readGroup({column, std::min(all.columnLast, column + columns - 1), row,
                       std::min(all.rowLast, row + rows - 1)},
                      rect, out);
}

// The part of the rectangle that these blocks cover.
void SectionReader::readGroup(const BlockRange& range, const PixelRect& rect, float* out)
{
    const std::vector<BlockPtr> blocks = fetch(range);
    const int top = std::max(rect.yFirst, range.rowFirst * plane->blockHeight);
    const int bottom = std::min(rect.yLast, (range.rowLast + 1) * plane->blockHeight - 1);
    const int bandRows = rowsPerItem(rect);
    parallelFor((bottom - top) / bandRows + 1, [&](int band) {
        const int y0 = top + band * bandRows, y1 = std::min(bottom, y0 + bandRows - 1);
        convertBand(*plane, sample, range, blocks, rect, y0, y1, out);
    });
}

void SectionReader::finish(std::span<float> values) const
{
    const float gain = plane->inverted ? -1.0f : 1.0f;
    const float top = plane->inverted ? std::ldexp(1.0f, plane->bits) - 1 : 0.0f;
    if (plane->inverted || valueOffset != 0)
        rescale(values, gain, top + valueOffset);
}

bool SectionReader::valueRange(const std::stop_token& stop, float& min, float& max)
{
    RangeSoFar range{min, max};
    std::vector<float> values;
    for (int i = 0; i < plane->across * plane->down; ++i) {
        if (stop.stop_requested())
            return false;
        const int column = i % plane->across, row = i / plane->across;
        const BlockPtr data = block(plane->blockAt(column, row, sample), false);
        const int left = column * plane->blockWidth, top = row * plane->blockHeight;
        const PixelRect whole{left, top, std::min(plane->width(), left + plane->blockWidth) - 1,
                              std::min(plane->height(), top + plane->blockHeight) - 1};
        const int bandRows = rowsPerItem(whole);
        for (int y = top; y <= whole.yLast; y += bandRows) {
            const PixelRect part{left, y, whole.xLast, std::min(whole.yLast, y + bandRows - 1)};
            values.resize(static_cast<std::size_t>(part.width()) * part.height());
            convertPart(*plane, sample, {data->first(), column, row}, part, part.yFirst, part.yLast,
                        values.data());
            finish(values);
            range.add(values);
        }
    }
    return range.any;
}

} // namespace image
