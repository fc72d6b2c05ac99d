// SPDX-License-Identifier: MIT
#include "batch/measure/SectionPixels.h"

#include <algorithm>
#include <span>
#include <string>

namespace batch {

namespace {

// Smaller blocks are decoded together: a run of short strips, a group of small tiles.
constexpr int leastPixels = 1 << 14;

image::ImageFile::BlockSize grouped(image::ImageFile::BlockSize size, int width, int height)
{
    const auto enough = [&] { return std::int64_t{size.width} * size.height >= leastPixels; };
    while (!enough() && (size.width < width || size.height < height)) {
        const bool wider = size.width < width && (size.width <= size.height || size.height >= height);
        (wider ? size.width : size.height) *= 2;
    }
    return {std::min(size.width, width), std::min(size.height, height)};
}

} // namespace

SectionPixels::SectionPixels(image::ImageFile& image, const image::SectionIndex& section)
    : file(image), index(section), columns(image.info().width), rows(image.info().height)
{
    if (!file.hasSection(index))
        throw MeasureError("The image has no such section.");
    block = grouped(file.blockSize(index), columns, rows);
    across = (columns - 1) / block.width + 1;
    blocks = across * ((rows - 1) / block.height + 1);
    values = std::make_unique_for_overwrite<float[]>(offsetOf(0, rows));
    present = std::make_unique<std::atomic<bool>[]>(static_cast<std::size_t>(blocks));
    missing = blocks;
}

void SectionPixels::require(const PixelPoint* points, std::int32_t count)
{
    if (missing.load(std::memory_order_acquire) == 0)
        return;
    int last = -1;
    for (std::int32_t i = 0; i < count; ++i)
        if (const int number = blockOf(points[i]); number != last)
            loadBlock(last = number);
}

void SectionPixels::load(const WalkRect& rect)
{
    for (int row = rect.yFirst / block.height; row <= rect.yLast / block.height; ++row)
        for (int column = rect.xFirst / block.width; column <= rect.xLast / block.width; ++column)
            loadBlock(row * across + column);
}

void SectionPixels::loadBlock(int number)
{
    std::atomic<bool>& done = present[static_cast<std::size_t>(number)];
    if (done.load(std::memory_order_acquire))
        return;
    const std::lock_guard lock(loading[static_cast<std::size_t>(number) % loading.size()]);
    if (done.load(std::memory_order_relaxed))
        return;
    const int x = number % across * block.width, y = number / across * block.height;
    read({x, y, std::min(x + block.width, columns) - 1, std::min(y + block.height, rows) - 1});
    done.store(true, std::memory_order_release);
    missing.fetch_sub(1, std::memory_order_acq_rel);
}

// Blocks as wide as the section are read where they belong, others through a buffer of their own.
void SectionPixels::read(const image::PixelRect& rect)
{
    const auto width = static_cast<std::size_t>(rect.width()),
               height = static_cast<std::size_t>(rect.height());
    const bool inPlace = rect.width() == columns;
    std::vector<float> buffer(inPlace ? 0 : width * height);
    float* const first = values.get() + offsetOf(rect.xFirst, rect.yFirst);
    if (!file.read(index, rect, inPlace ? std::span(first, width * height) : std::span(buffer)))
        throw MeasureError(file.lastError());
    for (std::size_t row = 0; !inPlace && row < height; ++row)
        std::copy_n(buffer.data() + row * width, width, first + row * static_cast<std::size_t>(columns));
}

} // namespace batch
