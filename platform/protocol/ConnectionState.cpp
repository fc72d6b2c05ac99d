// SPDX-License-Identifier: MIT
#include "platform/protocol/ConnectionState.h"

#include <iterator>
#include <map>

#include <X11/Xlibint.h> // for XESetCloseDisplay; last, because of its macros

namespace protocol {
namespace {

std::map<Display*, ConnectionState> states;

int forgetConnection(Display* display, XExtCodes* /*codes*/)
{
    states.erase(display); // a later connection may get the same address and the same window ids
    return 0;
}

} // namespace

Atoms::Atoms(Display* connection)
{
    static const char* const names[] = {"_IW_DISPLAY", "_IW_OVERLAY", "_KV_TOOLS",   "_KV_PROGRAM",
                                        "_KV_QUIT",    "UTF8_STRING", "_NET_WM_NAME"};
    Atom values[std::size(names)] = {};
    XInternAtoms(connection, const_cast<char**>(names), std::size(names), False, values);
    display = values[0];
    overlay = values[1];
    tools = values[2];
    program = values[3];
    quit = values[4];
    utf8String = values[5];
    netWmName = values[6];
}

ConnectionState& stateOf(Display* display)
{
    const auto [entry, isNew] = states.try_emplace(display, display);
    if (isNew)
        XESetCloseDisplay(display, XAddExtension(display)->extension, forgetConnection);
    return entry->second;
}

const Atoms& atoms(Display* display)
{
    return stateOf(display).atoms;
}

} // namespace protocol
