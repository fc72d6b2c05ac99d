// SPDX-License-Identifier: MIT
// Watches, from outside, how often another client waits for the server to tell it a property.
#pragma once

#include "tests/x/iwl/Peers.h"

#include <X11/Xlib.h>
#include <X11/extensions/record.h>

namespace viewertest {

class PropertyReads {
public:
    // Of the client that owns the window, from now on.
    explicit PropertyReads(Window ofClient);
    ~PropertyReads();
    PropertyReads(const PropertyReads&) = delete;
    PropertyReads& operator=(const PropertyReads&) = delete;

    // Up to now.
    int count();

private:
    const peers::Connection control, data;
    XRecordContext context = 0;
    int reads = 0;
};

} // namespace viewertest
