// SPDX-License-Identifier: MIT
#include "shell/Shutdown.h"

#include "profile/Plot.h"
#include "segment/Segment.h"
#include "shell/InputLock.h"
#include "shell/ToolWindow.h"

#include <IWL.h>
#include <WMEnh.h>

#include <cstdlib>

namespace {

void releaseInputLock()
{
    if (lockId != 0)
        WMReleaseMonitorLock(lockId);
}

void releasePlotPixmap()
{
    if (plot.plotPixmap != None)
        freePlotPixmap(XtDisplay(toolWindow.toolShell));
}

} // namespace

void quitTool(Widget, XtPointer, XtPointer)
{
    WMCancelDisplayChange(imageSlot);
    WMCancelEventHandler(imageSlot, ButtonPressMask);
    WMCancelEventHandler(imageSlot, EnterWindowMask);
    IWGrRmAllGrID(imageSlot);
    IWDisplay(imageSlot);
    releaseInputLock();
    IMClose(imageSlot);
    releasePlotPixmap();
    std::exit(0);
}

namespace {

// The image window is going away, and with it all that the other ending acts on: graphics, image, enter
// events.
void endWithImageWindow()
{
    WMCancelDisplayChange(imageSlot);
    WMCancelEventHandler(imageSlot, ButtonPressMask);
    releaseInputLock();
    releasePlotPixmap();
    std::exit(0);
}

} // namespace

[[gnu::visibility("default")]] int ProcDisChange(int, WMDisplayChange* change, void*)
{
    if (change->code == WM_DISPLAY_CLOSED)
        endWithImageWindow();
    return drawProfile(1);
}

[[gnu::visibility("default")]] int EnterWindow(XEvent*, void*)
{
    return acquireInputLock();
}
