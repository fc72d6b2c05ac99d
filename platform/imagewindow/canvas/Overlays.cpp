// SPDX-License-Identifier: MIT
#include "platform/imagewindow/canvas/Overlays.h"

#include "platform/protocol/XProtocol.h"

#include <cstdint>
#include <cstdio>
#include <utility>

namespace viewer {

namespace {

constexpr std::size_t maxClients = 256; // whose windows are watched

bool addsGraphic(const protocol::OverlayCommand& command)
{
    return command.kind == protocol::OverlayKind::AddPoint || command.kind == protocol::OverlayKind::AddLine;
}

GraphicBinding bindingOf(int panel, const protocol::Geometry& geometry,
                         const std::vector<PanelContent>& panels)
{
    GraphicBinding binding{geometry.style, -1};
    if (panel >= 0 && panel < static_cast<int>(panels.size()))
        binding.wavelength = boundWavelength(panels[static_cast<std::size_t>(panel)]);
    return binding;
}

} // namespace

// One request takes all commands that wait. The notifications of those commands still come; their serials are
// smaller than the request's.
bool Overlays::arrived(unsigned long serial, Window canvas, const protocol::Geometry& geometry,
                       const std::vector<PanelContent>& panels)
{
    if (serial < drainedSerial)
        return false;
    drainedSerial = NextRequest(display);
    bool redraw = false;
    for (const protocol::OverlayCommand& command : protocol::drainOverlays(display, canvas))
        redraw |= take(command, bindingOf(command.panel, geometry, panels));
    return redraw;
}

bool Overlays::take(const protocol::OverlayCommand& command, const GraphicBinding& binding)
{
    if (addsGraphic(command) && !watch(command.client))
        return false;
    const OverlayStore::Outcome outcome = graphics.apply(command, binding);
    if (outcome == OverlayStore::Outcome::Refused)
        tellRefusal("a tool draws more graphics than a window holds; the rest is left out");
    return outcome == OverlayStore::Outcome::RedrawAsked;
}

void Overlays::tellRefusal(const char* reason)
{
    if (!std::exchange(refusalTold, true))
        std::fprintf(stderr, "imagewindow: %s.\n", reason);
}

// Asks the server to tell of the end of the client's window; without that, graphics of a dead client would
// stay for ever. False when the window is gone already.
bool Overlays::watch(Window client)
{
    if (clients.contains(client))
        return true;
    if (!makeRoom()) {
        tellRefusal("too many tools draw into one window; a further one is left out");
        return false;
    }
    if (!listen(client))
        return false;
    clients.insert(client);
    return true;
}

bool Overlays::makeRoom()
{
    if (clients.size() >= maxClients)
        std::erase_if(clients,
                      [&](Window client) { return !graphics.holdsOf(static_cast<std::uint32_t>(client)); });
    return clients.size() < maxClients;
}

bool Overlays::listen(Window client)
{
    protocol::ErrorTrap trap(display);
    XWindowAttributes attributes;
    if (!XGetWindowAttributes(display, client, &attributes))
        return false;
    XSelectInput(display, client, attributes.your_event_mask | StructureNotifyMask);
    return trap.error() == 0;
}

bool Overlays::clientGone(Window client)
{
    if (clients.erase(client) == 0)
        return false;
    graphics.dropClient(static_cast<std::uint32_t>(client));
    return true;
}

} // namespace viewer
