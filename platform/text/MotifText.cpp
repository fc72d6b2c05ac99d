// SPDX-License-Identifier: MIT
#include "platform/text/MotifText.h"

#include <Xm/FileSB.h>
#include <Xm/TextF.h>

#include <algorithm>
#include <cstddef>
#include <memory>

namespace text {

namespace {

struct XtDeleter {
    void operator()(char* text) const { XtFree(text); }
};

// A copy of a text that Xt has allocated, which is freed; empty for null.
std::string takeText(char* allocated)
{
    const std::unique_ptr<char, XtDeleter> owner(allocated);
    return owner ? owner.get() : "";
}

// Map callback of a file selection box.
void setFileBoxWidth(Widget box, XtPointer, XtPointer)
{
    constexpr int columns = 100;
    const int width = columnsWidth(XmFileSelectionBoxGetChild(box, XmDIALOG_LIST), columns);
    const int most = WidthOfScreen(XtScreen(box)) * 9 / 10;
    XtVaSetValues(box, XmNresizePolicy, XmRESIZE_NONE, XmNwidth, std::min(width, most), nullptr);
}

} // namespace

MotifString::MotifString(const std::string& text)
    : string(XmStringCreateLocalized(const_cast<char*>(text.c_str())))
{
}

std::string plainText(XmString string)
{
    return takeText(static_cast<char*>(
        XmStringUnparse(string, nullptr, XmCHARSET_TEXT, XmCHARSET_TEXT, nullptr, 0, XmOUTPUT_ALL)));
}

std::string textResource(Widget widget, const char* resource)
{
    XmString value = nullptr; // a copy
    XtVaGetValues(widget, resource, &value, nullptr);
    return plainText(MotifString(value).get());
}

std::string fieldText(Widget field)
{
    return takeText(XmTextFieldGetString(field));
}

int columnsWidth(Widget widget, int columns)
{
    XmRenderTable fonts = nullptr; // the widget's own
    XtVaGetValues(widget, XmNrenderTable, &fonts, nullptr);
    return XmStringWidth(fonts, MotifString(std::string(static_cast<std::size_t>(columns), 'n')).get());
}

void fixFileBoxWidth(Widget box)
{
    XtAddCallback(box, XmNmapCallback, setFileBoxWidth, nullptr);
}

} // namespace text
