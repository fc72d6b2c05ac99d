// SPDX-License-Identifier: MIT
#include "platform/protocol/OverlayRecord.h"

#include "platform/protocol/ByteStream.h"

#include <cmath>
#include <optional>

namespace protocol {
namespace {

constexpr std::uint32_t signature = 0x314F5749; // "IWO1" in memory

bool namesGraphic(OverlayKind kind)
{
    return kind == OverlayKind::AddPoint || kind == OverlayKind::AddLine || kind == OverlayKind::Remove;
}

bool valid(const OverlayCommand& command)
{
    const bool kind = command.kind >= OverlayKind::AddPoint && command.kind <= OverlayKind::Redraw;
    const bool id = namesGraphic(command.kind) ? command.id > 0 : command.id >= 0;
    return kind && id && command.client != 0 && command.timePoint >= -1 && command.panel >= -1 &&
           command.width >= 0 && command.width <= maxOverlayWidth && command.dash >= 0 &&
           command.dash <= maxOverlayDash && base::isGraphicsColor(command.color) &&
           validCoordinates(command);
}

std::optional<OverlayCommand> decodeOverlay(std::span<const std::byte> bytes)
{
    ByteReader in(bytes);
    const bool ours = in.u32() == signature;
    OverlayCommand command;
    command.kind = static_cast<OverlayKind>(in.i32());
    command.client = in.u32();
    for (std::int32_t* value :
         {&command.id, &command.timePoint, &command.panel, &command.width, &command.dash, &command.color})
        *value = in.i32();
    for (float* value : {&command.x0, &command.y0, &command.z0, &command.x1, &command.y1, &command.z1})
        *value = in.f32();
    const bool whole = in.u32() == 0;
    return ours && whole && in.complete() && valid(command) ? std::optional(command) : std::nullopt;
}

} // namespace

bool validCoordinates(const OverlayCommand& command)
{
    for (float value : {command.x0, command.y0, command.z0, command.x1, command.y1, command.z1})
        if (!(std::fabs(value) <= maxOverlayCoordinate))
            return false;
    return true;
}

std::vector<std::byte> encodeOverlay(const OverlayCommand& command)
{
    ByteWriter out;
    out.u32(signature);
    out.i32(static_cast<std::int32_t>(command.kind));
    out.u32(command.client);
    for (std::int32_t value :
         {command.id, command.timePoint, command.panel, command.width, command.dash, command.color})
        out.i32(value);
    for (float value : {command.x0, command.y0, command.z0, command.x1, command.y1, command.z1})
        out.f32(value);
    out.u32(0);
    return out.take();
}

std::vector<OverlayCommand> decodeOverlays(std::span<const std::byte> bytes, int& bad)
{
    std::vector<OverlayCommand> commands;
    bad = bytes.size() % overlayRecordSize == 0 ? 0 : 1;
    for (; bytes.size() >= overlayRecordSize; bytes = bytes.subspan(overlayRecordSize)) {
        if (const auto command = decodeOverlay(bytes.first(overlayRecordSize)))
            commands.push_back(*command);
        else
            ++bad;
    }
    return commands;
}

} // namespace protocol
