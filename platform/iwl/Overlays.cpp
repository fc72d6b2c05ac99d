// SPDX-License-Identifier: MIT
// Overlay graphics: commands appended to the canvas for the viewer. The graphics of this process are
// remembered, so that a viewer that takes no commands (a stopped process) costs the server a bounded backlog:
// from then on commands are held back, and when the viewer goes on it gets the present state.
#include "platform/iwl/Session.h"
#include "platform/iwl/Slots.h"
#include "platform/protocol/XProtocol.h"

#include <IWL.h>

#include <algorithm>

namespace {

using protocol::OverlayCommand;
using protocol::OverlayKind;

constexpr unsigned long backlogLimit = protocol::maxOverlayBytes / 4; // bytes; several clients share a canvas

int lastId = 0;

OverlayCommand command(OverlayKind kind, int id = 0)
{
    OverlayCommand result;
    result.kind = kind;
    result.client = static_cast<std::uint32_t>(iwl::clientWindow());
    result.id = id;
    return result;
}

void append(iwl::Slot& slot, const OverlayCommand& command)
{
    protocol::appendOverlay(iwl::display(), slot.canvas, command);
    slot.sentBytes += protocol::overlayRecordSize;
}

void sendEverything(iwl::Slot& slot)
{
    slot.stalled = false;
    append(slot, command(OverlayKind::RemoveAll));
    for (const auto& [id, graphic] : slot.graphics)
        append(slot, graphic);
}

// Whether the viewer keeps up; asks the server only when much has been sent.
bool viewerKeepsUp(iwl::Slot& slot)
{
    if (slot.sentBytes < backlogLimit)
        return true;
    slot.sentBytes = protocol::pendingOverlayBytes(iwl::display(), slot.canvas);
    return slot.sentBytes < backlogLimit;
}

void send(iwl::Slot& slot, const OverlayCommand& command)
{
    if (slot.closed)
        return;
    if (!viewerKeepsUp(slot)) {
        slot.stalled = true;
        return;
    }
    if (slot.stalled)
        sendEverything(slot);
    append(slot, command);
}

// Returns the id, 0 when nothing was added.
int add(int slotNumber, OverlayCommand graphic)
{
    iwl::Slot* slot = iwl::slotAt(slotNumber);
    if (!slot || slot->closed || !protocol::validCoordinates(graphic))
        return 0;
    graphic.id = ++lastId;
    graphic.timePoint = std::max(graphic.timePoint, -1);
    graphic.panel = std::max(graphic.panel, -1);
    graphic.width = std::clamp(graphic.width, 0, protocol::maxOverlayWidth);
    graphic.dash = std::clamp(graphic.dash, 0, protocol::maxOverlayDash);
    if (!base::isGraphicsColor(graphic.color))
        graphic.color = base::annotationColor;
    send(*slot, graphic);
    slot->graphics.emplace(graphic.id, graphic);
    return graphic.id;
}

} // namespace

void iwl::overlaysTaken(Slot& slot)
{
    slot.sentBytes = 0;
    if (!slot.stalled)
        return;
    sendEverything(slot);
    append(slot, command(OverlayKind::Redraw));
    XFlush(iwl::display());
}

int IWDisplay(int slotNumber)
{
    iwl::Slot* slot = iwl::slotAt(slotNumber);
    if (!slot)
        return 0;
    send(*slot, command(OverlayKind::Redraw));
    XFlush(iwl::display());
    return 1;
}

int IWGrAddPt5D(int slot, int timePoint, int panel, int width, int color, float x, float y, float z)
{
    OverlayCommand point = command(OverlayKind::AddPoint);
    point.timePoint = timePoint;
    point.panel = panel;
    point.width = width;
    point.color = color;
    point.x0 = point.x1 = x;
    point.y0 = point.y1 = y;
    point.z0 = point.z1 = z;
    return add(slot, point);
}

int IWGrAddPt2D(int slot, int width, int color, float x, float y)
{
    return IWGrAddPt5D(slot, -1, -1, width, color, x, y, -1);
}

// NOLINTNEXTLINE(readability-function-size): IWL.h has that many parameters
int IWGrAddLn5D(int slot, int timePoint, int panel, int width, int dash, int color, float x0, float y0,
                float z0, float x1, float y1, float z1)
{
    OverlayCommand line = command(OverlayKind::AddLine);
    line.timePoint = timePoint;
    line.panel = panel;
    line.width = width;
    line.dash = dash;
    line.color = color;
    line.x0 = x0;
    line.y0 = y0;
    line.z0 = z0;
    line.x1 = x1;
    line.y1 = y1;
    line.z1 = z1;
    return add(slot, line);
}

int IWGrAddLn2D(int slot, int width, int dash, int color, float x0, float y0, float x1, float y1)
{
    return IWGrAddLn5D(slot, -1, -1, width, dash, color, x0, y0, -1, x1, y1, -1);
}

int IWGrRmGrID(int slotNumber, int id)
{
    iwl::Slot* slot = iwl::slotAt(slotNumber);
    if (!slot)
        return 0;
    if (slot->graphics.erase(id) > 0)
        send(*slot, command(OverlayKind::Remove, id));
    return 1;
}

int IWGrRmAllGrID(int slotNumber)
{
    iwl::Slot* slot = iwl::slotAt(slotNumber);
    if (!slot)
        return 0;
    slot->graphics.clear();
    send(*slot, command(OverlayKind::RemoveAll));
    return 1;
}
