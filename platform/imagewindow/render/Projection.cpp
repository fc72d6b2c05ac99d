// SPDX-License-Identifier: MIT
#include "platform/imagewindow/render/Projection.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

namespace viewer {

namespace {

constexpr long blockValues = 1L << 19; // read at a time

class MemoryImage final : public image::ImageFile {
public:
    MemoryImage(std::vector<float> all, int width, int height) : values(std::move(all))
    {
        description.width = width;
        description.height = height;
        description.pixelType = image::PixelType::Float32;
        description.wavelengths.resize(1);
    }
    const image::ImageInfo& info() const override { return description; }
    bool hasSection(const image::SectionIndex& section) const override
    {
        return section == image::SectionIndex{};
    }
    bool read(const image::SectionIndex& section, const image::PixelRect& rect, std::span<float> out) override
    {
        const bool inside = rect.xFirst >= 0 && rect.yFirst >= 0 && rect.xFirst <= rect.xLast &&
                            rect.yFirst <= rect.yLast && rect.xLast < description.width &&
                            rect.yLast < description.height;
        if (!hasSection(section) || !inside ||
            out.size() != static_cast<std::size_t>(rect.width()) * static_cast<std::size_t>(rect.height()))
            return false;
        auto next = out.begin();
        for (std::ptrdiff_t y = rect.yFirst; y <= rect.yLast; ++y)
            next = std::copy_n(values.begin() + y * description.width + rect.xFirst, rect.width(), next);
        return true;
    }
    bool readLevel(const image::SectionIndex& section, int level, const image::PixelRect& rect,
                   std::span<float> out) override
    {
        return level == 0 && read(section, rect, out);
    }
    std::optional<double> extendedHeader(const image::SectionIndex&, int) const override
    {
        return std::nullopt;
    }
    std::string lastError() const override { return "There is no such section."; }

private:
    image::ImageInfo description;
    std::vector<float> values;
};

// Adds one section. False when told to end or when it cannot be read: then error says why.
bool addSection(image::ImageFile& file, const image::SectionIndex& section, SectionFold& fold,
                const std::function<bool(double)>& proceed, std::string& error)
{
    const int width = file.info().width, height = file.info().height;
    const int rows = static_cast<int>(std::clamp(blockValues / width, 1L, static_cast<long>(height)));
    std::vector<float> block;
    for (int y = 0; y < height; y += rows) {
        if (!proceed(static_cast<double>(y) / height))
            return false;
        const int last = std::min(y + rows, height) - 1;
        const auto row = static_cast<std::size_t>(width);
        block.resize(row * static_cast<std::size_t>(last - y + 1));
        if (!file.read(section, {0, y, width - 1, last}, block)) {
            error = file.lastError();
            return false;
        }
        fold.add(row * static_cast<std::size_t>(y), block);
    }
    return true;
}

} // namespace

SectionFold::SectionFold(Projection kind, std::size_t count)
    : kind(kind), values(count, kind == Projection::Maximum ? std::numeric_limits<double>::quiet_NaN() : 0)
{
}

void SectionFold::add(std::size_t first, std::span<const float> added)
{
    double* value = values.data() + first;
    if (kind == Projection::Maximum)
        for (const float each : added) {
            *value = std::fmax(*value, each);
            ++value;
        }
    else
        for (const float each : added)
            *value++ += each;
}

std::vector<float> SectionFold::result(int sections) const
{
    const double divisor = kind == Projection::Mean ? sections : 1;
    std::vector<float> result(values.size());
    std::transform(values.begin(), values.end(), result.begin(),
                   [&](double value) { return static_cast<float>(value / divisor); });
    return result;
}

std::vector<float> project(image::ImageFile& file, const ProjectionKey& key, const Proceed& proceed,
                           std::string& error)
{
    const image::ImageInfo& info = file.info();
    SectionFold fold(key.kind, static_cast<std::size_t>(info.width) * static_cast<std::size_t>(info.height));
    int sections = 0;
    for (int z = 0; z < info.sizeZ; ++z) {
        const image::SectionIndex section{z, key.w, key.t, key.p};
        if (!file.hasSection(section))
            continue;
        ++sections;
        const auto within = [&](double share) { return proceed((z + share) / info.sizeZ); };
        if (!addSection(file, section, fold, within, error))
            return {};
    }
    return fold.result(sections);
}

std::unique_ptr<image::ImageFile> asImage(std::vector<float> values, int width, int height)
{
    return std::make_unique<MemoryImage>(std::move(values), width, height);
}

} // namespace viewer
