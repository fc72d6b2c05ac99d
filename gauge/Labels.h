// SPDX-License-Identifier: MIT
// The font of a gauge's labels, their measure and their drawing. For the gauge's own files.
#ifndef GAUGE_LABELS_H
#define GAUGE_LABELS_H

#include <X11/Xft/Xft.h>
#include <Xm/Xm.h>

#include <memory>
#include <string>

// The first font of a gauge's render table, which stays its owner. Labels of digits are placed by the height
// of the digits; a font's own ascent and descent hold room for accents and would push them off centre.
struct LabelFont {
    XmRenderTable table;
    XftFont* scalable; // null for a font that the server draws
    int digitHeight;   // pixels, like all sizes here
    int digitWidth;
    int digitBaseline; // from the top of a label that the table lays out
};

LabelFont labelFontOf(Display* display, XmRenderTable table);

int labelWidth(const LabelFont& font, const std::string& label);
int labelHeight(const LabelFont& font, const std::string& label);

struct XftDrawEnd {
    void operator()(XftDraw* draw) const { XftDrawDestroy(draw); }
};

// Draws labels in one font and colour. Motif asks the server for the colour of every string that it draws
// with a scalable font and waits for the answer; the painter draws the digits of a number itself.
class LabelPainter {
public:
    // The GC's foreground must be the colour's pixel. Both, and the font, must outlive the painter.
    LabelPainter(Screen* screen, Drawable drawable, int depth, GC gc, const XColor& color,
                 const LabelFont& font);

    // A number, the top of whose digits is y.
    void drawNumber(const std::string& label, int x, int y, int width);
    // Any text, the top of whose lines is y.
    void drawText(const std::string& label, int x, int y, int width);

private:
    Display* display;
    Drawable drawable;
    GC gc;
    const LabelFont& font;
    XftColor color;
    std::unique_ptr<XftDraw, XftDrawEnd> scalable; // null: Motif draws the labels
};

#endif
