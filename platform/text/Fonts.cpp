// SPDX-License-Identifier: MIT
#include "platform/text/Fonts.h"

#include "platform/text/LocaleText.h"

#include <X11/Xft/Xft.h>

namespace text {

namespace {

constexpr const char* scalable[] = {
    "*renderTable: plain",
    "*plain.fontType: FONT_IS_XFT",
    "*plain.fontName: Sans",
    "*plain.fontSize: 9",
};

// The colon makes the entry a font set, which draws any character of the locale. Elsewhere a font set leaves
// out what is not ASCII, while a font draws the bytes of ISO 8859-1 as they are.
constexpr const char *bitmapFontSet = "*fontList: fixed:", *bitmapFont = "*fontList: fixed";

// Motif draws a scalable font's text right in UTF-8 only; elsewhere it leaves out what is not ASCII.
bool scalableFontUsable(Display* display)
{
    if (!localeIsUtf8())
        return false;
    XftFont* font = XftFontOpenName(display, DefaultScreen(display), "Sans-9");
    if (font)
        XftFontClose(display, font);
    return font != nullptr;
}

} // namespace

void appendFontResources(Display* display, std::vector<const char*>& lines)
{
    if (scalableFontUsable(display))
        lines.insert(lines.end(), std::begin(scalable), std::end(scalable));
    else
        lines.push_back(localeIsUtf8() ? bitmapFontSet : bitmapFont);
}

} // namespace text
