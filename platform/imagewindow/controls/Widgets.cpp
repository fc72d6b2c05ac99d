// SPDX-License-Identifier: MIT
#include "platform/imagewindow/controls/Widgets.h"

#include "platform/imagewindow/controls/LocalText.h"
#include "platform/protocol/XProtocol.h"
#include "widgets/Painter.h"

#include <Xm/Label.h>

#include <algorithm>

namespace viewer {

Pixel allocateColor(Widget widget, const Rgb& color)
{
    return widgets::pixelOf(widget, widgets::colorOf(color), WhitePixelOfScreen(XtScreen(widget)));
}

Size sizeOf(Widget widget)
{
    Dimension width = 0, height = 0;
    XtVaGetValues(widget, XmNwidth, &width, XmNheight, &height, nullptr);
    return {std::max<int>(width, 1), std::max<int>(height, 1)};
}

void bringForward(Widget dialogue)
{
    XtManageChild(dialogue);
    Display* display = XtDisplay(dialogue);
    const Window shell = XtWindow(XtParent(dialogue));
    XMapRaised(display, shell);
    XWindowAttributes attributes{};
    const protocol::ErrorTrap trap(display); // the window manager may just be taking it away
    if (XGetWindowAttributes(display, shell, &attributes) && attributes.map_state == IsViewable)
        XSetInputFocus(display, shell, RevertToParent, XtLastTimestampProcessed(display));
}

void setLabel(Widget label, const std::string& utf8)
{
    const auto text = labelString(utf8);
    XtVaSetValues(label, XmNlabelString, text.get(), nullptr);
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
    return [label](const std::string& utf8) -> int {
        return XmStringWidth(fontsOf(label), labelString(utf8).get());
    };
}

int lineHeightOf(Widget label)
{
    return XmStringHeight(fontsOf(label), labelString("x").get());
}

} // namespace viewer
