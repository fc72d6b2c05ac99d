// SPDX-License-Identifier: MIT
// Reads a window property that any client may have written. Internal to the protocol library.
#pragma once

#include <X11/Xlib.h>

#include <cstddef>
#include <span>
#include <vector>

namespace protocol {

struct PropertyBytes {
    bool exists = false; // the window has such a property
    bool good = false;   // of the wanted type and format, and not above the limit; else bytes is empty
    std::vector<std::byte> bytes; // format 32: one native long per item, as Xlib hands them out
};

// Reads at most limit bytes; deletes the property with the same request when remove is set. A window that is
// gone has no property. One round trip.
PropertyBytes readProperty(Display* display, Window window, Atom property, Atom type, int format,
                           std::size_t limit, bool remove = false);

void writeBytes(Display* display, Window window, Atom property, Atom type, int mode,
                std::span<const std::byte> bytes);

} // namespace protocol
