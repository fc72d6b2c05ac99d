// SPDX-License-Identifier: MIT
// What the selections and the tool list say: which windows have which number, who holds the input, which
// tools run.
#include "platform/protocol/ConnectionState.h"
#include "platform/protocol/PropertyBytes.h"
#include "platform/protocol/XProtocol.h"
#include "platform/text/Utf8.h"

#include <X11/Xatom.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace protocol {
namespace {

constexpr std::size_t maxTitleBytes = 200;
constexpr std::size_t maxTools = 256;

// Makes a sequence of requests atomic for all clients; to be held as short as can be.
class ServerGrab {
public:
    explicit ServerGrab(Display* connection) : display(connection) { XGrabServer(display); }
    ~ServerGrab()
    {
        XUngrabServer(display);
        XFlush(display);
    }
    ServerGrab(const ServerGrab&) = delete;
    ServerGrab& operator=(const ServerGrab&) = delete;

private:
    Display* display;
};

Bool isPropertyNotifyOf(Display* /*display*/, XEvent* event, XPointer window)
{
    return event->type == PropertyNotify && event->xproperty.window == *reinterpret_cast<Window*>(window);
}

// The server's time now, from the notification of a zero-length append to a window of our own: the caller's
// windows and event queue stay untouched.
Time serverTime(Display* display)
{
    Window window = makeHiddenWindow(display, PropertyChangeMask);
    XChangeProperty(display, window, XA_WM_NAME, XA_STRING, 8, PropModeAppend, nullptr, 0);
    XEvent event;
    XIfEvent(display, &event, isPropertyNotifyOf, reinterpret_cast<XPointer>(&window));
    XDestroyWindow(display, window);
    return event.xproperty.time;
}

std::string windowSelectionName(int number)
{
    return "IMAGE_WINDOW_" + std::to_string(number);
}

Atom inputSelection(Display* display, int number, bool create)
{
    return XInternAtom(display, (windowSelectionName(number) + "_INPUT").c_str(), !create);
}

// Within a server grab: makes window the owner of a selection that nobody owns.
bool takeSelection(Display* display, Atom selection, Window window)
{
    ErrorTrap trap(display);
    XSetSelectionOwner(display, selection, window, serverTime(display));
    return XGetSelectionOwner(display, selection) == window;
}

// A title for showing: without control characters, cut at a character of UTF-8.
std::string readTitle(Display* display, Window window, Atom property)
{
    const PropertyBytes stored = readProperty(display, window, property, atoms(display).utf8String, 8, 4096);
    std::string title(reinterpret_cast<const char*>(stored.bytes.data()), stored.bytes.size());
    title.resize(text::cutToBytes(title, maxTitleBytes).size());
    std::replace_if(
        title.begin(), title.end(), [](unsigned char c) { return c < 32 || c == 127; }, ' ');
    return title;
}

void writeTitle(Display* display, Window window, Atom property, const std::string& title)
{
    writeBytes(display, window, property, atoms(display).utf8String, PropModeReplace,
               std::as_bytes(std::span(title)));
}

auto findHeldLock(std::vector<HeldLock>& locks, int windowNumber, Window owner)
{
    return std::find_if(locks.begin(), locks.end(), [&](const HeldLock& lock) {
        return lock.windowNumber == windowNumber && lock.owner == owner;
    });
}

std::string holderName(Display* display, Window owner)
{
    const std::string title = readTitle(display, owner, atoms(display).netWmName);
    return title.empty() ? "unnamed" : title;
}

int claimNumber(Display* display, Window canvas, const std::function<void(int)>& beforeClaim)
{
    const ServerGrab grab(display);
    for (int number = 1; number <= maxWindowNumber; ++number) {
        const Atom selection = XInternAtom(display, windowSelectionName(number).c_str(), False);
        if (XGetSelectionOwner(display, selection) != None)
            continue;
        beforeClaim(number);
        return takeSelection(display, selection, canvas) ? number : 0;
    }
    return 0;
}

std::vector<Window> listedTools(Display* display, Window canvas)
{
    const PropertyBytes list =
        readProperty(display, canvas, atoms(display).tools, XA_WINDOW, 32, maxTools * 4);
    std::vector<Window> windows(list.bytes.size() / sizeof(Window));
    if (!windows.empty())
        std::memcpy(windows.data(), list.bytes.data(), windows.size() * sizeof(Window));
    std::sort(windows.begin(), windows.end());
    windows.erase(std::unique(windows.begin(), windows.end()), windows.end());
    return windows;
}

} // namespace

