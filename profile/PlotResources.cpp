// SPDX-License-Identifier: MIT
#include "profile/Plot.h"

#include <IWL.h>
#include <Xm/Xm.h>

#include <cstdio>
#include <cstdlib>

// Module state.
ProfilePlot plot;

namespace {

const char* const colorNames[plotColorCount] = {
    "#6666ff", // colorBlue
    "Red",     // colorRed
    "Yellow",  // colorYellow
    "white",   // colorWhite
    "Green",   // colorGreen
    "black",   // colorBlack
    "#00ffff", // colorCyan
    "#ff00ff", // colorMagenta
    "#202020", // colorBackground
};

// A crosshair of red double lines with a white line between them and an empty centre.
constexpr unsigned cursorSize = 19, cursorHotSpot = 9;
#define V 0x00, 0x05, 0x00
#define H 0xff, 0xfd, 0x07
#define N 0x00, 0x00, 0x00
const unsigned char cursorSource[57] = {V, V, V, V, V, V, V, V, H, N, H, V, V, V, V, V, V, V, V};
#undef V
#undef H
#define V 0x00, 0x07, 0x00
#define H 0x7f, 0xf0, 0x07
const unsigned char cursorMask[57] = {V, V, V, V, V, V, V, N, H, H, H, N, V, V, V, V, V, V, V};
#undef V
#undef H
#undef N

void allocateColors(Widget area)
{
    Colormap colormap = None;
    XtVaGetValues(area, XmNcolormap, &colormap, nullptr);
    for (int i = 0; i < plotColorCount; i++) {
        XColor color, exact;
        if (XAllocNamedColor(XtDisplay(area), colormap, colorNames[i], &color, &exact))
            plot.plotColors[i] = color.pixel;
    }
}

Pixmap makeBitmap(Widget area, const unsigned char* bits)
{
    return XCreateBitmapFromData(XtDisplay(area), XtWindow(area), reinterpret_cast<const char*>(bits),
                                 cursorSize, cursorSize);
}

void defineCursor(Widget area)
{
    Display* display = XtDisplay(area);
    Colormap colormap = DefaultColormapOfScreen(XtScreen(area));
    XColor foreground = {}, background = {}, exact;
    XAllocNamedColor(display, colormap, "Red", &foreground, &exact);
    XAllocNamedColor(display, colormap, "White", &background, &exact);
    Pixmap source = makeBitmap(area, cursorSource), mask = makeBitmap(area, cursorMask);
    Cursor cursor =
        XCreatePixmapCursor(display, source, mask, &foreground, &background, cursorHotSpot, cursorHotSpot);
    XDefineCursor(display, XtWindow(area), cursor);
    XFreePixmap(display, source);
    XFreePixmap(display, mask);
}

void loadFont(Display* display)
{
    const char* name = IWGetConfig("KV_GRAPHICS_FONT");
    if (!name)
        name = IWGetConfig("TS_GRAPHICS_FONT");
    XFontStruct* font = name ? XLoadQueryFont(display, name) : nullptr;
    if (!font)
        font = XLoadQueryFont(display, "screen13");
    if (!font)
        font = XLoadQueryFont(display, "fixed");
    if (!font) {
        std::fprintf(stderr, "Unable to load X font\n");
        std::exit(-1);
    }
    plot.plotFont = font->fid;
    plot.lineHeight = font->ascent + font->descent;
    XFreeFontInfo(nullptr, font, 1); // the font itself stays loaded
}

// Stores the area's size and returns its depth.
int readAreaSize(Widget area)
{
    Dimension width = 0, height = 0;
    int depth = 0;
    XtVaGetValues(area, XmNwidth, &width, XmNheight, &height, XmNdepth, &depth, nullptr);
    plot.plotWidth = width;
    plot.plotHeight = height;
    return depth;
}

void createPlotPixmap(Widget area, int depth)
{
    plot.plotPixmap = XCreatePixmap(XtDisplay(area), XtWindow(area), static_cast<unsigned>(plot.plotWidth),
                                    static_cast<unsigned>(plot.plotHeight), static_cast<unsigned>(depth));
}

} // namespace

void freePlotPixmap(Display* display)
{
    if (plot.plotPixmap == None)
        return;
    XFreePixmap(display, plot.plotPixmap);
    plot.plotPixmap = None;
}

void plotExpose(Widget widget, XtPointer, XtPointer)
{
    int depth = readAreaSize(widget);
    if (plot.plotPixmap == None)
        createPlotPixmap(widget, depth);
    if (plot.firstExpose) {
        allocateColors(widget);
        defineCursor(widget);
        loadFont(XtDisplay(widget));
        plot.firstExpose = 0;
    }
    drawProfile(1);
}

// The form lays the area out before it has a window; the pixmap then comes with the first expose.
void plotResize(Widget widget, XtPointer, XtPointer)
{
    int depth = readAreaSize(widget);
    if (!XtIsRealized(widget))
        return;
    freePlotPixmap(XtDisplay(widget));
    createPlotPixmap(widget, depth);
    drawProfile(1);
}
