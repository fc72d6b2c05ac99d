// SPDX-License-Identifier: MIT
#include "platform/imagewindow/canvas/CanvasSurface.h"

#include "platform/imagewindow/canvas/GlSurface.h"
#include "platform/imagewindow/canvas/ImageSurface.h"

#include <X11/Core.h>
#include <X11/StringDefs.h>

#include <algorithm>
#include <array>

namespace viewer {

namespace {

// A server that draws with hardware has one of these extensions. To ask for them is cheap; to ask OpenGL
// loads its libraries.
bool mayHaveHardware(Display* display)
{
    constexpr std::array extensions{"DRI2", "DRI3", "NV-GLX"};
    return std::any_of(extensions.begin(), extensions.end(), [display](const char* name) {
        int opcode = 0, event = 0, error = 0;
        return XQueryExtension(display, name, &opcode, &event, &error) != 0;
    });
}

CanvasKind withoutOpenGl(Display* display)
{
    return hasSharedMemory(display) ? CanvasKind::Shared : CanvasKind::Plain;
}

} // namespace

CanvasChoice chooseCanvas(Display* display, std::optional<CanvasKind> wish)
{
    if (!wish) {
        const bool hardware = mayHaveHardware(display) && probeOpenGl(display).hardware;
        return {hardware ? CanvasKind::OpenGl : withoutOpenGl(display), {}};
    }
    if (wish == CanvasKind::OpenGl && !probeOpenGl(display).works)
        return {withoutOpenGl(display), "OpenGL does not work on this display: the canvas does without"};
    if (wish == CanvasKind::Shared && !hasSharedMemory(display))
        return {CanvasKind::Plain,
                "this display shares no memory: the canvas is sent through the connection"};
    return {*wish, {}};
}

// Without a background the server does not clear the window before the image is copied into it: no flicker.
Widget makeCanvas(Widget parent, const char* name, Size size, CanvasKind kind)
{
    if (kind == CanvasKind::OpenGl)
        return makeGlCanvas(parent, name, size);
    return XtVaCreateManagedWidget(name, coreWidgetClass, parent, XtNwidth, size.width, XtNheight,
                                   size.height, XtNborderWidth, 0, XtNbackgroundPixmap, None, nullptr);
}

std::unique_ptr<CanvasSurface> makeSurface(Widget canvas, CanvasKind kind)
{
    if (kind == CanvasKind::OpenGl)
        return std::make_unique<GlSurface>(canvas);
    return std::make_unique<ImageSurface>(XtDisplay(canvas), XtWindow(canvas), kind == CanvasKind::Shared);
}

} // namespace viewer
