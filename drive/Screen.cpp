// SPDX-License-Identifier: MIT
#include "drive/Screen.h"

#include <X11/XKBlib.h>
#include <X11/Xatom.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace drive {

namespace {

// A window that we look at may be gone by the time the request arrives.
int ignoreError(Display*, XErrorEvent*)
{
    return 0;
}

} // namespace

Screen::Screen() : display(XOpenDisplay(nullptr))
{
    if (!display)
        throw std::runtime_error("cannot open the display");
    XSetErrorHandler(ignoreError);
    asker = XCreateSimpleWindow(display, root(), 0, 0, 1, 1, 0, 0, 0);
}

Screen::~Screen()
{
    XCloseDisplay(display);
}

Window Screen::root() const
{
    return DefaultRootWindow(display);
}

std::string Screen::property(Window window, const char* name)
{
    Atom type = None;
    int format = 0;
    unsigned long count = 0, left = 0;
    unsigned char* data = nullptr;
    const int result = XGetWindowProperty(display, window, XInternAtom(display, name, False), 0, 1 << 20,
                                          False, AnyPropertyType, &type, &format, &count, &left, &data);
    if (result != Success || !data)
        return {};
    const size_t unit = format == 32 ? sizeof(long) : static_cast<size_t>(format) / 8;
    std::string bytes(reinterpret_cast<char*>(data), count * unit);
    XFree(data);
    return bytes;
}

std::string Screen::title(Window window)
{
    const std::string modern = property(window, "_NET_WM_NAME");
    return modern.empty() ? property(window, "WM_NAME") : modern;
}

bool Screen::viewable(Window window)
{
    XWindowAttributes attributes;
    return XGetWindowAttributes(display, window, &attributes) && attributes.map_state == IsViewable;
}

namespace {

// Depth first, so that a client's window is found below its frame; frames carry no title of their own.
Window searchTree(Screen& screen, Window window, const std::string& text)
{
    if (screen.title(window).find(text) != std::string::npos && screen.viewable(window))
        return window;
    Window rootWindow = None, parent = None, *children = nullptr, found = None;
    unsigned count = 0;
    if (!XQueryTree(screen.x(), window, &rootWindow, &parent, &children, &count))
        return None;
    for (unsigned i = count; i > 0 && found == None; --i)
        found = searchTree(screen, children[i - 1], text);
    if (children)
        XFree(children);
    return found;
}

} // namespace

Window Screen::findTitleNow(const std::string& text)
{
    return searchTree(*this, root(), text);
}

Window Screen::findTitle(const std::string& text, Milliseconds timeout)
{
    Window found = None;
    waitUntil([&] { return (found = findTitleNow(text)) != None; }, timeout);
    return found;
}

Window Screen::findImageWindow(int number, Milliseconds timeout)
{
    const Atom selection = XInternAtom(display, ("IMAGE_WINDOW_" + std::to_string(number)).c_str(), False);
    Window owner = None;
    waitUntil(
        [&] {
            owner = XGetSelectionOwner(display, selection);
            return owner != None && viewable(owner);
        },
        timeout);
    return owner;
}

namespace {

void collectLeaves(Screen& screen, Window window, std::vector<Window>& found)
{
    Window rootWindow = None, parent = None, *children = nullptr;
    unsigned count = 0;
    if (!screen.viewable(window) || !XQueryTree(screen.x(), window, &rootWindow, &parent, &children, &count))
        return;
    if (count == 0)
        found.push_back(window);
    for (unsigned i = 0; i < count; ++i)
        collectLeaves(screen, children[i], found);
    if (children)
        XFree(children);
}

} // namespace

std::vector<Window> Screen::leaves(Window window)
{
    std::vector<Window> found;
    collectLeaves(*this, window, found);
    std::map<Window, Rect> places;
    for (const Window leaf : found)
        places[leaf] = geometry(leaf);
    const auto centre = [&](Window leaf) { return places[leaf].y + places[leaf].height / 2; };
    std::sort(found.begin(), found.end(), [&](Window a, Window b) { return centre(a) < centre(b); });

    // Controls of one row differ in height, but hardly in the height of their centres.
    constexpr int sameRow = 8;
    for (auto first = found.begin(); first != found.end();) {
        const auto next = std::find_if(first, found.end(),
                                       [&](Window leaf) { return centre(leaf) - centre(*first) > sameRow; });
        std::sort(first, next, [&](Window a, Window b) { return places[a].x < places[b].x; });
        first = next;
    }
    return found;
}

Rect Screen::geometry(Window window)
{
    XWindowAttributes attributes;
    if (!XGetWindowAttributes(display, window, &attributes))
        return {};
    int x = 0, y = 0;
    Window child = None;
    XTranslateCoordinates(display, window, root(), 0, 0, &x, &y, &child);
    return {x, y, attributes.width, attributes.height};
}

Rect Screen::frameGeometry(Window window)
{
    Window top = window, parent = window, rootWindow = None, *children = nullptr;
    unsigned count = 0;
    while (XQueryTree(display, top, &rootWindow, &parent, &children, &count)) {
        if (children)
            XFree(children);
        if (parent == rootWindow || parent == None)
            break;
        top = parent;
    }
    return geometry(top);
}

// Waits until the server has taken the pointer event that was sent last. At the press that gives a window the
// focus, a window manager freezes the pointer; events that are sent before it lets go are mixed up: clicks
// are lost, drags end elsewhere. XQueryPointer tells only of events that were taken.
void Screen::awaitPointer(const std::function<bool(int x, int y, unsigned buttons)>& condition)
{
    constexpr Milliseconds longest{2000};
    waitUntil(
        [&] {
            Window rootWindow = None, child = None;
            int x = 0, y = 0, windowX = 0, windowY = 0;
            unsigned mask = 0;
            XQueryPointer(display, root(), &rootWindow, &child, &x, &y, &windowX, &windowY, &mask);
            return condition(x, y, mask);
        },
        longest);
}

