// SPDX-License-Identifier: MIT
// The picture on the canvas of one window: the rendered image with captions and scale bars, the overlay
// graphics over it, and the parts of it that the server asks for again. Owns the pixmaps and the painter's
// graphics contexts.
#pragma once

#include "platform/imagewindow/canvas/CanvasBuffer.h"
#include "platform/imagewindow/canvas/OverlayPainter.h"
#include "platform/imagewindow/canvas/OverlayStore.h"
#include "platform/imagewindow/render/Renderer.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <memory>

namespace viewer {

class Picture {
public:
    explicit Picture(Display* display) : display(display), painter(display, DefaultScreen(display)) {}

    // Before all the rest. What was drawn is gone when the size is another.
    void resize(Size size);
    // Draws what the renderer has loaded, and all graphics.
    void drawImage(const Renderer& renderer, Window canvas, const Scene& scene, OverlayStore& store);
    // Draws the graphics that have come or gone since the last drawing. scene: of that store.
    void drawOverlays(Window canvas, const Scene& scene, OverlayStore& store);
    // Shows a part again as it was drawn.
    void expose(Window canvas, Region region);

private:
    Display* display;
    OverlayPainter painter;
    std::unique_ptr<CanvasBuffer> buffer;
};

} // namespace viewer
