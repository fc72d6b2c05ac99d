// SPDX-License-Identifier: MIT
#include "tests/recording/RunningTool.h"

#include "profile/Plot.h"
#include "profile/Profile.h"
#include "segment/Segment.h"
#include "shell/StartUp.h"

#include <X11/IntrinsicP.h> // XtConfigureWidget

Display* RunningTool::display;

namespace {

Window imageWindow; // where pointer events come from

} // namespace

void RunningTool::SetUpTestSuite()
{
    if (display)
        return;
    display = recording::useDisplay();
    ASSERT_NE(display, nullptr) << "needs a display";
    imageWindow = XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, recording::imageWidth,
                                      recording::imageHeight, 0, 0, 0);
    char program[] = "lineprofile", number[] = "3";
    char* arguments[] = {program, number, nullptr};
    ASSERT_EQ(runTool(2, arguments), 0);
    while (plot.firstExpose)
        XtAppProcessEvent(XtDisplayToApplicationContext(display), XtIMAll);
    // The recording platform lays nothing out.
    XtConfigureWidget(plot.plotArea, 0, 0, 500, 200, 0);
    XRaiseWindow(display, XtWindow(plot.plotArea));
}

void RunningTool::SetUp()
{
    XSync(display, False);
    while (XtAppPending(XtDisplayToApplicationContext(display)))
        XtAppProcessEvent(XtDisplayToApplicationContext(display), XtIMAll);
    recording::reset();
    segment = {};
    segmentDefined = dragging = 0;
    settings = {0, 0, 0.5f};
    sampleProfile(); // the segment lies within one pixel: empty
    profile.scaleMin = profile.scaleMax = profile.fwhmValue = 0;
    recording::calls.clear();
}

void RunningTool::press(int x, int y, unsigned button)
{
    XEvent event = {};
    event.xbutton = {.type = ButtonPress, .window = imageWindow, .x = x, .y = y, .button = button};
    recording::handlers.at(ButtonPressMask)(&event, nullptr);
}

void RunningTool::motion(int x, int y, unsigned state)
{
    XEvent event = {};
    event.xmotion = {.type = MotionNotify, .window = imageWindow, .x = x, .y = y, .state = state};
    recording::handlers.at(PointerMotionMask)(&event, nullptr);
}

void RunningTool::release()
{
    XEvent event = {};
    event.xbutton = {.type = ButtonRelease, .window = imageWindow, .button = Button1};
    recording::handlers.at(ButtonReleaseMask)(&event, nullptr);
}

void RunningTool::drag(int x0, int y0, int x1, int y1)
{
    press(x0, y0);
    motion(x1, y1);
    release();
}