void Screen::moveTo(Window window, int x, int y)
{
    int rootX = x, rootY = y;
    Window child = None;
    XTranslateCoordinates(display, window, root(), x, y, &rootX, &rootY, &child);
    XTestFakeMotionEvent(display, DefaultScreen(display), rootX, rootY, CurrentTime);
    rootX = std::clamp(rootX, 0, DisplayWidth(display, DefaultScreen(display)) - 1);
    rootY = std::clamp(rootY, 0, DisplayHeight(display, DefaultScreen(display)) - 1);
    awaitPointer([=](int nowX, int nowY, unsigned) { return nowX == rootX && nowY == rootY; });
}

namespace {

unsigned maskOf(unsigned button)
{
    return unsigned{Button1Mask} << (button - 1);
}

} // namespace

void Screen::press(unsigned button)
{
    XTestFakeButtonEvent(display, button, True, CurrentTime);
    awaitPointer([=](int, int, unsigned buttons) { return (buttons & maskOf(button)) != 0; });
}

void Screen::release(unsigned button)
{
    XTestFakeButtonEvent(display, button, False, CurrentTime);
    awaitPointer([=](int, int, unsigned buttons) { return (buttons & maskOf(button)) == 0; });
}

Window Screen::toplevel(Window window)
{
    while (window != None && window != root() && property(window, "WM_STATE").empty()) {
        Window rootWindow = None, parent = None, *children = nullptr;
        unsigned count = 0;
        if (!XQueryTree(display, window, &rootWindow, &parent, &children, &count))
            return None;
        if (children)
            XFree(children);
        window = parent;
    }
    return window == root() ? None : window;
}

void Screen::click(Window window, int x, int y, unsigned button)
{
    moveTo(window, x, y);
    press(button);
    release(button);
}

void Screen::clickCentre(Window window, unsigned button)
{
    const Rect place = geometry(window);
    click(window, place.width / 2, place.height / 2, button);
}

void Screen::requestClose(Window window)
{
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = XInternAtom(display, "WM_PROTOCOLS", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] = static_cast<long>(XInternAtom(display, "WM_DELETE_WINDOW", False));
    event.xclient.data.l[1] = CurrentTime;
    XSendEvent(display, window, False, NoEventMask, &event);
    XSync(display, False);
}

void Screen::doubleClick(Window window, int x, int y)
{
    click(window, x, y);
    click(window, x, y);
}

void Screen::drag(Window window, int x0, int y0, int x1, int y1, int steps, unsigned button)
{
    moveTo(window, x0, y0);
    press(button);
    for (int i = 1; i <= steps; ++i)
        moveTo(window, x0 + (x1 - x0) * i / steps, y0 + (y1 - y0) * i / steps);
    release(button);
}

void Screen::keyDown(KeySym key)
{
    // Motif takes a press with the time of the one before for that one come twice.
    constexpr unsigned long milliseconds = 2;
    XTestFakeKeyEvent(display, XKeysymToKeycode(display, key), True, milliseconds);
    XSync(display, False);
}

void Screen::keyUp(KeySym key)
{
    XTestFakeKeyEvent(display, XKeysymToKeycode(display, key), False, CurrentTime);
    XSync(display, False);
}

void Screen::key(KeySym key)
{
    keyDown(key);
    keyUp(key);
}

void Screen::keyWith(KeySym modifier, KeySym key)
{
    keyDown(modifier);
    this->key(key);
    keyUp(modifier);
}

void Screen::type(const std::string& text)
{
    for (const char character : text) {
        const KeySym symbol = static_cast<unsigned char>(character);
        const KeyCode code = XKeysymToKeycode(display, symbol);
        const bool shifted = XkbKeycodeToKeysym(display, code, 0, 0) != symbol;
        shifted ? keyWith(XK_Shift_L, symbol) : key(symbol);
    }
}

void Screen::replaceText(const std::string& text)
{
    keyWith(XK_Control_L, XK_slash);
    key(XK_Delete);
    type(text);
}

// The text of the primary selection; nothing while notOwner, or nobody, owns it.
std::optional<std::string> Screen::selection(Window notOwner)
{
    const Window owner = XGetSelectionOwner(display, XA_PRIMARY);
    if (owner == None || owner == notOwner)
        return {};
    const Atom utf8 = XInternAtom(display, "UTF8_STRING", False);
    XDeleteProperty(display, asker, utf8);
    XConvertSelection(display, XA_PRIMARY, utf8, utf8, asker, CurrentTime);
    XEvent answer;
    if (!waitUntil([&] { return XCheckTypedWindowEvent(display, asker, SelectionNotify, &answer); }))
        return {};
    return answer.xselection.property == None ? std::string() : property(asker, "UTF8_STRING");
}

std::string Screen::textIn(Window field)
{
    // A press that follows too soon would be a double click, which selects words.
    constexpr Milliseconds multiClickTime{250};
    waitUntil([&] { return std::chrono::steady_clock::now() - lastSelected > multiClickTime; });
    XSetSelectionOwner(display, XA_PRIMARY, asker, CurrentTime);
    const Rect place = geometry(field);
    drag(field, 2, place.height / 2, place.width - 2, place.height / 2);
    lastSelected = std::chrono::steady_clock::now();
    constexpr Milliseconds emptyField{3000};
    std::optional<std::string> text;
    waitUntil([&] { return (text = selection(asker)).has_value(); }, emptyField);
    XSetSelectionOwner(display, XA_PRIMARY, asker, CurrentTime); // ends the highlighting
    XSync(display, False);
    return text.value_or("");
}

} // namespace drive
