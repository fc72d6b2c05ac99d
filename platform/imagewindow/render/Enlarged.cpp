// SPDX-License-Identifier: MIT
#include "platform/imagewindow/render/Enlarged.h"

#include <algorithm>
#include <cmath>

namespace viewer {

namespace {

Size canvasOf(const protocol::Geometry& g)
{
    return {g.columns * g.panelWidth + (g.columns - 1) * g.gap,
            g.rows * g.panelHeight + (g.rows - 1) * g.gap};
}

// At the greater zoom a panel's last row or column may lie beyond the image: then it is left out.
protocol::Geometry enlarged(const protocol::Geometry& geometry, int resolution)
{
    protocol::Geometry large = geometry;
    large.zoom = geometry.zoom * resolution;
    large.gap = geometry.gap * resolution;
    const auto side = [&](int panel, int image, double origin) {
        const int left = scaledSide(image, large.zoom) - static_cast<int>(std::lround(origin * large.zoom));
        return std::clamp(left, 1, panel * resolution);
    };
    large.panelWidth = side(geometry.panelWidth, geometry.imageWidth, geometry.originX);
    large.panelHeight = side(geometry.panelHeight, geometry.imageHeight, geometry.originY);
    return large;
}

struct Pixels {
    explicit Pixels(Size extent)
        : size(extent),
          values(static_cast<std::size_t>(extent.width) * static_cast<std::size_t>(extent.height),
                 surroundPixel)
    {
    }
    auto at(int x, int y) { return values.begin() + static_cast<std::ptrdiff_t>(y) * size.width + x; }
    Size size;
    std::vector<std::uint32_t> values;
};

// A panel that is a row or column short repeats its last one.
void copyPanel(Pixels& from, int fromX, int fromY, Size panel, Pixels& to, int toX, int toY, Size wanted)
{
    for (int y = 0; y < wanted.height; ++y) {
        const auto row = from.at(fromX, fromY + std::min(y, panel.height - 1));
        const auto end = std::copy_n(row, panel.width, to.at(toX, toY + y));
        std::fill_n(end, wanted.width - panel.width, *(row + panel.width - 1));
    }
}

} // namespace

std::vector<std::uint32_t> renderEnlarged(Renderer& renderer, const protocol::Geometry& geometry,
                                          const std::vector<PanelContent>& panels, int resolution)
{
    const protocol::Geometry large = enlarged(geometry, resolution);
    Pixels drawn(canvasOf(large));
    if (resolution > 1)
        renderer.load(large, panels);
    renderer.draw(drawn.values, drawn.size.width, drawn.size.height);
    const Size canvas = canvasOf(geometry), panel{large.panelWidth, large.panelHeight};
    const Size wanted{geometry.panelWidth * resolution, geometry.panelHeight * resolution};
    if (panel == wanted)
        return std::move(drawn.values);
    Pixels filled({canvas.width * resolution, canvas.height * resolution});
    for (int i = 0; i < geometry.columns * geometry.rows; ++i) {
        const int column = i % geometry.columns, row = i / geometry.columns;
        copyPanel(drawn, column * (panel.width + large.gap), row * (panel.height + large.gap), panel, filled,
                  column * (wanted.width + large.gap), row * (wanted.height + large.gap), wanted);
    }
    return std::move(filled.values);
}

} // namespace viewer
