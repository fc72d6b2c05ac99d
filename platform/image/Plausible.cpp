// SPDX-License-Identifier: MIT
#include "platform/image/Plausible.h"

#include "platform/text/Utf8.h"

namespace image {

std::string plausibleText(std::string_view text)
{
    constexpr std::size_t maxCharacters = 255;
    return text::shortened(text, maxCharacters);
}

std::optional<double> plausible(std::optional<double> value)
{
    constexpr double limit = 1e15;
    return value && *value >= -limit && *value <= limit ? value : std::nullopt;
}

std::optional<float> plausibleSpacing(std::optional<double> microns)
{
    constexpr double least = 1e-12, most = 1e12;
    if (!microns || !(*microns >= least && *microns <= most))
        return std::nullopt;
    return static_cast<float>(*microns);
}

} // namespace image
