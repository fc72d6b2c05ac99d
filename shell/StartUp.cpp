// SPDX-License-Identifier: MIT
#include "shell/StartUp.h"

#include "profile/Profile.h"
#include "segment/Handlers.h"
#include "segment/Segment.h"
#include "shell/InputLock.h"
#include "shell/Message.h"
#include "shell/Settings.h"
#include "shell/Shutdown.h"
#include "shell/ToolWindow.h"

#include <IWL.h>
#include <KVRunUtils.h>
#include <OrUtils.h>
#include <WMEnh.h>

#include <algorithm>
#include <climits>
#include <cstdlib>

namespace {

// Module state: the number of the attached image window.
int32_t imageWindowNumber = 0;

// The leading digits; 0 when there are none, the nearest limit when there are too many.
int parseWindowNumber(const char* text)
{
    return static_cast<int>(std::clamp<long>(std::strtol(text, nullptr, 10), INT_MIN, INT_MAX));
}

void attachToImage(int argc, char** argv)
{
    IWAttach(argc, argv);
    if (argc != 2) {
        WMConfirmError("Usage: %s window_number", argc > 0 ? argv[0] : "lineprofile");
        std::exit(-1);
    }
    readSettings();
    imageWindowNumber = parseWindowNumber(argv[1]);
    if (IWAttachWin(imageSlot, imageWindowNumber, "ro") != 1) {
        WMConfirmError("Couldn't attach to window %d", imageWindowNumber);
        std::exit(-1);
    }
    if (!acquireInputLock())
        std::exit(-1);
}

void readPixelSize()
{
    float spacing[3] = {};
    IMRtDel(imageSlot, spacing);
    settings.pixelSize = spacing[0];
}

void hookImageWindow()
{
    segment.start.markerId = 0;
    segment.lineId = 0;
    WMEnableIWLEvent();
    WMProcDisplayChange(imageSlot, ProcDisChange, nullptr);
    WMAddEventHandler(imageSlot, ButtonPressMask, segmentPress, nullptr);
    WMAddEventHandler(imageSlot, EnterWindowMask, EnterWindow, nullptr);
}

void showToolWindow()
{
    OrvelPositionNextToImage(imageWindowNumber, toolWindow.toolFrame);
    WMDisplay();
    attachAxes();
    WMAttachToImageWindow(nullptr, imageWindowNumber);
    KVRunRegisterPgm("Arbitrary Profile", nullptr, quitTool);
}

} // namespace

int runTool(int argc, char** argv)
{
    attachToImage(argc, argv);
    readPixelSize();
    buildToolWindow();
    hookImageWindow();
    showToolWindow();
    showMessage("Define a line segment in the image window");
    WMAppMainLoop();
    return 0;
}
