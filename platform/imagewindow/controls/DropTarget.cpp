// SPDX-License-Identifier: MIT
#include "platform/imagewindow/controls/DropTarget.h"

#include "platform/protocol/XProtocol.h"

#include <X11/Xatom.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace viewer {

namespace {

constexpr long protocolVersion = 5;
constexpr long maxTypes = 256; // of a source; further ones are not looked at

// The best first.
constexpr const char* wantedTypes[] = {"text/uri-list", "text/plain;charset=utf-8", "UTF8_STRING",
                                       "text/plain", "STRING"};

// A source with more than three types lists them in a property of its window. The server answers for it, so
// this does not wait for the source.
std::vector<Atom> listedTypes(Display* display, Window source, Atom property)
{
    const protocol::ErrorTrap trap(display);
    Atom type = None;
    int format = 0;
    unsigned long count = 0, rest = 0;
    unsigned char* data = nullptr;
    std::vector<Atom> types;
    if (XGetWindowProperty(display, source, property, 0, maxTypes, False, XA_ATOM, &type, &format, &count,
                           &rest, &data) == Success &&
        format == 32 && data)
        types.assign(reinterpret_cast<Atom*>(data), reinterpret_cast<Atom*>(data) + count);
    if (data)
        XFree(data);
    return types;
}

Atom bestOf(Display* display, const std::vector<Atom>& types)
{
    for (const char* name : wantedTypes) {
        const Atom wanted = XInternAtom(display, name, False);
        if (std::find(types.begin(), types.end(), wanted) != types.end())
            return wanted;
    }
    return None;
}

Window windowIn(long word)
{
    return static_cast<Window>(static_cast<unsigned long>(word) & 0xFFFFFFFFUL);
}

} // namespace

DropTarget::Atoms::Atoms(Display* display)
{
    const auto atom = [display](const char* name) { return XInternAtom(display, name, False); };
    aware = atom("XdndAware");
    enter = atom("XdndEnter");
    position = atom("XdndPosition");
    status = atom("XdndStatus");
    leave = atom("XdndLeave");
    drop = atom("XdndDrop");
    finished = atom("XdndFinished");
    selection = atom("XdndSelection");
    copy = atom("XdndActionCopy");
    typeList = atom("XdndTypeList");
}

DropTarget::DropTarget(Widget shell, SelectionText::Take take)
    : shell(shell), atoms(XtDisplay(shell)), text(shell), take(std::move(take))
{
    const Atom version = protocolVersion;
    XChangeProperty(XtDisplay(shell), XtWindow(shell), atoms.aware, XA_ATOM, 32, PropModeReplace,
                    reinterpret_cast<const unsigned char*>(&version), 1);
    XtAddEventHandler(shell, NoEventMask, True, messageCame, this);
}

DropTarget::~DropTarget()
{
    XtRemoveEventHandler(shell, NoEventMask, True, messageCame, this);
}

void DropTarget::messageCame(Widget, XtPointer self, XEvent* event, Boolean*)
{
    if (event->type == ClientMessage && event->xclient.format == 32)
        static_cast<DropTarget*>(self)->handle(event->xclient);
}

void DropTarget::handle(const XClientMessageEvent& message)
{
    if (message.message_type == atoms.enter)
        return entered(message);
    if (source == None || windowIn(message.data.l[0]) != source)
        return;
    if (message.message_type == atoms.position)
        answer(source, atoms.status, offered != None ? 1 : 0);
    else if (message.message_type == atoms.leave)
        source = None;
    else if (message.message_type == atoms.drop)
        dropped(message);
}

void DropTarget::entered(const XClientMessageEvent& message)
{
    Display* display = XtDisplay(shell);
    source = windowIn(message.data.l[0]);
    const bool more = (message.data.l[1] & 1) != 0;
    std::vector<Atom> types;
    for (const int i : {2, 3, 4})
        types.push_back(windowIn(message.data.l[i]));
    offered = bestOf(display, more ? listedTypes(display, source, atoms.typeList) : types);
}

void DropTarget::dropped(const XClientMessageEvent& message)
{
    const Window from = std::exchange(source, Window{None});
    if (offered == None) {
        answer(from, atoms.finished, 0);
        return take({"", "it is no list of files"});
    }
    text.ask(atoms.selection, offered, static_cast<Time>(windowIn(message.data.l[2])),
             [this, from](const SelectionText::Answer& got) {
                 answer(from, atoms.finished, got.problem.empty() ? 1 : 0);
                 take(got);
             });
}

// XdndStatus has the action in its last word, XdndFinished in the one after the flags. Where the source is
// gone, the server's error is swallowed by the process's error handler.
void DropTarget::answer(Window to, Atom type, long flags)
{
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = to;
    event.xclient.message_type = type;
    event.xclient.format = 32;
    event.xclient.data.l[0] = static_cast<long>(XtWindow(shell));
    event.xclient.data.l[1] = flags;
    event.xclient.data.l[type == atoms.status ? 4 : 2] = flags ? static_cast<long>(atoms.copy) : None;
    XSendEvent(XtDisplay(shell), to, False, NoEventMask, &event);
}

} // namespace viewer
