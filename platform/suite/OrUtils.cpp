// SPDX-License-Identifier: MIT
// Placing a tool window beside an image window.
#include "platform/include/OrUtils.h"
#include "platform/base/Placement.h"
#include "platform/protocol/XProtocol.h"
#include "platform/wmenh/MainWindow.h"
#include "platform/wmenh/Toolkit.h"

using namespace wmenh;

namespace {

// Rows of pixels that a tool window may still grow by between its placing and its showing, when the program
// completes its attachments.
constexpr int growth = 40;

Rectangle toolArea(Widget shell, const TopLevel& image)
{
    Dimension width = 0, height = 0;
    XtVaGetValues(shell, XmNwidth, &width, XmNheight, &height, nullptr);
    // The window manager will put the same frame around the tool as it has put around the image.
    const Rectangle &outer = image.frameArea, &inner = image.clientArea;
    return {0, 0, width + outer.width - inner.width, height + outer.height - inner.height + growth};
}

} // namespace

int OrvelPositionNextToImage(int windowNumber, Widget widget)
{
    Widget shell = widget;
    while (shell && !XtIsShell(shell))
        shell = XtParent(shell);
    if (!shell)
        return 0;
    Display* const display = XtDisplay(shell);
    const Window canvas = protocol::findImageWindow(display, windowNumber);
    const TopLevel image = canvas == None ? TopLevel{} : topLevelOf(display, canvas);
    if (image.frame == None)
        return 0;
    if (shell == mainShell())
        realiseMainWindow();
    if (!XtIsRealized(shell))
        return 0;
    const Rectangle place = base::placeBeside(image.frameArea, toolArea(shell, image), screenArea(shell));
    placeShell(shell, place.x, place.y);
    return 1;
}
