// SPDX-License-Identifier: MIT
#include "platform/imagewindow/paint/OverlayStore.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

namespace viewer {
namespace {

constexpr std::size_t maxTouched = 64;

using protocol::OverlayCommand;
using protocol::OverlayKind;

} // namespace

void OverlayStore::touch(const Graphic& graphic)
{
    if (touched.size() >= maxTouched)
        touchedAll = true;
    else
        touched.push_back(graphic);
}

OverlayStore::Outcome OverlayStore::apply(const OverlayCommand& command, const GraphicBinding& binding)
{
    const Key key{command.client, command.id};
    const auto found = graphics.find(key);
    switch (command.kind) {
    case OverlayKind::AddPoint:
    case OverlayKind::AddLine:
        if (!protocol::validCoordinates(command))
            return Outcome::Refused;
        if (found != graphics.end()) {
            touch(found->second);
            found->second = {command, binding};
        } else {
            std::size_t& count = perClient[command.client];
            if (count >= maxGraphicsPerClient || graphics.size() >= maxGraphics)
                return Outcome::Refused;
            graphics.emplace(key, Graphic{command, binding});
            ++count;
        }
        touch({command, binding});
        if (command.kind == OverlayKind::AddLine)
            newestLine = key;
        return Outcome::Changed;
    case OverlayKind::Remove:
        if (found == graphics.end())
            return Outcome::Ignored;
        touch(found->second);
        graphics.erase(found);
        --perClient[command.client];
        return Outcome::Changed;
    case OverlayKind::RemoveAll:
        return dropClient(command.client) ? Outcome::Changed : Outcome::Ignored;
    case OverlayKind::Redraw:
        return Outcome::RedrawAsked;
    }
    return Outcome::Ignored;
}

const Graphic* OverlayStore::newestSegment() const
{
    const auto found = graphics.find(newestLine);
    return lastLine() ? &found->second : nullptr;
}

std::optional<std::array<double, 2>> OverlayStore::lastLine() const
{
    const auto found = graphics.find(newestLine);
    if (found == graphics.end() || found->second.command.kind != OverlayKind::AddLine)
        return std::nullopt;
    const OverlayCommand& line = found->second.command;
    const std::array pixels{static_cast<double>(line.x1) - line.x0, static_cast<double>(line.y1) - line.y0};
    return pixels[0] != 0 || pixels[1] != 0 ? std::optional(pixels) : std::nullopt;
}

bool OverlayStore::dropClient(std::uint32_t client)
{
    perClient.erase(client);
    auto first = graphics.lower_bound({client, INT32_MIN});
    const auto begin = first;
    for (; first != graphics.end() && first->first.first == client; ++first)
        touch(first->second);
    const bool any = begin != first;
    graphics.erase(begin, first);
    return any;
}

bool OverlayStore::holdsOf(std::uint32_t client) const
{
    const auto count = perClient.find(client);
    return count != perClient.end() && count->second > 0;
}

std::optional<std::vector<Graphic>> OverlayStore::takeTouched()
{
    std::vector<Graphic> list;
    list.swap(touched);
    if (std::exchange(touchedAll, false))
        return std::nullopt;
    return list;
}

int boundWavelength(const PanelContent& content)
{
    return content.wavelengths.size() == 1 ? content.wavelengths.front() : -1;
}

namespace {

bool boundElsewhere(const Graphic& graphic, int style, int panel, const PanelContent& content)
{
    if (graphic.command.panel < 0 || graphic.binding.style != style)
        return false;
    return style == protocol::WavelengthPanels ? boundWavelength(content) != graphic.binding.wavelength
                                               : graphic.command.panel != panel;
}

} // namespace

bool showsIn(const Graphic& graphic, int style, int panel, const PanelContent& content)
{
    const OverlayCommand& command = graphic.command;
    if (command.timePoint >= 0 && command.timePoint != content.t)
        return false;
    if (boundElsewhere(graphic, style, panel, content))
        return false;
    const bool line = command.kind == OverlayKind::AddLine;
    float first = command.z0, last = line ? command.z1 : command.z0;
    if (first < 0)
        first = last;
    if (last < 0)
        last = first;
    if (first < 0)
        return true;
    return content.z >= static_cast<double>(std::trunc(std::min(first, last))) &&
           content.z <= static_cast<double>(std::trunc(std::max(first, last)));
}

std::optional<LinePart> clipped(LinePart line, double left, double top, double right, double bottom)
{
    const double dx = line.x1 - line.x0, dy = line.y1 - line.y0;
    const double slope[] = {-dx, dx, -dy, dy};
    const double room[] = {line.x0 - left, right - line.x0, line.y0 - top, bottom - line.y0};
    double from = 0, to = 1;
    for (int edge = 0; edge < 4; ++edge) {
        if (slope[edge] == 0) {
            if (room[edge] < 0)
                return std::nullopt;
            continue;
        }
        const double at = room[edge] / slope[edge];
        if (slope[edge] < 0)
            from = std::max(from, at);
        else
            to = std::min(to, at);
    }
    if (from > to)
        return std::nullopt;
    return LinePart{line.x0 + from * dx, line.y0 + from * dy, line.x0 + to * dx, line.y0 + to * dy};
}

} // namespace viewer
