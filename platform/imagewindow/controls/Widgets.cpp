#include "platform/imagewindow/controls/Widgets.h"

#include "platform/imagewindow/controls/LocalText.h"

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

} // namespace viewer
