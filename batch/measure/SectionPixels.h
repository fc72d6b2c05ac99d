// SPDX-License-Identifier: MIT
// The pixels of one section for many lines: the blocks that a line touches are decoded when it comes, each
// once, and kept until the section is done. Several jobs may share one.
#pragma once

#include "platform/image/ImageFile.h"
#include "profile/Walk.h"

#include <array>
#include <atomic>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <vector>

namespace batch {

// Why a line or a section cannot be measured; what() is a sentence for the user.
struct MeasureError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

class SectionPixels {
public:
    // Reads nothing yet. The image must outlive this. Throws MeasureError when the file lacks the section.
    SectionPixels(image::ImageFile& image, const image::SectionIndex& section);

    int width() const { return columns; }
    int height() const { return rows; }

    // Sees to it that the pixels of the rectangle, which must lie inside the section, can be had by at().
    // Throws MeasureError when a block cannot be read.
    void require(const WalkRect& rect)
    {
        if (missing.load(std::memory_order_acquire) > 0)
            load(rect);
    }
    // The same for each point of a walk.
    void require(const PixelPoint* points, std::int32_t count);

    // Of a pixel that was required.
    float at(std::int32_t x, std::int32_t y) const { return values[offsetOf(x, y)]; }
    const float* data() const { return values.get(); } // row by row, width() values each

private:
    std::size_t offsetOf(std::int32_t x, std::int32_t y) const
    {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(columns) + static_cast<std::size_t>(x);
    }
    int blockOf(const PixelPoint& point) const
    {
        return point.y / block.height * across + point.x / block.width;
    }
    void load(const WalkRect& rect);
    void loadBlock(int number);
    void read(const image::PixelRect& rect);

    image::ImageFile& file;
    image::SectionIndex index;
    int columns, rows;
    image::ImageFile::BlockSize block;
    int across, blocks;
    std::unique_ptr<float[]> values;              // memory that no block has filled is never touched
    std::unique_ptr<std::atomic<bool>[]> present; // by block
    std::atomic<int> missing;                     // blocks
    std::array<std::mutex, 16> loading;           // by block number, modulo
};

} // namespace batch
