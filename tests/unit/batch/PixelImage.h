// SPDX-License-Identifier: MIT
// An image of one section in memory that notes which rectangles are read.
#pragma once

#include "platform/image/ImageFile.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace batchtest {

class PixelImage : public image::ImageFile {
public:
    PixelImage(int width, int height)
        : values(static_cast<std::size_t>(width) * static_cast<std::size_t>(height))
    {
        description.width = width;
        description.height = height;
        description.wavelengths.resize(1);
        block = {width, height};
    }
    float& at(int x, int y)
    {
        return values[static_cast<std::size_t>(y) * static_cast<std::size_t>(description.width) +
                      static_cast<std::size_t>(x)];
    }
    const image::ImageInfo& info() const override { return description; }
    bool hasSection(const image::SectionIndex& section) const override
    {
        return section == image::SectionIndex{};
    }
    BlockSize blockSize(const image::SectionIndex&) override { return block; }
    bool read(const image::SectionIndex&, const image::PixelRect& rect, std::span<float> out) override
    {
        reads.push_back(rect);
        auto next = out.begin();
        for (int y = rect.yFirst; y <= rect.yLast; ++y)
            for (int x = rect.xFirst; x <= rect.xLast; ++x)
                *next++ = at(x, y);
        return !broken;
    }
    bool readLevel(const image::SectionIndex& section, int, const image::PixelRect& rect,
                   std::span<float> out) override
    {
        return read(section, rect, out);
    }
    std::optional<double> extendedHeader(const image::SectionIndex&, int) const override
    {
        return std::nullopt;
    }
    std::string lastError() const override { return "It is broken."; }

    image::ImageInfo description;
    BlockSize block;
    std::vector<float> values;
    std::vector<image::PixelRect> reads;
    bool broken = false;
};

} // namespace batchtest
