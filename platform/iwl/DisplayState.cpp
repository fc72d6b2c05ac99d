// SPDX-License-Identifier: MIT
// What an image window shows, answered from the record that it published last: no call here asks the server.
#include "platform/iwl/Slots.h"
#include "platform/protocol/Geometry.h"

#include <IWL.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <optional>

namespace {

struct PointerPosition {
    int x = 0, y = 0; // window pixels
};

std::optional<PointerPosition> pointerPosition(const XEvent& event)
{
    switch (event.type) {
    case ButtonPress:
    case ButtonRelease:
        return PointerPosition{event.xbutton.x, event.xbutton.y};
    case MotionNotify:
        return PointerPosition{event.xmotion.x, event.xmotion.y};
    case EnterNotify:
    case LeaveNotify:
        return PointerPosition{event.xcrossing.x, event.xcrossing.y};
    case KeyPress:
    case KeyRelease:
        return PointerPosition{event.xkey.x, event.xkey.y};
    default:
        return std::nullopt;
    }
}

// Rounding to float must not carry a position into the next pixel.
float towardZero(double value)
{
    const float rounded = static_cast<float>(value);
    return std::fabs(static_cast<double>(rounded)) > std::fabs(value) ? std::nextafterf(rounded, 0.0F)
                                                                      : rounded;
}

int sectionOfPanel(const protocol::DisplayRecord& record, int panel)
{
    return record.geometry.style == protocol::ZPanels ? record.z + panel : record.z;
}

const protocol::WavelengthDisplay* wavelengthOf(int slotNumber, int w)
{
    const iwl::Slot* slot = iwl::slotAt(slotNumber);
    const bool exists = slot && w >= 0 && static_cast<std::size_t>(w) < slot->record.wavelengths.size();
    return exists ? &slot->record.wavelengths[w] : nullptr;
}

// The wavelength whose stage position counts for the whole display.
int leadingWavelength(const protocol::DisplayRecord& record)
{
    const auto& waves = record.wavelengths;
    const auto shown =
        std::find_if(waves.begin(), waves.end(), [](const auto& wave) { return wave.displayed; });
    return shown == waves.end() ? record.w : static_cast<int>(shown - waves.begin());
}

const iwl::StageOrigin& stageOriginOf(iwl::Slot& slot, int z)
{
    if (slot.stageOrigin && slot.stageOrigin->section.z == z)
        return *slot.stageOrigin;
    const auto& record = slot.record;
    iwl::StageOrigin origin;
    origin.section = {z, leadingWavelength(record), record.t, record.p};
    origin.x = slot.image.extendedHeader(origin.section, image::StageXMicrons).value_or(0);
    origin.y = slot.image.extendedHeader(origin.section, image::StageYMicrons).value_or(0);
    origin.z = slot.image.extendedHeader(origin.section, image::StageZMicrons);
    return slot.stageOrigin.emplace(origin);
}

// The section that a data coordinate z lies in; z outside the stack counts as its nearest section.
int sectionOf(float z, int count)
{
    if (!(z > 0))
        return 0;
    return z < static_cast<float>(count) ? static_cast<int>(z) : count - 1;
}

} // namespace

int IWGetButPressInfo(XEvent* event, int* window, float* x, float* y, float* z, int* subPanel, int* panel)
{
    const iwl::Slot* slot = event ? iwl::slotShowing(event->xany.window) : nullptr;
    const auto pointer = slot ? pointerPosition(*event) : std::nullopt;
    if (!pointer)
        return 0;
    const auto position = protocol::dataFromWindow(slot->record.geometry, pointer->x, pointer->y);
    if (!position)
        return 0;
    *window = slot->windowNumber;
    *x = towardZero(position->x);
    *y = towardZero(position->y);
    *z = static_cast<float>(sectionOfPanel(slot->record, position->panel));
    *subPanel = 0;
    *panel = position->panel;
    return 1;
}

int IWRtMulDis(int slotNumber, int* columns, int* rows)
{
    const iwl::Slot* slot = iwl::slotAt(slotNumber);
    if (!slot)
        return 0;
    *columns = slot->record.geometry.columns;
    *rows = slot->record.geometry.rows;
    return 1;
}

int IWRtMulDisStyle(int slotNumber)
{
    const iwl::Slot* slot = iwl::slotAt(slotNumber);
    return slot ? slot->record.geometry.style : protocol::SinglePanel;
}

int IWRtDisSec_ZWTP(int slotNumber, int* z, int* w, int* t, int* p)
{
    const iwl::Slot* slot = iwl::slotAt(slotNumber);
    if (!slot)
        return 0;
    *z = slot->record.z;
    *w = slot->record.w;
    *t = slot->record.t;
    *p = slot->record.p;
    return 1;
}

int IWIsWaveMap(int slot, int w)
{
    const auto* wavelength = wavelengthOf(slot, w);
    return wavelength && wavelength->displayed;
}

int IWRtImgColor(int slotNumber, int* colors)
{
    const iwl::Slot* slot = iwl::slotAt(slotNumber);
    if (!slot)
        return 0;
    for (const auto& wavelength : slot->record.wavelengths)
        *colors++ = wavelength.colorIndex;
    return 1;
}

int IWRtScratchSize(int slotNumber)
{
    const iwl::Slot* slot = iwl::slotAt(slotNumber);
    return slot ? slot->record.scratchSize : 0;
}

int IWRtTopImgLoc(int slot, int w)
{
    const auto* wavelength = wavelengthOf(slot, w);
    return wavelength ? wavelength->topImage : 0;
}

int IWRtFilename(int slotNumber, int /*what*/, char* name)
{
    const iwl::Slot* slot = iwl::slotAt(slotNumber);
    name[0] = '\0';
    if (!slot || slot->record.path.size() >= IW_FILENAME_SIZE)
        return 0;
    std::memcpy(name, slot->record.path.c_str(), slot->record.path.size() + 1);
    return 1;
}

int IWDataToTSPos(float x, float y, float z, int slotNumber, float* stage)
{
    iwl::Slot* slot = iwl::slotAt(slotNumber);
    if (!slot)
        return 0;
    const iwl::StageOrigin& origin = stageOriginOf(*slot, sectionOf(z, slot->image.info().sizeZ));
    const protocol::Spacing spacing = slot->spacing();
    stage[0] = static_cast<float>(origin.x + static_cast<double>(x) * spacing[0]);
    stage[1] = static_cast<float>(origin.y + static_cast<double>(y) * spacing[1]);
    stage[2] = static_cast<float>(origin.z.value_or(static_cast<double>(z) * spacing[2]));
    return 1;
}

int IMRtWavMM(int slot, int w, float* min, float* max)
{
    const auto* wavelength = wavelengthOf(slot, w);
    if (!wavelength || !wavelength->rangeKnown)
        return -1;
    *min = wavelength->rangeMin;
    *max = wavelength->rangeMax;
    return 0;
}
