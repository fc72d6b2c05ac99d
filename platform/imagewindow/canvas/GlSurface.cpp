// SPDX-License-Identifier: MIT
#include "platform/imagewindow/canvas/GlSurface.h"

#include "platform/protocol/XProtocol.h"

// Debian's GL/gl.h defines GLAPI without "extern": the class pointer of the header below would be a variable
// of this file, and null.
#undef GLAPI
#define GLAPI extern
#include <GL/GLwMDrawA.h>
#include <Xm/Xm.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <memory>
#include <string>
#include <utility>

namespace viewer {

namespace {

// Eight bits of each colour, or the picture is another one. Two buffers, so that no half picture shows.
int attributes[] = {GLX_RGBA, GLX_DOUBLEBUFFER, GLX_RED_SIZE, 8, GLX_GREEN_SIZE, 8, GLX_BLUE_SIZE, 8, None};

struct XFreed {
    void operator()(void* memory) const { XFree(memory); }
};
using VisualInfo = std::unique_ptr<XVisualInfo, XFreed>;

VisualInfo chooseVisual(Display* display)
{
    return VisualInfo(glXChooseVisual(display, DefaultScreen(display), attributes));
}

// Never shown; for the trial of a context.
class TrialWindow {
public:
    TrialWindow(Display* display, const XVisualInfo& visual) : display(display)
    {
        const Window root = RootWindow(display, visual.screen);
        XSetWindowAttributes values{};
        values.colormap = colormap = XCreateColormap(display, root, visual.visual, AllocNone);
        window = XCreateWindow(display, root, 0, 0, 1, 1, 0, visual.depth, InputOutput, visual.visual,
                               CWColormap | CWBorderPixel, &values);
    }
    ~TrialWindow()
    {
        XDestroyWindow(display, window);
        XFreeColormap(display, colormap);
    }
    TrialWindow(const TrialWindow&) = delete;
    TrialWindow& operator=(const TrialWindow&) = delete;
    operator Window() const { return window; }

private:
    Display* display;
    Colormap colormap = None;
    Window window = None;
};

bool drawnByProcessor(std::string renderer)
{
    std::transform(renderer.begin(), renderer.end(), renderer.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    constexpr std::array software{"llvmpipe", "softpipe", "swrast", "software"};
    return std::any_of(software.begin(), software.end(),
                       [&](const char* name) { return renderer.find(name) != std::string::npos; });
}

OpenGlProbe tryContext(Display* display, XVisualInfo& visual)
{
    const protocol::ErrorTrap trap(display);
    const TrialWindow window(display, visual);
    const GLXContext context = glXCreateContext(display, &visual, nullptr, True);
    if (!context)
        return {};
    OpenGlProbe probe;
    if (glXMakeCurrent(display, window, context)) {
        const auto* name = reinterpret_cast<const char*>(glGetString(GL_RENDERER));
        probe = {name != nullptr, name && !drawnByProcessor(name)};
        glXMakeCurrent(display, None, nullptr);
    }
    glXDestroyContext(display, context);
    return probe;
}

} // namespace

OpenGlProbe probeOpenGl(Display* display)
{
    int errorBase = 0, eventBase = 0;
    if (!glXQueryExtension(display, &errorBase, &eventBase))
        return {};
    const VisualInfo visual = chooseVisual(display);
    return visual ? tryContext(display, *visual) : OpenGlProbe{};
}

// Presses on the canvas belong to tools: its own translations would select them, and one client only may.
Widget makeGlCanvas(Widget parent, const char* name, Size size)
{
    const XtTranslations none = XtParseTranslationTable("");
    return XtVaCreateManagedWidget(name, glwMDrawingAreaWidgetClass, parent, GLwNattribList, attributes,
                                   XmNtranslations, none, XmNwidth, size.width, XmNheight, size.height,
                                   XmNborderWidth, 0, XmNbackgroundPixmap, None, XmNtraversalOn, False,
                                   XmNhighlightThickness, 0, XmNshadowThickness, 0, nullptr);
}

GlSurface::GlSurface(Widget canvas) : display(XtDisplay(canvas)), window(XtWindow(canvas))
{
    XVisualInfo* visual = nullptr; // the widget's own
    XtVaGetValues(canvas, GLwNvisualInfo, &visual, nullptr);
    context = visual ? glXCreateContext(display, visual, nullptr, True) : nullptr;
}

// The window may be gone by now; what the context holds goes with it.
GlSurface::~GlSurface()
{
    glXMakeCurrent(display, None, nullptr);
    if (context)
        glXDestroyContext(display, context);
}

// Each canvas has a context of its own. False: nothing can be drawn.
bool GlSurface::use()
{
    return context && glXMakeCurrent(display, window, context);
}

void GlSurface::resize(Size size)
{
    extent = size;
    drawn.assign(static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height), 0);
    if (!use())
        return;
    for (const Tile& tile : tiles)
        glDeleteTextures(1, &tile.texture);
    tiles.clear();
    GLint most = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &most);
    constexpr int enough = 4096;
    const int side = std::clamp<int>(most, 1, enough);
    for (int y = 0; y < size.height; y += side)
        for (int x = 0; x < size.width; x += side)
            tiles.push_back(
                makeTile({x, y, std::min(side, size.width - x), std::min(side, size.height - y)}));
}

