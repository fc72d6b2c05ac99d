// SPDX-License-Identifier: MIT
// The pixels of a canvas: its owner draws them and shows parts of them in the window. One interface for all
// kinds of canvas; the pixels come to the screen as they are.
#pragma once

#include "platform/imagewindow/canvas/CanvasKind.h"
#include "platform/imagewindow/paint/Damage.h"
#include "platform/imagewindow/view/View.h"

#include <X11/Intrinsic.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace viewer {

class CanvasSurface {
public:
    virtual ~CanvasSurface() = default;
    CanvasSurface(const CanvasSurface&) = delete;
    CanvasSurface& operator=(const CanvasSurface&) = delete;

    // What was drawn is gone when the size is another.
    virtual void resize(Size size) = 0;
    // 0x00RRGGBB, row by row. May wait until the server has taken what was shown before.
    virtual std::span<std::uint32_t> pixels() = 0;
    // Shows these parts. They lie on the surface.
    virtual void show(const std::vector<Box>& boxes) = 0;
    // Shows a part again that the window has lost.
    virtual void expose(const Box& box) { show({box}); }

protected:
    CanvasSurface() = default;
};

// The kind that was asked for, if the display offers it; else the best that it does, and a sentence that says
// so. Without a wish: OpenGL only where hardware draws it, then shared memory.
struct CanvasChoice {
    CanvasKind kind = CanvasKind::Plain;
    std::string problem; // empty: it is as was asked for
};
CanvasChoice chooseCanvas(Display* display, std::optional<CanvasKind> wish);

// The widget: a bare window without background. It has no translations, so the viewer selects no button press
// on it and the one client that may do so can be a tool.
Widget makeCanvas(Widget parent, const char* name, Size size, CanvasKind kind);

// canvas: realized, of makeCanvas() with that kind. The surface may outlive it, but is not used any more.
std::unique_ptr<CanvasSurface> makeSurface(Widget canvas, CanvasKind kind);

} // namespace viewer
