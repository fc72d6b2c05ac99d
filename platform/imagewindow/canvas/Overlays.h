// SPDX-License-Identifier: MIT
// The overlay graphics of the tools on one canvas: takes their commands from the canvas and watches the
// windows of those who draw, so that a dead client's graphics go. What a window does not hold is refused, and
// said once on standard error.
#pragma once

#include "platform/imagewindow/paint/OverlayStore.h"
#include "platform/protocol/Geometry.h"

#include <X11/Xlib.h>

#include <set>
#include <vector>

namespace viewer {

class Overlays {
public:
    explicit Overlays(Display* display) : display(display) {}

    // A notification of that serial tells of commands on the canvas, which shows these panels. Whether one of
    // them asks for the drawing.
    bool arrived(unsigned long serial, Window canvas, const protocol::Geometry& geometry,
                 const std::vector<PanelContent>& panels);
    // A window was destroyed. Whether it was a client's; its graphics are gone.
    bool clientGone(Window client);

    OverlayStore& store() { return graphics; }
    const OverlayStore& store() const { return graphics; }

private:
    bool take(const protocol::OverlayCommand& command, const GraphicBinding& binding);
    bool watch(Window client);
    bool listen(Window client);
    bool makeRoom();
    void tellRefusal(const char* reason);

    Display* display;
    OverlayStore graphics;
    std::set<Window> clients;        // that have graphics here: watched for their end
    unsigned long drainedSerial = 0; // of the request that last took the commands
    bool refusalTold = false;
};

} // namespace viewer
