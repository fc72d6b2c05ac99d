// SPDX-License-Identifier: MIT
#include "platform/iwl/SlotImage.h"

#include "platform/iwl/Session.h"

#include <cstdio>

namespace iwl {
namespace {

bool showsImage(const protocol::DisplayRecord& record, const image::ImageInfo& info)
{
    const bool size = record.geometry.imageWidth == info.width &&
                      record.geometry.imageHeight == info.height &&
                      record.wavelengths.size() == static_cast<std::size_t>(info.sizeW);
    // The file of a scratch window may still lack the section on display.
    const bool section = record.z < info.sizeZ && record.t < info.sizeT && record.p < info.sizeP;
    return size && (section || record.scratchSize > 0);
}

} // namespace

SlotImage::SlotImage(const protocol::DisplayRecord& record) : shown(record)
{
    load();
}

// Keeps the file that is open when the new one cannot be used.
void SlotImage::load()
{
    readable = false;
    positioned.reset();
    stamp = base::stampOf(shown.path);
    auto opened = image::ImageFile::open(shown.path);
    if (!showsImage(shown, opened->info()))
        throw image::ImageError(shown.path +
                                " is not the image that the window shows: its dimensions differ.");
    file = std::move(opened);
    readable = true;
}

bool SlotImage::reload()
{
    try {
        load();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s: %s\n", iwl::programName().c_str(), error.what());
    }
    return readable;
}

void SlotImage::follow(const protocol::DisplayRecord& record)
{
    const bool other = record.path != shown.path;
    shown = record;
    if (other)
        reload();
    else
        readable = showsImage(shown, file->info()) || reload();
}

// Every other version of the file is opened once. A file that is gone is read through the descriptor.
bool SlotImage::refresh()
{
    const base::FileStamp now = base::stampOf(shown.path);
    return now == base::FileStamp{} || now == stamp ? readable : reload();
}

bool SlotImage::position(const image::SectionIndex& section)
{
    positioned.reset();
    if (!refresh())
        return false;
    if (contains(section) && file->hasSection(section) &&
        (shown.scratchSize > 0 || file->isComplete(section)))
        positioned = section;
    const bool toCome = shown.scratchSize > 0 && section.z >= 0 && section.t >= 0 && section.p >= 0 &&
                        section.w >= 0 && section.w < info().sizeW;
    return positioned || toCome;
}

bool SlotImage::read(const image::PixelRect& rect, std::span<float> out)
{
    return readable && positioned && file->read(*positioned, rect, out);
}

bool SlotImage::contains(const image::SectionIndex& section) const
{
    const auto& size = info();
    return section.z >= 0 && section.z < size.sizeZ && section.w >= 0 && section.w < size.sizeW &&
           section.t >= 0 && section.t < size.sizeT && section.p >= 0 && section.p < size.sizeP;
}

std::optional<double> SlotImage::extendedHeader(const image::SectionIndex& section, int field) const
{
    return contains(section) ? file->extendedHeader(section, field) : std::nullopt;
}

} // namespace iwl
