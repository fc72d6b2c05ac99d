// SPDX-License-Identifier: MIT
// The canvas as a texture in an OpenGL drawing area, and whether a display has OpenGL at all.
#pragma once

#include "platform/imagewindow/canvas/CanvasSurface.h"

#include <GL/glx.h>

#include <span>
#include <string>
#include <vector>

namespace viewer {

// To be asked before an OpenGL drawing area is made: without a working GLX the widget ends the process.
struct OpenGlProbe {
    bool works = false;    // a context with the canvas's attributes could be made and used
    bool hardware = false; // and it is not drawn by the processor
};
OpenGlProbe probeOpenGl(Display* display);

// A GLwDrawingArea; probeOpenGl() has found that it works.
Widget makeGlCanvas(Widget parent, const char* name, Size size);

class GlSurface final : public CanvasSurface {
public:
    // canvas: realized, of makeGlCanvas().
    explicit GlSurface(Widget canvas);
    ~GlSurface() override;

    void resize(Size size) override;
    std::span<std::uint32_t> pixels() override { return drawn; }
    void show(const std::vector<Box>& boxes) override;
    void expose(const Box& box) override;

private:
    struct Tile { // of the canvas; OpenGL limits the side of a texture
        Box box;
        GLuint texture;
    };
    bool use();
    static Tile makeTile(const Box& box);
    void load(const Tile& tile, const Box& box);
    void present();

    Display* display;
    Window window;
    GLXContext context = nullptr;
    Size extent;
    std::vector<std::uint32_t> drawn;
    std::vector<Tile> tiles;
};

} // namespace viewer
