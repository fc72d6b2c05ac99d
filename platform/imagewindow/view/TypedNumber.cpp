// SPDX-License-Identifier: MIT
#include "platform/imagewindow/view/TypedNumber.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <system_error>

namespace viewer {

std::optional<float> typedNumber(std::string text)
{
    std::replace(text.begin(), text.end(), ',', '.');
    const auto first = text.find_first_not_of(" +"), last = text.find_last_not_of(' ');
    if (first == std::string::npos)
        return std::nullopt;
    float value = 0;
    const char* const end = text.data() + last + 1;
    const auto [stop, error] = std::from_chars(text.data() + first, end, value);
    return error == std::errc() && stop == end && std::isfinite(value) ? std::optional(value) : std::nullopt;
}

} // namespace viewer
