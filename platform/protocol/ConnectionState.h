// SPDX-License-Identifier: MIT
// What the process keeps per X connection, freed when the connection is closed. Internal to the protocol
// library.
#pragma once

#include "platform/protocol/XProtocol.h"

#include <vector>

namespace protocol {

struct HeldLock {
    int windowNumber;
    Window owner;
};

struct ConnectionState {
    explicit ConnectionState(Display* display) : atoms(display) {}
    Atoms atoms;
    std::vector<HeldLock> locks; // input locks that this connection holds
};

// Made at the first call for a connection.
ConnectionState& stateOf(Display* display);

} // namespace protocol
