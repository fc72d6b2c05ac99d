// SPDX-License-Identifier: MIT
// Drawing of the set's own primitives: a buffer of the widget's size with cairo for shapes and Xft for text,
// copied to the window once.
#pragma once

#include "platform/base/DisplayColors.h"

#include <X11/Xft/Xft.h>
#include <Xm/Xm.h>
#include <cairo.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace widgets {

// Parts from 0 to 1.
struct Color {
    double red = 0, green = 0, blue = 0;
};

constexpr Color colorOf(const base::Rgb& color)
{
    return {color.red / 255.0, color.green / 255.0, color.blue / 255.0};
}
// What a pixel value shows. No round trip on a screen of true colours.
Color colorOf(Widget widget, Pixel pixel);
// The pixel of a colour in the widget's colormap; the other one when none is free.
Pixel pixelOf(Widget widget, const Color& color, Pixel otherwise);
// share 0: first, 1: second.
Color mix(const Color& first, const Color& second, double share);

// How bright, 0 to 1, for the choice of a colour that stands out.
double luminance(const Color& color);

// The first font of a render table, which stays its owner.
class TextFont {
public:
    TextFont(Widget widget, XmRenderTable renderTable);
    int width(std::string_view text) const;
    int ascent() const { return above; }
    int height() const { return above + below; }
    // The text, or as much of its beginning as fits with "..." behind it.
    std::string fitted(std::string_view text, int width) const;

private:
    friend class Painter;
    Display* display;
    XmRenderTable table;
    XftFont* scalable = nullptr; // null for a font that the server draws
    int above = 0, below = 0;    // of the baseline, pixels
};

// The table that a widget was given, else the one of its surroundings; a copy that the caller frees.
XmRenderTable ownRenderTable(Widget widget, XmRenderTable given);
// After a change: copies the new table and frees the old one. True when they differ.
bool takeRenderTable(Widget widget, XmRenderTable& changed, XmRenderTable old);

enum class Direction { Up, Down, Right };

class Painter {
public:
    // Fills the buffer with the ground colour. The widget must be realised.
    Painter(Widget widget, const Color& ground);
    ~Painter(); // shows what was drawn
    Painter(const Painter&) = delete;
    Painter& operator=(const Painter&) = delete;

    // For shapes, with the widget's frame. Valid until the next call of another function.
    cairo_t* cairo(const Color& source, double opacity = 1);
    // One line whose baseline is y.
    void text(const TextFont& font, std::string_view text, int x, int y, const Color& color);
    // Until unclip(), texts show inside the box only.
    void clip(int x, int y, int width, int height);
    void unclip();
    Drawable drawable() const { return buffer; }

    void fill(double x, double y, double width, double height, const Color& color);
    // The edges of a box, inside it.
    void frame(double x, double y, double width, double height, double thickness, const Color& color);
    // Two strokes from corner to corner of a square.
    void cross(double x, double y, double size, double thickness, const Color& color);
    // A triangle in a square.
    void triangle(double x, double y, double size, Direction pointsTo, const Color& color);

private:
    void settle();

    Widget widget;
    Display* display;
    Pixmap buffer;
    std::unique_ptr<cairo_t, void (*)(cairo_t*)> context;
    std::unique_ptr<XftDraw, void (*)(XftDraw*)> draw;
    std::optional<XRectangle> clipBox;
    bool shapesPending = false; // cairo may not have drawn all of its shapes yet
};

} // namespace widgets
