// Ties of a tool window to an image window.
#include "platform/include/WMEnh.h"
#include "platform/protocol/XProtocol.h"
#include "platform/wmenh/Toolkit.h"

#include <X11/Xutil.h>

using namespace wmenh;

void WMAttachToImageWindow(Widget shell, int windowNumber)
{
    const Widget tool = shell ? shell : toolkit().shell;
    Display* const display = toolkit().display;
    const Window canvas = protocol::findImageWindow(display, windowNumber);
    if (canvas == None || !XtIsRealized(tool))
        return;
    const TopLevel top = topLevelOf(display, canvas);
    if (top.client != None)
        XSetTransientForHint(display, XtWindow(tool), top.client);
}
