// SPDX-License-Identifier: MIT
// What libWMEnh needs to know of libIWL: the X connection and the attached image windows. libWMEnh selects
// and dispatches the events of the canvases; libIWL keeps the display state up to date from them. The
// canvases belong to the viewer, the connection to libIWL; all calls are made from the one thread that calls
// IWAttach.
#pragma once

#include <X11/Xlib.h>

#include <string>
#include <vector>

namespace iwl {

// The connection that IWAttach opened with XOpenDisplay, null before. Never closed: libWMEnh hands it to
// XtDisplayInitialize.
Display* display();

// Base name of the program, for messages.
std::string programName();

struct AttachedWindow {
    int slot = 0;         // 1 to IW_MAX_SLOTS
    int windowNumber = 0; // the image window's number
    Window canvas = None;
};

// The attached image windows in the order of their slots.
std::vector<AttachedWindow> attachedWindows();

// The window number of a canvas, 0 when no slot is attached to it.
int windowNumberOf(Window canvas);

// The process's unmapped window that stands for it as a client of image windows; it lives as long as the
// connection.
Window clientWindow();

enum class Change { Nothing, Display, Closed };

// To be called for every PropertyNotify and DestroyNotify of an attached canvas; other events give Nothing.
// Display: the published record was read again and something in it is different. Closed: the canvas is gone.
Change handleEvent(const XEvent& event);

// Reads the record of a canvas again without an event. To be called once after its events have been selected:
// what happened between IWAttachWin and the selection comes as no event, the end of the canvas included.
Change refresh(Window canvas);

} // namespace iwl