// One texel for each pixel, and not mixed with its neighbours.
GlSurface::Tile GlSurface::makeTile(const Box& box)
{
    Tile tile{box, 0};
    glGenTextures(1, &tile.texture);
    glBindTexture(GL_TEXTURE_2D, tile.texture);
    for (const GLenum filter : {GL_TEXTURE_MIN_FILTER, GL_TEXTURE_MAG_FILTER})
        glTexParameteri(GL_TEXTURE_2D, filter, GL_NEAREST);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB8, box.width, box.height, 0, GL_BGRA, GL_UNSIGNED_INT_8_8_8_8_REV,
                 nullptr);
    return tile;
}

void GlSurface::load(const Tile& tile, const Box& box)
{
    const int left = std::max(box.x, tile.box.x), top = std::max(box.y, tile.box.y);
    const int right = std::min(box.x + box.width, tile.box.x + tile.box.width);
    const int bottom = std::min(box.y + box.height, tile.box.y + tile.box.height);
    if (right <= left || bottom <= top)
        return;
    glPixelStorei(GL_UNPACK_ROW_LENGTH, extent.width);
    glPixelStorei(GL_UNPACK_SKIP_PIXELS, left);
    glPixelStorei(GL_UNPACK_SKIP_ROWS, top);
    glBindTexture(GL_TEXTURE_2D, tile.texture);
    glTexSubImage2D(GL_TEXTURE_2D, 0, left - tile.box.x, top - tile.box.y, right - left, bottom - top,
                    GL_BGRA, GL_UNSIGNED_INT_8_8_8_8_REV, drawn.data());
}

void GlSurface::show(const std::vector<Box>& boxes)
{
    if (!use())
        return;
    for (const Tile& tile : tiles)
        for (const Box& box : boxes)
            load(tile, box);
    present();
}

void GlSurface::expose(const Box&)
{
    if (use())
        present();
}

// All of it: what the other buffer holds after a swap is not defined.
void GlSurface::present()
{
    glViewport(0, 0, extent.width, extent.height);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrtho(0, extent.width, extent.height, 0, -1, 1);
    glDisable(GL_DITHER);
    glEnable(GL_TEXTURE_2D);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_REPLACE);
    for (const auto& [box, texture] : tiles) {
        glBindTexture(GL_TEXTURE_2D, texture);
        glBegin(GL_QUADS);
        for (const auto& [x, y] : {std::pair{0, 0}, {1, 0}, {1, 1}, {0, 1}}) {
            glTexCoord2i(x, y);
            glVertex2i(box.x + x * box.width, box.y + y * box.height);
        }
        glEnd();
    }
    glXSwapBuffers(display, window);
}

} // namespace viewer
