// SPDX-License-Identifier: MIT
// An image in memory whose values are a formula: pixel (x, y) of section (z, w, t, p) at level k is
// value(section, x * 2^k, y * 2^k).
#pragma once

#include "platform/image/ImageFile.h"

#include <functional>
#include <optional>
#include <span>
#include <string>

namespace viewertest {

class FakeImage : public image::ImageFile {
public:
    FakeImage(int width, int height, int sizeW = 1)
    {
        description.width = width;
        description.height = height;
        description.sizeW = sizeW;
        description.pixelType = image::PixelType::UInt16;
        description.wavelengths.resize(static_cast<std::size_t>(sizeW));
    }

    image::ImageInfo description;
    std::function<float(const image::SectionIndex&, int x, int y)> value =
        [](const image::SectionIndex&, int x, int y) { return static_cast<float>(x + 100 * y); };
    std::function<std::optional<double>(int field)> header = [](int) { return std::nullopt; };
    int levels = 1;
    bool broken = false;
    int reads = 0; // calls that delivered values

    const image::ImageInfo& info() const override { return description; }
    bool hasSection(const image::SectionIndex& section) const override
    {
        return section.z < description.sizeZ && section.w < description.sizeW &&
               section.t < description.sizeT;
    }
    bool read(const image::SectionIndex& section, const image::PixelRect& rect, std::span<float> out) override
    {
        return readLevel(section, 0, rect, out);
    }
    int levelCount() const override { return levels; }
    double levelScale(int level) const override { return 1 << level; }
    int levelWidth(int level) const override { return description.width >> level; }
    int levelHeight(int level) const override { return description.height >> level; }
    bool readLevel(const image::SectionIndex& section, int level, const image::PixelRect& rect,
                   std::span<float> out) override
    {
        const bool inside = rect.xFirst >= 0 && rect.yFirst >= 0 && rect.xLast < levelWidth(level) &&
                            rect.yLast < levelHeight(level) && rect.width() > 0 && rect.height() > 0;
        if (broken || !inside ||
            out.size() != static_cast<std::size_t>(rect.width()) * static_cast<std::size_t>(rect.height()))
            return false;
        ++reads;
        auto next = out.begin();
        for (int y = rect.yFirst; y <= rect.yLast; ++y)
            for (int x = rect.xFirst; x <= rect.xLast; ++x)
                *next++ = value(section, x << level, y << level);
        return true;
    }
    std::optional<double> extendedHeader(const image::SectionIndex&, int field) const override
    {
        return header(field);
    }
    std::string lastError() const override { return "it is broken"; }
};

} // namespace viewertest