Window makeHiddenWindow(Display* display, long eventMask)
{
    XSetWindowAttributes attributes = {};
    attributes.override_redirect = True;
    attributes.event_mask = eventMask;
    return XCreateWindow(display, DefaultRootWindow(display), -1, -1, 1, 1, 0, 0, InputOnly, CopyFromParent,
                         CWOverrideRedirect | CWEventMask, &attributes);
}

int claimWindowNumber(Display* display, Window canvas)
{
    return claimNumber(display, canvas, [](int) {});
}

int claimWindowNumber(Display* display, Window canvas, DisplayRecord& record)
{
    return claimNumber(display, canvas, [&](int number) {
        record.windowNumber = number;
        publishDisplay(display, canvas, record);
    });
}

Window findImageWindow(Display* display, int number)
{
    if (number < 1 || number > maxWindowNumber)
        return None;
    const Atom selection = XInternAtom(display, windowSelectionName(number).c_str(), True);
    return selection == None ? None : XGetSelectionOwner(display, selection);
}

LockResult takeInputLock(Display* display, int windowNumber, const std::string& title)
{
    const Atom selection = inputSelection(display, windowNumber, true);
    auto& locks = stateOf(display).locks;
    const ServerGrab grab(display);
    const Window holder = XGetSelectionOwner(display, selection);
    if (holder != None && findHeldLock(locks, windowNumber, holder) != locks.end())
        return {holder, {}};
    if (holder != None)
        return {None, holderName(display, holder)};
    const Window owner = makeHiddenWindow(display, NoEventMask);
    writeTitle(display, owner, atoms(display).netWmName, title);
    if (!takeSelection(display, selection, owner)) {
        XDestroyWindow(display, owner);
        return {None, "unnamed"};
    }
    locks.push_back({windowNumber, owner});
    return {owner, {}};
}

bool holdsInputLock(Display* display, int windowNumber, Window owner)
{
    const Atom selection = inputSelection(display, windowNumber, false);
    return owner != None && selection != None && XGetSelectionOwner(display, selection) == owner;
}

void releaseInputLock(Display* display, int windowNumber, Window owner)
{
    auto& locks = stateOf(display).locks;
    const auto lock = findHeldLock(locks, windowNumber, owner);
    if (lock == locks.end())
        return;
    locks.erase(lock);
    XDestroyWindow(display, owner); // the selection goes with its window
    XFlush(display);
}

void announceTool(Display* display, Window canvas, Window shell, const std::string& title)
{
    ErrorTrap trap(display);
    writeTitle(display, shell, atoms(display).program, title);
    XChangeProperty(display, canvas, atoms(display).tools, XA_WINDOW, 32, PropModeAppend,
                    reinterpret_cast<const unsigned char*>(&shell), 1);
}

std::vector<ToolEntry> announcedTools(Display* display, Window canvas)
{
    const ServerGrab grab(display); // nobody appends between reading and striking off
    const std::vector<Window> windows = listedTools(display, canvas);
    std::vector<ToolEntry> tools;
    std::vector<Window> alive;
    for (Window window : windows) {
        std::string title = readTitle(display, window, atoms(display).program);
        if (title.empty())
            continue;
        alive.push_back(window);
        tools.push_back({window, std::move(title)});
    }
    if (alive.size() == windows.size()) // no news for those who watch the list, such as the caller
        return tools;
    ErrorTrap trap(display);
    XChangeProperty(display, canvas, atoms(display).tools, XA_WINDOW, 32, PropModeReplace,
                    reinterpret_cast<const unsigned char*>(alive.data()), static_cast<int>(alive.size()));
    return tools;
}

void requestQuit(Display* display, Window shell)
{
    ErrorTrap trap(display);
    XEvent event = {};
    event.xclient.type = ClientMessage;
    event.xclient.window = shell;
    event.xclient.message_type = atoms(display).quit;
    event.xclient.format = 32;
    XSendEvent(display, shell, False, NoEventMask, &event);
}

} // namespace protocol
