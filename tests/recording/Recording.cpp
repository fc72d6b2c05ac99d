// SPDX-License-Identifier: MIT
#include "tests/recording/Recording.h"

#include "tests/recording/Note.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace recording {

Script script;
std::vector<std::string> calls;
std::map<long, WMEventProc> handlers;
std::map<std::string, Widget> widgets;
std::map<std::string, XtCallbackProc> actions;
State state;

void reset()
{
    script = {};
    calls.clear();
    state = {};
}

std::vector<std::string> callsOf(const std::vector<std::string>& prefixes)
{
    std::vector<std::string> found;
    std::ranges::copy_if(calls, std::back_inserter(found), [&](const std::string& call) {
        return std::ranges::any_of(prefixes, [&](const auto& prefix) { return call.starts_with(prefix); });
    });
    return found;
}

std::string shown(const char* value)
{
    return value ? '"' + std::string(value) + '"' : "0";
}

std::string shown(EventNames mask)
{
    constexpr std::pair<long, const char*> events[] = {{ButtonPressMask, "ButtonPressMask"},
                                                       {ButtonReleaseMask, "ButtonReleaseMask"},
                                                       {EnterWindowMask, "EnterWindowMask"},
                                                       {PointerMotionMask, "PointerMotionMask"}};
    std::string names;
    for (const auto& [bit, name] : events)
        if (mask.bits & bit) {
            names += (names.empty() ? "" : "|") + std::string(name);
            mask.bits &= ~bit;
        }
    return mask.bits ? names + "|" + std::to_string(mask.bits) : names;
}

std::string shown(Widget widget)
{
    for (const auto& [name, known] : widgets)
        if (known == widget)
            return name;
    return widget ? "widget" : "0";
}

} // namespace recording
