// SPDX-License-Identifier: MIT
#include "gauge/Labels.h"

#include <Xm/XmP.h>

namespace {

// A label as Motif measures and draws it; freed at the end of its life.
struct MotifString {
    XmString text;

    explicit MotifString(const std::string& label)
        : text(XmStringCreateLocalized(const_cast<char*>(label.c_str())))
    {
    }
    ~MotifString() { XmStringFree(text); }
    MotifString(const MotifString&) = delete;
    MotifString& operator=(const MotifString&) = delete;
};

int digitHeightOf(Display* display, XmFontType type, XtPointer font)
{
    if (font && type == XmFONT_IS_FONT) {
        int direction, fontAscent, fontDescent;
        XCharStruct digit;
        XTextExtents(static_cast<XFontStruct*>(font), "0", 1, &direction, &fontAscent, &fontDescent, &digit);
        return digit.ascent;
    }
    if (font && type == XmFONT_IS_FONTSET) {
        XRectangle ink, logical;
        XmbTextExtents(static_cast<XFontSet>(font), "0", 1, &ink, &logical);
        return ink.height;
    }
    if (font && type == XmFONT_IS_XFT) {
        XGlyphInfo digit;
        XftTextExtentsUtf8(display, static_cast<XftFont*>(font), reinterpret_cast<const FcChar8*>("0"), 1,
                           &digit);
        return digit.y;
    }
    return 0;
}

} // namespace

LabelFont labelFontOf(Display* display, XmRenderTable table)
{
    const MotifString digit("0");
    LabelFont font = {table, nullptr, 0, XmStringWidth(table, digit.text),
                      XmStringBaseline(table, digit.text)};
    XmFontContext context;
    if (XmFontListInitFontContext(&context, table)) {
        if (XmFontListEntry entry = XmFontListNextEntry(context)) {
            XmFontType type = XmFONT_IS_FONT;
            XtPointer first = XmFontListEntryGetFont(entry, &type);
            font.digitHeight = digitHeightOf(display, type, first);
            if (type == XmFONT_IS_XFT)
                font.scalable = static_cast<XftFont*>(first);
        }
        XmFontListFreeFontContext(context);
    }
    if (font.digitHeight <= 0)
        font.digitHeight = XmStringHeight(table, digit.text);
    return font;
}

int labelWidth(const LabelFont& font, const std::string& label)
{
    return XmStringWidth(font.table, MotifString(label).text);
}

int labelHeight(const LabelFont& font, const std::string& label)
{
    return XmStringHeight(font.table, MotifString(label).text);
}

LabelPainter::LabelPainter(Screen* screen, Drawable onDrawable, int depth, GC withGC, const XColor& inColor,
                           const LabelFont& inFont)
    : display(DisplayOfScreen(screen)), drawable(onDrawable), gc(withGC),
      font(inFont), color{inColor.pixel, {inColor.red, inColor.green, inColor.blue, 0xFFFF}}
{
    if (font.scalable && depth == DefaultDepthOfScreen(screen))
        scalable.reset(
            XftDrawCreate(display, drawable, DefaultVisualOfScreen(screen), DefaultColormapOfScreen(screen)));
}

void LabelPainter::drawNumber(const std::string& label, int x, int y, int width)
{
    if (!scalable)
        return drawText(label, x, y + font.digitHeight - font.digitBaseline, width);
    XftDrawStringUtf8(scalable.get(), &color, font.scalable, x, y + font.digitHeight,
                      reinterpret_cast<const FcChar8*>(label.data()), static_cast<int>(label.size()));
}

void LabelPainter::drawText(const std::string& label, int x, int y, int width)
{
    XmStringDraw(display, drawable, font.table, MotifString(label).text, gc, static_cast<Position>(x),
                 static_cast<Position>(y), static_cast<Dimension>(width), XmALIGNMENT_BEGINNING,
                 XmSTRING_DIRECTION_L_TO_R, nullptr);
}
