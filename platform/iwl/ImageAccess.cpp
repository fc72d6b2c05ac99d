// SPDX-License-Identifier: MIT
// The image file of a slot: its dimensions, metadata and pixel values.
#include "platform/iwl/Slots.h"

#include <IWL.h>

#include <algorithm>
#include <optional>
#include <span>

namespace {

const image::ImageInfo* infoOf(int slotNumber)
{
    const iwl::Slot* slot = iwl::slotAt(slotNumber);
    return slot ? &slot->image.info() : nullptr;
}

} // namespace

int IMAlCon(int /*slot*/, int /*convert*/)
{
    return 0;
}

int IMRtZWTP(int slot, int* nz, int* nw, int* nt, int* np, int* total)
{
    const image::ImageInfo* info = infoOf(slot);
    if (!info)
        return -1;
    *nz = info->sizeZ;
    *nw = info->sizeW;
    *nt = info->sizeT;
    *np = info->sizeP;
    *total = info->sizeZ * info->sizeW * info->sizeT * info->sizeP;
    return 0;
}

int IMRtXY(int slot, int* nx, int* ny)
{
    const image::ImageInfo* info = infoOf(slot);
    if (!info)
        return -1;
    *nx = info->width;
    *ny = info->height;
    return 0;
}

int IMRtDel(int slotNumber, float* spacing)
{
    const iwl::Slot* slot = iwl::slotAt(slotNumber);
    if (!slot)
        return -1;
    std::ranges::copy(slot->spacing(), spacing);
    return 0;
}

int IMRtWav(int slot, int* count, float* waves)
{
    const image::ImageInfo* info = infoOf(slot);
    if (!info)
        return -1;
    *count = info->sizeW;
    for (int w = 0; w < info->sizeW; ++w)
        waves[w] = info->wavelengths[w].nanometres;
    return 0;
}

int IMRtExHdrValueZWTP(int slotNumber, int z, int w, int t, int p, int field, double* value)
{
    const iwl::Slot* slot = iwl::slotAt(slotNumber);
    const auto stored = slot ? slot->image.extendedHeader({z, w, t, p}, field) : std::nullopt;
    if (!stored)
        return -1;
    *value = *stored;
    return 0;
}

int IMPosnZWTP(int slotNumber, int z, int w, int t, int p)
{
    iwl::Slot* slot = iwl::slotAt(slotNumber);
    return slot && slot->image.position({z, w, t, p}) ? 0 : -1;
}

int IMRdPas(int slotNumber, float* buffer, int nx, int ny, int xFirst, int xLast, int yFirst, int yLast)
{
    iwl::Slot* slot = iwl::slotAt(slotNumber);
    if (!slot || !buffer || xFirst < 0 || yFirst < 0 || xLast < xFirst || yLast < yFirst)
        return -1;
    const image::ImageInfo& info = slot->image.info();
    const image::PixelRect rect{xFirst, yFirst, xLast, yLast};
    const bool inside = xLast < info.width && yLast < info.height;
    if (!inside || rect.width() != nx || rect.height() != ny)
        return -1;
    const std::span pixels(buffer, static_cast<std::size_t>(nx) * static_cast<std::size_t>(ny));
    return slot->image.read(rect, pixels) ? 0 : -1;
}

void IMClose(int slot)
{
    iwl::detach(slot);
}
