// SPDX-License-Identifier: MIT
// Events of the image windows. A canvas belongs to another process: its events come over our connection, Xt
// hands them to an unrealised carrier widget, and from there they go to the handlers that are registered at
// that moment. Everything is selected once and up front, because the mask of an implicit grab is frozen at
// the press.
#include "platform/include/IWL.h"
#include "platform/include/WMEnh.h"
#include "platform/iwl/Session.h"
#include "platform/protocol/XProtocol.h"
#include "platform/wmenh/ImageWindows.h"
#include "platform/wmenh/Toolkit.h"

#include <X11/Core.h>
#include <X11/Shell.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <set>
#include <vector>

using namespace wmenh;

namespace {

constexpr long inputMask =
    ButtonPressMask | ButtonReleaseMask | PointerMotionMask | EnterWindowMask | LeaveWindowMask;
constexpr long changeMask = StructureNotifyMask | PropertyChangeMask;

struct Handler {
    long id;
    int slot;
    long mask;
    WMEventProc proc;
    void* clientData;
};
struct ChangeProc {
    WMDisplayChangeProc proc;
    void* clientData;
};

long lastHandlerId = 0;
std::vector<Handler> handlers;
std::map<int, ChangeProc> changeProcs; // by slot
bool enabled = false;
std::set<Window> watched;  // canvases whose end is told to us
std::set<Window> selected; // canvases whose events come
std::set<Window> closed;   // canvases whose end has been told

std::vector<int> slotsOf(Window canvas)
{
    std::vector<int> slots;
    for (const iwl::AttachedWindow& window : iwl::attachedWindows())
        if (window.canvas == canvas)
            slots.push_back(window.slot);
    return slots;
}

// The handler masks that an event answers to.
long maskOf(const XEvent& event)
{
    switch (event.type) {
    case ButtonPress:
        return ButtonPressMask;
    case ButtonRelease:
        return ButtonReleaseMask;
    case MotionNotify:
        return PointerMotionMask;
    case EnterNotify:
        return EnterWindowMask;
    case LeaveNotify:
        return LeaveWindowMask;
    default:
        return 0;
    }
}

// Handlers may come, go and end the process while they run: each is looked up again before its call.
void callHandlers(int slot, long mask, const XEvent& event)
{
    std::vector<long> ids;
    for (const Handler& handler : handlers)
        if (handler.slot == slot && (handler.mask & mask))
            ids.push_back(handler.id);
    for (const long id : ids) {
        const auto found =
            std::find_if(handlers.begin(), handlers.end(), [id](const Handler& h) { return h.id == id; });
        if (found == handlers.end())
            continue;
        XEvent copy = event;
        found->proc(&copy, found->clientData);
    }
}

struct MotionScan {
    const XMotionEvent* motion;
    Atom display;
    bool stopped = false;
};

// Looks for a motion that may replace an earlier one: nothing that matters to the same canvas lies between
// them. What our own overlay commands make of properties does not matter, a new display state does.
Bool findNewerMotion(Display*, XEvent* event, XPointer data)
{
    auto& scan = *reinterpret_cast<MotionScan*>(data);
    if (scan.stopped || event->xany.window != scan.motion->window)
        return False;
    if (event->type == MotionNotify && event->xmotion.state == scan.motion->state)
        return True;
    scan.stopped = event->type != PropertyNotify || event->xproperty.atom == scan.display;
    return False;
}

XEvent newestMotion(const XEvent& first)
{
    Display* const display = first.xmotion.display;
    XEvent newest = first;
    XEvent next;
    MotionScan scan{&first.xmotion, protocol::atoms(display).display};
    XEventsQueued(display, QueuedAfterReading);
    while (XCheckIfEvent(display, &next, findNewerMotion, reinterpret_cast<XPointer>(&scan)))
        newest = next;
    return newest;
}

Bool sameProperty(Display*, XEvent* event, XPointer data)
{
    const XPropertyEvent& first = *reinterpret_cast<XPropertyEvent*>(data);
    return event->type == PropertyNotify && event->xproperty.window == first.window &&
           event->xproperty.atom == first.atom;
}

// The record is state: the newest notification stands for all that are queued.
XEvent newestProperty(XEvent event)
{
    XEvent next;
    while (XCheckIfEvent(event.xproperty.display, &next, sameProperty,
                         reinterpret_cast<XPointer>(&event.xproperty)))
        event = next;
    return event;
}

void tellChange(Window canvas, iwl::Change change)
{
    if (change == iwl::Change::Nothing || closed.contains(canvas))
        return;
    if (change == iwl::Change::Closed)
        closed.insert(canvas);
    for (const int slot : slotsOf(canvas)) {
        const auto found = changeProcs.find(slot);
        if (found == changeProcs.end())
            continue;
        const ChangeProc proc = found->second;
        WMDisplayChange notice{
            static_cast<short>(change == iwl::Change::Closed ? WM_DISPLAY_CLOSED : WM_DISPLAY_CHANGED),
            static_cast<short>(slot)};
        proc.proc(slot, &notice, proc.clientData);
    }
}

// Raw handler of the carrier.
void canvasEvent(Widget, XtPointer, XEvent* event, Boolean*)
{
    const Window canvas = event->xany.window;
    if (event->type == PropertyNotify) {
        tellChange(canvas, iwl::handleEvent(newestProperty(*event)));
        return;
    }
    if (event->type == DestroyNotify) {
        tellChange(canvas, iwl::handleEvent(*event));
        return;
    }
    const bool crossing = event->type == EnterNotify || event->type == LeaveNotify;
    const long mask = maskOf(*event);
    if (mask == 0 || (crossing && event->xcrossing.mode != NotifyNormal))
        return;
    const XEvent current = event->type == MotionNotify ? newestMotion(*event) : *event;
    for (const int slot : slotsOf(canvas))
        callHandlers(slot, mask, current);
}

Widget carrier()
{
    static Widget widget = nullptr;
    if (!widget) {
        // Xt realises unmanaged children too, and a window of no size is fatal.
        widget = XtVaCreateWidget("canvasEvents", coreWidgetClass, toolkit().shell, XmNwidth, 1, XmNheight, 1,
                                  nullptr);
        XtAddRawEventHandler(widget, inputMask | changeMask, False, canvasEvent, nullptr);
    }
    return widget;
}

// Timeout: reads what changed on a canvas before its events were selected, its end included.
void catchUp(XtPointer canvas, XtIntervalId*)
{
    const auto window = reinterpret_cast<Window>(canvas);
    tellChange(window, iwl::refresh(window));
}

void watchCanvas(Window canvas)
{
    if (!watched.insert(canvas).second)
        return;
    Display* const display = toolkit().display;
    XtRegisterDrawable(display, canvas, carrier());
    const protocol::ErrorTrap trap(display);
    XSelectInput(display, canvas, changeMask);
    XtAppAddTimeOut(toolkit().context, 0, catchUp, reinterpret_cast<XtPointer>(canvas));
}

void selectCanvas(Window canvas)
{
    if (!selected.insert(canvas).second)
        return;
    watchCanvas(canvas);
    Display* const display = toolkit().display;
    {
        protocol::ErrorTrap trap(display);
        XSelectInput(display, canvas, inputMask | changeMask);
        if (trap.error() == BadAccess) {
            // Only one client may select presses: the rest is still worth having.
            fprintf(stderr, "%s: another program already receives the button presses of the image window\n",
                    iwl::programName().c_str());
            XSelectInput(display, canvas, (inputMask & ~ButtonPressMask) | changeMask);
        }
    }
}

void selectAll()
{
    for (const iwl::AttachedWindow& window : iwl::attachedWindows())
        selectCanvas(window.canvas);
}

} // namespace

void wmenh::watchImageWindows()
{
    for (const iwl::AttachedWindow& window : iwl::attachedWindows())
        watchCanvas(window.canvas);
}

bool wmenh::imageWindowsGone()
{
    const auto windows = iwl::attachedWindows();
    return !windows.empty() && std::ranges::all_of(windows, [](const iwl::AttachedWindow& window) {
        return closed.contains(window.canvas);
    });
}

void WMEnableIWLEvent(void)
{
    enabled = true;
    selectAll();
}

void WMAddEventHandler(int slot, long mask, WMEventProc proc, void* clientData)
{
    WMCancelEventHandler(slot, mask);
    handlers.push_back({++lastHandlerId, slot, mask, proc, clientData});
    if (enabled)
        selectAll();
}

void WMCancelEventHandler(int slot, long mask)
{
    std::erase_if(handlers, [=](const Handler& h) { return h.slot == slot && h.mask == mask; });
}

void WMProcDisplayChange(int slot, WMDisplayChangeProc proc, void* clientData)
{
    changeProcs[slot] = {proc, clientData};
    if (enabled)
        selectAll();
}

void WMCancelDisplayChange(int slot)
{
    changeProcs.erase(slot);
}
