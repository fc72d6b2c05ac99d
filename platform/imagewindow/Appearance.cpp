#include "platform/imagewindow/Appearance.h"

#include <X11/Xft/Xft.h>

#include <cstring>
#include <langinfo.h>
#include <vector>

namespace viewer {

namespace {

constexpr const char* looks[] = {
    "*background: #2b2e31",
    "*foreground: #d9dbdd",
    "*topShadowColor: #44494e",
    "*bottomShadowColor: #17191b",
    "*armColor: #3a3f45",
    "*highlightColor: #6c8ebf",
    "*borderWidth: 0",
    "*menuBar.shadowThickness: 0",
    "*channels*shadowThickness: 0",
    "*XmScrollBar.shadowThickness: 1",
    "*XmScale.highlightThickness: 0",
    "*XmScale*XmScrollBar.highlightThickness: 0",
    "*XmScale.background: #4a4e53",
    "*XmScrollBar.troughColor: #1d1f21",
    "*XmScrollBar.background: #4a4e53",
    "*XmText.background: #1d1f21",
    "*XmTextField.background: #1d1f21",
    "*XmList.background: #1d1f21",
    "*XmToggleButton.indicatorSize: 13",
    "*XmToggleButton.selectColor: #d9dbdd",
    "*port.background: #16181b",
    "*area.background: #16181b",
    "*status.background: #232527",
    "*status*background: #232527",
};

constexpr const char* smoothFont[] = {
    "*renderTable: plain",
    "*plain.fontType: FONT_IS_XFT",
    "*plain.fontName: Sans",
    "*plain.fontSize: 9",
};

// The colon makes the entry a font set, which draws any character of the locale. Elsewhere a font set leaves
// out what is not ASCII, while a font draws the bytes of ISO 8859-1 as they are.
constexpr const char *bitmapFontSet = "*fontList: fixed:", *bitmapFont = "*fontList: fixed";

bool utf8Locale()
{
    return std::strcmp(nl_langinfo(CODESET), "UTF-8") == 0;
}

// Scalable text that is not ASCII comes out right in UTF-8 locales only.
bool smoothFontUsable(Display* display)
{
    if (!utf8Locale())
        return false;
    XftFont* font = XftFontOpenName(display, DefaultScreen(display), "Sans-9");
    if (font)
        XftFontClose(display, font);
    return font != nullptr;
}

} // namespace

String* fallbackResources(Display* display)
{
    static std::vector<const char*> list(std::begin(looks), std::end(looks));
    if (smoothFontUsable(display))
        list.insert(list.end(), std::begin(smoothFont), std::end(smoothFont));
    else
        list.push_back(utf8Locale() ? bitmapFontSet : bitmapFont);
    list.push_back(nullptr);
    return const_cast<String*>(list.data());
}

} // namespace viewer
