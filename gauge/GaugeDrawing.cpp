// SPDX-License-Identifier: MIT
// The gauge on the screen: its pixmap, its GC, and what is drawn with them.
#include "gauge/LinearGaugeP.h"
#include "gauge/TickP.h"

#include <Xm/DrawP.h>

#include <cstdio>
#include <iterator>

namespace {

bool serverRefused; // set by the error handler while a buffer is made

int noteRefusal(Display*, XErrorEvent*)
{
    serverRefused = true;
    return 0;
}

// None when the server has no room. The server answers a failed creation only later, hence the two round
// trips; they are paid once per size.
Pixmap createBuffer(const LinearGaugeRec* gauge)
{
    Display* display = gauge->core.screen->display;
    XSync(display, False);
    serverRefused = false;
    XErrorHandler previous = XSetErrorHandler(noteRefusal);
    Pixmap buffer =
        XCreatePixmap(display, gauge->core.window, gauge->core.width, gauge->core.height, gauge->core.depth);
    XSync(display, False);
    XSetErrorHandler(previous);
    return serverRefused ? None : buffer;
}

void createGC(LinearGaugeRec* gauge)
{
    XGCValues values;
    values.graphics_exposures = False; // copying out of the buffer would send a NoExpose event each time
    gauge->gauge.gc =
        XCreateGC(gauge->core.screen->display, gauge->core.window, GCGraphicsExposures, &values);
}

void prepareDrawing(LinearGaugeRec* gauge)
{
    LinearGaugePart& part = gauge->gauge;
    if (!part.gc)
        createGC(gauge);
    if (!part.doubleBuffer || part.buffer != None)
        return;
    part.buffer = createBuffer(gauge);
    part.bufferOld = True;
    if (part.buffer == None) {
        std::fputs("Bad pixmap. Double buffering turned off!\n", stderr);
        part.doubleBuffer = False;
    }
}

void drawBorder(LinearGaugeRec* gauge, Drawable drawable)
{
    static constexpr unsigned int shadows[] = {XmSHADOW_IN, XmSHADOW_OUT, XmSHADOW_ETCHED_IN, 0,
                                               XmSHADOW_ETCHED_OUT};
    int border = gauge->gauge.border;
    if (border < 0 || border >= static_cast<int>(std::size(shadows)) || border == XRTGA_BORDER_NONE)
        return;
    XmeDrawShadows(gauge->core.screen->display, drawable, gauge->primitive.top_shadow_GC,
                   gauge->primitive.bottom_shadow_GC, 0, 0, gauge->core.width, gauge->core.height,
                   gauge->primitive.shadow_thickness, shadows[border]);
}

void drawAll(LinearGaugeRec* gauge, Drawable drawable)
{
    Display* display = gauge->core.screen->display;
    XSetForeground(display, gauge->gauge.gc, gauge->core.background_pixel);
    XFillRectangle(display, drawable, gauge->gauge.gc, 0, 0, gauge->core.width, gauge->core.height);
    for (Widget tick : itemsOf(gauge->gauge.ticks))
        drawTicks(reinterpret_cast<TickRec*>(tick), gauge, drawable, gauge->gauge.gc);
    drawBorder(gauge, drawable);
}

} // namespace

void gaugePaint(LinearGaugeRec* gauge, int x, int y, int width, int height)
{
    prepareDrawing(gauge);
    LinearGaugePart& part = gauge->gauge;
    if (part.buffer == None) {
        drawAll(gauge, gauge->core.window);
        return;
    }
    if (part.bufferOld)
        drawAll(gauge, part.buffer);
    part.bufferOld = False;
    XCopyArea(gauge->core.screen->display, part.buffer, gauge->core.window, part.gc, x, y, width, height, x,
              y);
}

void gaugeRepaint(LinearGaugeRec* gauge)
{
    gauge->gauge.bufferOld = True;
    if (gauge->gauge.repaint && !gauge->core.being_destroyed && XtIsRealized(reinterpret_cast<Widget>(gauge)))
        gaugePaint(gauge, 0, 0, gauge->core.width, gauge->core.height);
}

void gaugeFreeBuffer(LinearGaugeRec* gauge)
{
    if (gauge->gauge.buffer != None)
        XFreePixmap(gauge->core.screen->display, gauge->gauge.buffer);
    gauge->gauge.buffer = None;
}

void gaugeFreeGC(LinearGaugeRec* gauge)
{
    if (gauge->gauge.gc)
        XFreeGC(gauge->core.screen->display, gauge->gauge.gc);
    gauge->gauge.gc = nullptr;
}
