// SPDX-License-Identifier: MIT
// The X side of what viewer and client agree on: atoms, properties, the registry of image windows and the
// exclusive input lock. Everything here lives in the server and vanishes with the client that made it.
//
// Selections: IMAGE_WINDOW_<n> is owned by the canvas of image window n; IMAGE_WINDOW_<n>_INPUT by an
// unmapped window of the tool that holds the window's input, whose _NET_WM_NAME (UTF-8) is the lock's title.
// Properties of a canvas: _IW_DISPLAY (DisplayRecord.h), _IW_OVERLAY (OverlayRecord.h), _KV_TOOLS (appended
// WINDOW ids of the shells of registered tools). Property of a registered tool's shell: _KV_PROGRAM, its
// title (UTF8_STRING). A viewer asks a tool to end with a ClientMessage _KV_QUIT to its shell.
#pragma once

#include "platform/protocol/DisplayRecord.h"
#include "platform/protocol/OverlayRecord.h"

#include <X11/Xlib.h>

#include <optional>
#include <string>
#include <vector>

namespace protocol {

constexpr int maxOverlayBytes = 1 << 20; // a larger backlog is dropped

struct Atoms {
    explicit Atoms(Display* display);
    Atom display, overlay, tools, program, quit, utf8String, netWmName;
};

// Atoms of a display, interned once per process and display.
const Atoms& atoms(Display* display);

// Swallows the X errors of the requests made during its life; errors of earlier requests go to the handler
// that was installed before. Traps may be nested. It waits for the server at its end when a request is
// unanswered.
class ErrorTrap {
public:
    explicit ErrorTrap(Display* display);
    ~ErrorTrap();
    ErrorTrap(const ErrorTrap&) = delete;
    ErrorTrap& operator=(const ErrorTrap&) = delete;
    // Waits for the server; returns the code of the first error so far, 0 for none.
    int error();

private:
    static int handle(Display* display, XErrorEvent* event);
    Display* display;
    unsigned long firstRequest;
    int firstError = 0;
    XErrorHandler previousHandler;
    ErrorTrap* outer;
};

// Installs the process's error handlers. BadWindow and BadDrawable, from a peer that has just died, are
// swallowed; any other error is reported in one line on standard error and the program goes on. When the
// server itself is gone the process ends with one line and status 1, without running exit handlers. program
// is copied.
void installErrorHandler(const char* program);

// A window that is never mapped: it stands for its client while the client lives. eventMask: of its own
// events.
Window makeHiddenWindow(Display* display, long eventMask = NoEventMask);

// Takes the lowest free window number for canvas. 0 when it could take none.
int claimWindowNumber(Display* display, Window canvas);
// The same, and stores the number in the record and publishes it before any other client can find the window:
// a number that can be found has a record.
int claimWindowNumber(Display* display, Window canvas, DisplayRecord& record);

// The canvas of image window n, None when there is none.
Window findImageWindow(Display* display, int number);

// Writes the record for the clients to see; a record that readDisplay would refuse is not written, with a
// line on standard error.
void publishDisplay(Display* display, Window canvas, const DisplayRecord& record);
// Nothing when the window is gone or its record is bad (then with a line on standard error).
std::optional<DisplayRecord> readDisplay(Display* display, Window canvas);

// Queues a command for the viewer. The request is sent with the caller's next flush.
void appendOverlay(Display* display, Window canvas, const OverlayCommand& command);
// Bytes of commands that the viewer has not taken yet (one round trip); 0 when the window is gone.
unsigned long pendingOverlayBytes(Display* display, Window canvas);
// Takes all commands that have come since the last call, in order. Records that are no command are skipped
// with a line on standard error.
std::vector<OverlayCommand> drainOverlays(Display* display, Window canvas);

struct LockResult {
    Window owner = None; // the lock: an unmapped window of ours; None when refused
    std::string holder;  // title of the tool that holds the lock when refused
};
// Takes the input of an image window for this connection. A connection that holds it already gets the same
// lock again; one release ends it.
LockResult takeInputLock(Display* display, int windowNumber, const std::string& title);
// Whether owner still holds the lock of that image window.
bool holdsInputLock(Display* display, int windowNumber, Window owner);
void releaseInputLock(Display* display, int windowNumber, Window owner);

// A registered tool: announces its shell on the canvas, and the viewer's side of it.
void announceTool(Display* display, Window canvas, Window shell, const std::string& title);
struct ToolEntry {
    Window shell = None;
    std::string title;
};
// Live tools announced on the canvas, each once; dead ones are struck off the list.
std::vector<ToolEntry> announcedTools(Display* display, Window canvas);
void requestQuit(Display* display, Window shell);

} // namespace protocol
