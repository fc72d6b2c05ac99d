// SPDX-License-Identifier: MIT
// Draws overlay graphics, panel captions and scale bars on the canvas. One per image window; owns its
// graphics contexts and font. Only what has changed is drawn: a copy of the image, the graphics over it, then
// the copy to the window.
#pragma once

#include "platform/imagewindow/canvas/CanvasBuffer.h"
#include "platform/imagewindow/canvas/OverlayStore.h"
#include "platform/imagewindow/canvas/ScaleBar.h"
#include "platform/imagewindow/view/Palette.h"
#include "platform/imagewindow/view/View.h"

#include <X11/Xlib.h>

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace viewer {

// What the painter needs to know of the window's state.
struct Scene {
    const protocol::Geometry& geometry;
    const std::vector<PanelContent>& panels;
    const OverlayStore& store;
    std::optional<ScaleBar> bar; // nothing: shows none
};

class OverlayPainter {
public:
    OverlayPainter(Display* display, int screen);
    ~OverlayPainter();
    OverlayPainter(const OverlayPainter&) = delete;
    OverlayPainter& operator=(const OverlayPainter&) = delete;

    // Write the panels' captions (scale bars) into the image pixmap.
    void drawCaptions(CanvasBuffer& buffer, const Scene& scene);
    void drawScaleBars(CanvasBuffer& buffer, const Scene& scene);

    // Draws everything anew and shows it.
    void paintAll(CanvasBuffer& buffer, Window canvas, const Scene& scene);
    // Draws anew and shows only where the given graphics are.
    void paintTouched(CanvasBuffer& buffer, Window canvas, const Scene& scene,
                      const std::vector<Graphic>& touched);
    // Shows a part of the frame that is drawn already.
    void show(CanvasBuffer& buffer, Window canvas, Region region);

private:
    void clipTo(const XRectangle& rect);
    void drawText(Drawable target, int x, int y, const std::string& text);
    void paintRegion(CanvasBuffer& buffer, Window canvas, const Scene& scene, Region region);
    void drawGraphic(Drawable target, const Scene& scene, int panel, const protocol::OverlayCommand& command);
    void strokeLine(Drawable target, const Segment& line, const protocol::OverlayCommand& command);
    void strokePoint(Drawable target, double x, double y, const protocol::OverlayCommand& command);

    Display* display;
    GC copyGC = nullptr, haloGC = nullptr, drawGC = nullptr;
    XFontSet font = nullptr;
    std::array<unsigned long, palette.size()> colors{};
};

} // namespace viewer
