// SPDX-License-Identifier: MIT
// The picture on the canvas of one window: the rendered image with captions and scale bars, the overlay
// graphics over a copy of it, and the surface that shows it. Only what has changed is drawn and shown.
#pragma once

#include "platform/imagewindow/canvas/CanvasSurface.h"
#include "platform/imagewindow/paint/NavigatorPaint.h"
#include "platform/imagewindow/paint/Scene.h"
#include "platform/imagewindow/render/Renderer.h"

#include <X11/Intrinsic.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace viewer {

class Picture {
public:
    // Before all the rest, with the realized canvas. What was drawn is gone when the size is another.
    void resize(Widget canvas, CanvasKind kind, Size size);
    // Draws what the renderer has loaded, the overview if there is one, and all graphics over both.
    void drawImage(const Renderer& renderer, const Scene& scene,
                   const std::optional<ShownNavigator>& navigator, OverlayStore& store);
    // Draws the graphics that have come or gone since the last drawing. scene: of that store.
    void drawOverlays(const Scene& scene, OverlayStore& store);
    // Shows a part again as it was drawn.
    void expose(const Box& box);

private:
    void drawGraphics(const Scene& scene, const Damage& damage);

    Size extent;
    std::vector<std::uint32_t> image; // all but the graphics; as the surface's pixels
    std::unique_ptr<CanvasSurface> surface;
};

} // namespace viewer
