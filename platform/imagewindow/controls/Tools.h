// SPDX-License-Identifier: MIT
// The tools on one window: which ones run, and starting one.
#pragma once

#include "platform/protocol/XProtocol.h"

#include <vector>

namespace viewer {

struct Desk;

class Tools {
public:
    explicit Tools(const Desk& desk) : desk(desk) {}

    // Those that are attached now. A round trip to the server and more.
    std::vector<protocol::ToolEntry> running() const;
    // Starts it, or brings the one that is attached to the front. What fails is told in a dialogue.
    void startLineProfile();
    // A tool has come or gone; whether one has come.
    bool haveGrown();

private:
    const Desk& desk;
    std::size_t count = 0; // that were attached at the last look
};

} // namespace viewer
