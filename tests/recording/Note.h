// SPDX-License-Identifier: MIT
// How the recording platform writes its calls down. For its own files.
#pragma once

#include "tests/recording/Recording.h"

#include <sstream>
#include <string>
#include <type_traits>
#include <utility>

namespace recording {

// What the platform itself has to remember between calls.
struct State {
    int nextGraphic = 1;
    int positionedZ = 0, positionedW = 0;
    int reads = 0;
};
extern State state;

std::string shown(const char* value);
std::string shown(Widget widget);

// A mask of X events, shown by the names of its events.
struct EventNames {
    long bits;
};
std::string shown(EventNames events);

template<typename Number>
requires std::is_arithmetic_v<Number> Number shown(Number value)
{
    return value;
}

template<typename... Arguments> void note(const char* function, const Arguments&... arguments)
{
    std::ostringstream line;
    std::string separator;
    line << function << "(";
    ((line << std::exchange(separator, ", ") << shown(arguments)), ...);
    line << ")";
    calls.push_back(line.str());
}

} // namespace recording

// A platform function that notes the arguments named last and answers `result`.
#define RECORDED(type, name, parameters, result, ...)                                                        \
    type name parameters                                                                                     \
    {                                                                                                        \
        recording::note(#name __VA_OPT__(, ) __VA_ARGS__);                                                   \
        return result;                                                                                       \
    }
