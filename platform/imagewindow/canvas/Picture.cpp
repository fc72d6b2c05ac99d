// SPDX-License-Identifier: MIT
#include "platform/imagewindow/canvas/Picture.h"

namespace viewer {

void Picture::resize(Size size)
{
    if (buffer && buffer->size() == size)
        return;
    buffer.reset(); // two large ones at a time would be one too many
    buffer = std::make_unique<CanvasBuffer>(display, DefaultScreen(display), size);
}

void Picture::drawImage(const Renderer& renderer, Window canvas, const Scene& scene, OverlayStore& store)
{
    renderer.draw(buffer->pixels(), buffer->size().width, buffer->size().height);
    buffer->upload();
    painter.drawCaptions(*buffer, scene);
    painter.drawScaleBars(*buffer, scene);
    store.takeTouched();
    painter.paintAll(*buffer, canvas, scene);
}

void Picture::drawOverlays(Window canvas, const Scene& scene, OverlayStore& store)
{
    if (const auto touched = store.takeTouched())
        painter.paintTouched(*buffer, canvas, scene, *touched);
    else
        painter.paintAll(*buffer, canvas, scene);
}

void Picture::expose(Window canvas, Region region)
{
    if (buffer)
        painter.show(*buffer, canvas, region);
}

} // namespace viewer
