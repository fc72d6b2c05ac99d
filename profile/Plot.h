// SPDX-License-Identifier: MIT
// The ProfilePlot: the drawing area in which the curves are drawn, its backing pixmap and the resources for
// drawing. One instance. The shell makes the widgets and the graphics context and frees the pixmap at the
// end; colours, cursor and font are made at the first expose and live until exit. Plot coordinates are
// pixels, (0, 0) at the top left.
#pragma once

#include <X11/Intrinsic.h>

#include <cstdint>

// Positions in plotColors, in the order of allocation.
enum PlotColor {
    colorBlue,
    colorRed,
    colorYellow,
    colorWhite,
    colorGreen,
    colorBlack,
    colorCyan,
    colorMagenta,
    colorBackground,
    plotColorCount
};

struct ProfilePlot {
    Widget plotArea;         // null until the tool window is built
    Widget intensityScale;   // the intensity gauge's scale object
    int32_t plotWidth = 500; // present size of plotArea, pixels
    int32_t plotHeight = 200;
    Pixmap plotPixmap; // plotWidth x plotHeight; None until the first expose
    GC plotGC;         // the one context of all plot drawing
    unsigned long plotColors[plotColorCount];
    Font plotFont;           // None until the first expose
    int32_t lineHeight;      // ascent + descent of plotFont
    int32_t firstExpose = 1; // colours, cursor and font are still to be made
};
extern ProfilePlot plot;

// Clears the pixmap, samples the Profile when a segment is defined, draws curves and FWHM texts, sets the
// range of the intensity gauge and, when copyToWindow is non-zero, copies the pixmap to the screen. Returns 0
// when there is no plot area yet, else 1.
int drawProfile(int copyToWindow);

// Frees the backing pixmap on the given display, if there is one.
void freePlotPixmap(Display* display);

// Draws ISO 8859-1 text in plotFont and the context's present colours; nothing without a context or a font.
void drawPlotText(Drawable drawable, int32_t x, int32_t baseline, const char* text);

// Callbacks of the plot area.
void plotExpose(Widget widget, XtPointer clientData, XtPointer callData);
void plotResize(Widget widget, XtPointer clientData, XtPointer callData);
void plotInput(Widget widget, XtPointer clientData, XtPointer callData);
