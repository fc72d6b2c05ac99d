// SPDX-License-Identifier: MIT
#include "widgets/PixmapOf.h"

#include "widgets/Painter.h"
#include "widgets/Scale.h"
#include "widgets/picture/VectorFile.h"

#include <Xm/XmP.h>
#include <cairo-xlib.h>

#include <algorithm>
#include <cmath>

namespace widgets {

namespace {

// cairo on a pixmap of the screen's depth.
class Canvas {
public:
    Canvas(Widget widget, Pixmap pixmap, int width, int height)
        : surface(cairo_xlib_surface_create(XtDisplay(widget), pixmap,
                                            DefaultVisualOfScreen(XtScreen(widget)), width, height)),
          context(cairo_create(surface))
    {
    }
    ~Canvas()
    {
        cairo_destroy(context);
        cairo_surface_finish(surface);
        cairo_surface_destroy(surface);
    }
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;
    void paint(const Color& color, double opacity)
    {
        cairo_set_source_rgba(context, color.red, color.green, color.blue, opacity);
        cairo_paint(context);
    }
    cairo_t* cairo() const { return context; }

private:
    cairo_surface_t* surface;
    cairo_t* context;
};

Pixmap createPixmap(Widget widget, int width, int height)
{
    Screen* screen = XtScreen(widget);
    return XCreatePixmap(DisplayOfScreen(screen), RootWindowOfScreen(screen), static_cast<unsigned>(width),
                         static_cast<unsigned>(height), static_cast<unsigned>(DefaultDepthOfScreen(screen)));
}

} // namespace

Widget windowed(Widget widget)
{
    while (!XtIsWidget(widget))
        widget = XtParent(widget);
    return widget;
}

Pixmap pixmapOf(Widget object, const picture::Picture& picture, Pixel background, double scale)
{
    const Widget widget = windowed(object);
    const int width = std::max(1, static_cast<int>(std::lround(picture.width * scale)));
    const int height = std::max(1, static_cast<int>(std::lround(picture.height * scale)));
    const Pixmap pixmap = createPixmap(widget, width, height);
    Canvas canvas(widget, pixmap, width, height);
    canvas.paint(colorOf(widget, background), 1);
    picture::drawPicture(canvas.cairo(), picture, 0, 0, width, height, picture::Enlarging::Smooth);
    return pixmap;
}

Pixmap fadedPixmap(Widget object, Pixmap pixmap, Pixel background)
{
    constexpr double fading = 0.6;
    const Widget widget = windowed(object);
    Window root = None;
    int x = 0, y = 0;
    unsigned width = 0, height = 0, border = 0, depth = 0;
    XGetGeometry(XtDisplay(widget), pixmap, &root, &x, &y, &width, &height, &border, &depth);
    if (depth != static_cast<unsigned>(DefaultDepthOfScreen(XtScreen(widget))))
        return None;
    const Pixmap copy = createPixmap(widget, static_cast<int>(width), static_cast<int>(height));
    const GC gc = XCreateGC(XtDisplay(widget), copy, 0, nullptr);
    XCopyArea(XtDisplay(widget), pixmap, copy, gc, 0, 0, width, height, 0, 0);
    XFreeGC(XtDisplay(widget), gc);
    Canvas(widget, copy, static_cast<int>(width), static_cast<int>(height))
        .paint(colorOf(widget, background), fading);
    return copy;
}

} // namespace widgets
