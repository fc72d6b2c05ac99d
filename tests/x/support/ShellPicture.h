// SPDX-License-Identifier: MIT
// Pictures of the galleries' windows.
#pragma once

#include "drive/Process.h"
#include "drive/Screen.h"

#include <X11/Intrinsic.h>

// Waits until the realised shell has drawn itself, and saves what the screen shows of it as a PNG file. False
// when it cannot.
inline bool savePicture(Widget shell, const char* path)
{
    const XtAppContext app = XtWidgetToApplicationContext(shell);
    drive::Screen screen;
    drive::waitUntil([&] {
        XSync(XtDisplay(shell), False);
        const bool calm = XtAppPending(app) == 0;
        while (XtAppPending(app))
            XtAppProcessEvent(app, XtIMAll);
        return calm && screen.viewable(XtWindow(shell));
    });
    return screen.capture(XtWindow(shell)).save(path);
}
