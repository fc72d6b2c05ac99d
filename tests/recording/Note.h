// How the recording platform writes its calls down. For its own files.
#pragma once

#include "tests/recording/Recording.h"

#include <concepts>
#include <cstdarg>
#include <string>

namespace recording {

// What the platform itself has to remember between calls.
struct State {
    int nextGraphic = 1;
    int positionedZ = 0, positionedW = 0;
    int reads = 0;
};
extern State state;

std::string text(const char* value);
std::string text(float value);
std::string text(Widget widget);
std::string text(std::integral auto value)
{
    return std::to_string(value);
}

template<typename... Arguments> void note(const char* function, const Arguments&... arguments)
{
    std::string line = std::string(function) + "(", separator;
    ((line += separator + text(arguments), separator = ", "), ...);
    calls.push_back(line + ")");
}

// One line whatever the text: formatted dialogue and warning texts.
std::string format(const char* format, va_list arguments);

} // namespace recording
