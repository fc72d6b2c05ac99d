// SPDX-License-Identifier: MIT
// Ties of a tool window to an image window.
#include "platform/include/WMEnh.h"
#include "platform/protocol/XProtocol.h"
#include "platform/wmenh/Toolkit.h"

#include <X11/Xutil.h>
#include <Xm/Xm.h>

#include <string>

using namespace wmenh;

namespace {

// Task bars show it: the tools of two image windows have the same title.
void showNumberInIconName(Widget tool, int windowNumber)
{
    String title = nullptr;
    XtVaGetValues(tool, XmNtitle, &title, nullptr);
    const std::string name = std::string(title ? title : "") + " (" + std::to_string(windowNumber) + ")";
    XtVaSetValues(tool, XmNiconName, name.c_str(), nullptr);
}

} // namespace

void WMAttachToImageWindow(Widget shell, int windowNumber)
{
    const Widget tool = shell ? shell : toolkit().shell;
    Display* const display = toolkit().display;
    const Window canvas = protocol::findImageWindow(display, windowNumber);
    if (canvas == None || !XtIsRealized(tool))
        return;
    showNumberInIconName(tool, windowNumber);
    const TopLevel top = topLevelOf(display, canvas);
    if (top.client != None)
        XSetTransientForHint(display, XtWindow(tool), top.client);
}
