// SPDX-License-Identifier: MIT
#include "platform/imagewindow/controls/Widgets.h"

#include "platform/imagewindow/controls/LocalText.h"

#include <Xm/Label.h>

namespace viewer {

Pixel allocateColor(Widget widget, const Rgb& color)
{
    XColor request{};
    request.red = static_cast<unsigned short>(color.red * 257);
    request.green = static_cast<unsigned short>(color.green * 257);
    request.blue = static_cast<unsigned short>(color.blue * 257);
    Colormap colormap = 0;
    XtVaGetValues(widget, XmNcolormap, &colormap, nullptr);
    return XAllocColor(XtDisplay(widget), colormap, &request) ? request.pixel
                                                              : WhitePixelOfScreen(XtScreen(widget));
}

void setLabel(Widget label, const std::string& utf8)
{
    const LabelText text(utf8);
    XtVaSetValues(label, XmNlabelString, static_cast<XmString>(text), nullptr);
}

namespace {

XmRenderTable fontsOf(Widget label)
{
    XmRenderTable fonts = nullptr; // the label's own
    XtVaGetValues(label, XmNrenderTable, &fonts, nullptr);
    return fonts;
}

} // namespace

Measure measureOf(Widget label)
{
    return [label](const std::string& utf8) -> int { return XmStringWidth(fontsOf(label), LabelText(utf8)); };
}

int lineHeightOf(Widget label)
{
    return XmStringHeight(fontsOf(label), LabelText("x"));
}

} // namespace viewer
