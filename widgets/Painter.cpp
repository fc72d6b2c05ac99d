// SPDX-License-Identifier: MIT
#include "widgets/Painter.h"

#include "platform/text/MotifText.h"

#include <X11/IntrinsicP.h>
#include <Xm/XmP.h>
#include <cairo-xlib.h>

#include <cmath>

namespace widgets {

namespace {

constexpr double full = 65535;

Visual* visualOf(Widget widget)
{
    while (widget && !XtIsShell(widget))
        widget = XtParent(widget);
    Visual* visual = nullptr;
    if (widget)
        XtVaGetValues(widget, XmNvisual, &visual, nullptr);
    return visual ? visual : DefaultVisualOfScreen(XtScreen(widget));
}

unsigned short level(double share)
{
    return static_cast<unsigned short>(std::lround(share * full));
}

double part(Pixel pixel, Pixel mask)
{
    return mask ? static_cast<double>(pixel & mask) / static_cast<double>(mask) : 0;
}

XftFont* scalableFontOf(XmRenderTable table)
{
    XmFontContext context;
    XftFont* font = nullptr;
    if (!XmFontListInitFontContext(&context, table))
        return nullptr;
    if (XmFontListEntry entry = XmFontListNextEntry(context)) {
        XmFontType type = XmFONT_IS_FONT;
        XtPointer first = XmFontListEntryGetFont(entry, &type);
        if (type == XmFONT_IS_XFT)
            font = static_cast<XftFont*>(first);
    }
    XmFontListFreeFontContext(context);
    return font;
}

const FcChar8* utf8(std::string_view text)
{
    return reinterpret_cast<const FcChar8*>(text.data());
}

} // namespace

Color colorOf(Widget widget, Pixel pixel)
{
    const Visual* visual = visualOf(widget);
    if (visual->c_class == TrueColor)
        return {part(pixel, visual->red_mask), part(pixel, visual->green_mask),
                part(pixel, visual->blue_mask)};
    XColor color{};
    color.pixel = pixel;
    XQueryColor(XtDisplay(widget), widget->core.colormap, &color);
    return {color.red / full, color.green / full, color.blue / full};
}

Pixel pixelOf(Widget widget, const Color& color, Pixel otherwise)
{
    XColor wanted{};
    wanted.red = level(color.red);
    wanted.green = level(color.green);
    wanted.blue = level(color.blue);
    return XAllocColor(XtDisplay(widget), widget->core.colormap, &wanted) ? wanted.pixel : otherwise;
}

Color mix(const Color& first, const Color& second, double share)
{
    return {std::lerp(first.red, second.red, share), std::lerp(first.green, second.green, share),
            std::lerp(first.blue, second.blue, share)};
}

double luminance(const Color& color)
{
    return 0.299 * color.red + 0.587 * color.green + 0.114 * color.blue; // as in ITU-R BT.601
}

XmRenderTable ownRenderTable(Widget widget, XmRenderTable given)
{
    return XmRenderTableCopy(given ? given : XmeGetDefaultRenderTable(widget, XmLABEL_FONTLIST), nullptr, 0);
}

bool takeRenderTable(Widget widget, XmRenderTable& changed, XmRenderTable old)
{
    if (changed == old)
        return false;
    changed = ownRenderTable(widget, changed);
    XmRenderTableFree(old);
    return true;
}

TextFont::TextFont(Widget widget, XmRenderTable renderTable)
    : display(XtDisplay(widget)), table(renderTable), scalable(scalableFontOf(renderTable))
{
    if (scalable) {
        above = scalable->ascent;
        below = scalable->descent;
        return;
    }
    const text::MotifString sample("0");
    above = XmStringBaseline(table, sample.get());
    below = XmStringHeight(table, sample.get()) - above;
}

int TextFont::width(std::string_view text) const
{
    if (!scalable)
        return text.empty() ? 0 : XmStringWidth(table, text::MotifString(std::string(text)).get());
    XGlyphInfo extents;
    XftTextExtentsUtf8(display, scalable, utf8(text), static_cast<int>(text.size()), &extents);
    return extents.xOff;
}

std::string TextFont::fitted(std::string_view text, int room) const
{
    if (width(text) <= room)
        return std::string(text);
    const int dots = width("...");
    while (!text.empty() && width(text) + dots > room) {
        // A character of UTF-8 goes as a whole.
        do
            text.remove_suffix(1);
        while (scalable && !text.empty() && (static_cast<unsigned char>(text.back()) & 0xC0) == 0x80);
        if (scalable && !text.empty() && static_cast<unsigned char>(text.back()) >= 0xC0)
            text.remove_suffix(1);
    }
    return dots <= room ? std::string(text) + "..." : std::string();
}

Painter::Painter(Widget owner, const Color& ground)
    : widget(owner), display(XtDisplay(owner)),
      buffer(
          XCreatePixmap(display, XtWindow(owner), owner->core.width, owner->core.height, owner->core.depth)),
      context(nullptr, cairo_destroy),
      draw(XftDrawCreate(display, buffer, visualOf(owner), owner->core.colormap), XftDrawDestroy)
{
    cairo_surface_t* surface =
        cairo_xlib_surface_create(display, buffer, visualOf(owner), owner->core.width, owner->core.height);
    context.reset(cairo_create(surface));
    cairo_surface_destroy(surface);
    fill(0, 0, owner->core.width, owner->core.height, ground);
}

Painter::~Painter()
{
    settle();
    const GC gc = XtGetGC(widget, 0, nullptr);
    XCopyArea(display, buffer, XtWindow(widget), gc, 0, 0, widget->core.width, widget->core.height, 0, 0);
    XtReleaseGC(widget, gc);
    cairo_surface_finish(cairo_get_target(context.get()));
    draw.reset();
    XFreePixmap(display, buffer);
}

cairo_t* Painter::cairo(const Color& source, double opacity)
{
    if (!shapesPending)
        cairo_surface_mark_dirty(cairo_get_target(context.get()));
    shapesPending = true;
    cairo_set_source_rgba(context.get(), source.red, source.green, source.blue, opacity);
    return context.get();
}

void Painter::settle()
{
    if (shapesPending)
        cairo_surface_flush(cairo_get_target(context.get()));
    shapesPending = false;
}

void Painter::text(const TextFont& font, std::string_view text, int x, int y, const Color& color)
{
    if (text.empty())
        return;
    settle();
    if (!font.scalable) {
        XGCValues values{};
        values.foreground = pixelOf(widget, color, BlackPixelOfScreen(XtScreen(widget)));
        const GC gc = XCreateGC(display, buffer, GCForeground, &values);
        if (clipBox)
            XSetClipRectangles(display, gc, 0, 0, &*clipBox, 1, Unsorted);
        const text::MotifString line{std::string(text)};
        XmStringDraw(display, buffer, font.table, line.get(), gc, static_cast<Position>(x),
                     static_cast<Position>(y - font.above), widget->core.width, XmALIGNMENT_BEGINNING,
                     XmSTRING_DIRECTION_L_TO_R, nullptr);
        XFreeGC(display, gc);
        return;
    }
    const XftColor ink{0, {level(color.red), level(color.green), level(color.blue), 0xFFFF}};
    XftDrawStringUtf8(draw.get(), &ink, font.scalable, x, y, utf8(text), static_cast<int>(text.size()));
}

void Painter::clip(int x, int y, int width, int height)
{
    clipBox = {static_cast<short>(x), static_cast<short>(y), static_cast<unsigned short>(width),
               static_cast<unsigned short>(height)};
    XftDrawSetClipRectangles(draw.get(), 0, 0, &*clipBox, 1);
}

void Painter::unclip()
{
    clipBox.reset();
    XftDrawSetClip(draw.get(), nullptr);
}

void Painter::fill(double x, double y, double width, double height, const Color& color)
{
    cairo_t* to = cairo(color);
    cairo_rectangle(to, x, y, width, height);
    cairo_fill(to);
}

void Painter::frame(double x, double y, double width, double height, double thickness, const Color& color)
{
    cairo_t* to = cairo(color);
    cairo_set_line_width(to, thickness);
    cairo_rectangle(to, x + thickness / 2, y + thickness / 2, width - thickness, height - thickness);
    cairo_stroke(to);
}

void Painter::cross(double x, double y, double size, double thickness, const Color& color)
{
    cairo_t* to = cairo(color);
    cairo_set_line_width(to, thickness);
    cairo_set_line_cap(to, CAIRO_LINE_CAP_ROUND);
    cairo_move_to(to, x, y);
    cairo_line_to(to, x + size, y + size);
    cairo_move_to(to, x + size, y);
    cairo_line_to(to, x, y + size);
    cairo_stroke(to);
}

void Painter::triangle(double x, double y, double size, Direction pointsTo, const Color& color)
{
    cairo_t* to = cairo(color);
    const double quarter = size / 4;
    if (pointsTo == Direction::Right) {
        cairo_move_to(to, x + quarter, y);
        cairo_line_to(to, x + size - quarter, y + size / 2);
        cairo_line_to(to, x + quarter, y + size);
    } else {
        const bool down = pointsTo == Direction::Down;
        const double base = y + (down ? quarter : size - quarter),
                     point = y + (down ? size - quarter : quarter);
        cairo_move_to(to, x, base);
        cairo_line_to(to, x + size, base);
        cairo_line_to(to, x + size / 2, point);
    }
    cairo_close_path(to);
    cairo_fill(to);
}

} // namespace widgets
