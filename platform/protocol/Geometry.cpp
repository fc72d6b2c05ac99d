// SPDX-License-Identifier: MIT
#include "platform/protocol/Geometry.h"

#include <cmath>

namespace protocol {
namespace {

// An origin that has come about by steps, such as ten scrolls by 1 / 10.0, lies a rounding error below the
// pixel boundary that is meant.
constexpr double boundaryTolerance = 1e-7;

double snapToBoundary(double data)
{
    const double boundary = std::round(data);
    return std::fabs(data - boundary) < boundaryTolerance ? boundary : data;
}

struct PanelOffset {
    int index = 0;     // column or row
    double offset = 0; // window pixels from the panel's left or top edge
};

// Which of count panels of a size holds a window coordinate; nothing in a gap or beyond the last one.
std::optional<PanelOffset> locatePanel(double coordinate, int size, int gap, int count)
{
    if (!(coordinate >= 0) || size <= 0 || gap < 0)
        return std::nullopt;
    const double pitch = static_cast<double>(size) + gap;
    const double index = std::floor(coordinate / pitch);
    const double offset = coordinate - index * pitch;
    if (index >= count || offset >= size)
        return std::nullopt;
    return PanelOffset{static_cast<int>(index), offset};
}

} // namespace

std::optional<DataPosition> dataFromWindow(const Geometry& geometry, double x, double y)
{
    const auto column = locatePanel(x, geometry.panelWidth, geometry.gap, geometry.columns);
    const auto row = locatePanel(y, geometry.panelHeight, geometry.gap, geometry.rows);
    if (!column || !row || !(geometry.zoom > 0))
        return std::nullopt;
    DataPosition position;
    position.panel = row->index * geometry.columns + column->index;
    position.x = snapToBoundary(column->offset / geometry.zoom + geometry.originX);
    position.y = snapToBoundary(row->offset / geometry.zoom + geometry.originY);
    const bool onImage = position.x >= 0 && position.x < geometry.imageWidth && position.y >= 0 &&
                         position.y < geometry.imageHeight;
    if (position.panel >= geometry.panelCount || !onImage)
        return std::nullopt;
    return position;
}

WindowPosition windowFromData(const Geometry& geometry, const DataPosition& position)
{
    const int columns = geometry.columns > 0 ? geometry.columns : 1;
    const int column = position.panel % columns, row = position.panel / columns;
    const double left = column * (static_cast<double>(geometry.panelWidth) + geometry.gap);
    const double top = row * (static_cast<double>(geometry.panelHeight) + geometry.gap);
    return {left + (position.x - geometry.originX) * geometry.zoom,
            top + (position.y - geometry.originY) * geometry.zoom};
}

} // namespace protocol
