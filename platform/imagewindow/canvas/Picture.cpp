// SPDX-License-Identifier: MIT
#include "platform/imagewindow/canvas/Picture.h"

#include "platform/imagewindow/paint/Graphics.h"
#include "platform/imagewindow/paint/Labels.h"
#include "platform/imagewindow/paint/Pixels.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>

namespace viewer {

namespace {

void copyBox(std::span<const std::uint32_t> from, std::span<std::uint32_t> to, int width, const Box& box)
{
    for (int y = box.y; y < box.y + box.height; ++y) {
        const std::size_t first =
            static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(box.x);
        std::copy_n(from.begin() + static_cast<std::ptrdiff_t>(first), box.width,
                    to.begin() + static_cast<std::ptrdiff_t>(first));
    }
}

} // namespace

void Picture::resize(Widget canvas, CanvasKind kind, Size size)
{
    if (!surface)
        surface = makeSurface(canvas, kind);
    if (size == extent)
        return;
    extent = size;
    image.clear(); // two large ones at a time would be one too many
    image.shrink_to_fit();
    image.resize(static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height));
    surface->resize(size);
}

void Picture::drawImage(const Renderer& renderer, const Scene& scene,
                        const std::optional<ShownNavigator>& navigator, OverlayStore& store)
{
    renderer.draw(image, extent.width, extent.height);
    paintOn(image, extent, [&](cairo_t* cairo) {
        paintLabels(cairo, scene);
        if (navigator)
            paintNavigator(cairo, *navigator, scene.screenScale);
    });
    store.takeTouched();
    drawGraphics(scene, Damage(extent));
}

void Picture::drawOverlays(const Scene& scene, OverlayStore& store)
{
    const auto touched = store.takeTouched();
    const Damage damage = touched ? damageOf(scene, *touched) : Damage(extent);
    if (!damage.empty())
        drawGraphics(scene, damage);
}

void Picture::drawGraphics(const Scene& scene, const Damage& damage)
{
    const std::span<std::uint32_t> pixels = surface->pixels();
    const std::vector<Box> boxes = damage.boxes();
    for (const Box& box : boxes)
        copyBox(image, pixels, extent.width, box);
    paintOn(pixels, extent, [&](cairo_t* cairo) { repairGraphics(cairo, scene, damage); });
    surface->show(boxes);
}

void Picture::expose(const Box& box)
{
    Damage lost(std::array{box});
    lost.cutTo(extent); // an exposure may be of the size before
    for (const Box& part : lost.boxes())
        surface->expose(part);
}

} // namespace viewer
