// SPDX-License-Identifier: MIT
// The attached image windows as libIWL keeps them: one record per slot, made by IWAttachWin and freed by
// IMClose. Internal to libIWL.
#pragma once

#include "platform/iwl/SlotImage.h"
#include "platform/protocol/DisplayRecord.h"
#include "platform/protocol/OverlayRecord.h"

#include <X11/Xlib.h>

#include <map>
#include <optional>

namespace iwl {

// Stage position of one section, in microns: (0, 0) of its pixel grid.
struct StageOrigin {
    image::SectionIndex section;
    double x = 0, y = 0;
    std::optional<double> z; // nothing when the file gives none
};

struct Slot {
    int windowNumber = 0;
    Window canvas = None;
    bool closed = false;            // the canvas is gone; the record says what was shown last
    protocol::DisplayRecord record; // as last published
    SlotImage image;
    std::optional<protocol::Spacing> setSpacing; // by the user, as it was when the window was attached
    std::optional<StageOrigin> stageOrigin;      // of the section asked for last

    // Overlay graphics of this process by id, and bytes of commands sent since the viewer was last known to
    // have taken some. stalled: the viewer takes none, commands have been held back.
    std::map<int, protocol::OverlayCommand> graphics;
    unsigned long sentBytes = 0;
    bool stalled = false;

    // Of pixels in x, y and z, microns. A scale that the user sets later does not count: a program that has
    // read the spacing would mix lengths of both.
    protocol::Spacing spacing() const
    {
        const float* file = image.info().spacing;
        return setSpacing.value_or(protocol::Spacing{file[0], file[1], file[2]});
    }
};

// Null when the slot number is out of range or nothing is attached.
Slot* slotAt(int slot);
// The first slot that is attached to a canvas, null when there is none.
Slot* slotShowing(Window canvas);
// Frees the slot.
void detach(int slot);

// The viewer has taken the overlay commands: sends what was held back.
void overlaysTaken(Slot& slot);

} // namespace iwl
