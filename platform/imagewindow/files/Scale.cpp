// SPDX-License-Identifier: MIT
#include "platform/imagewindow/files/Scale.h"

#include "platform/image/Plausible.h"
#include "platform/image/Units.h"
#include "platform/text/Utf8.h"

#include <charconv>

namespace viewer {

namespace {

constexpr std::size_t maxQuoted = 40; // characters of what the user has typed

std::string trimmed(const std::string& text)
{
    const auto first = text.find_first_not_of(" \t");
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(" \t") + 1 - first);
}

} // namespace

Scale scaleOf(const image::ImageInfo& info, const std::optional<UserScale>& user)
{
    Scale scale{info.calibrated, info.zCalibrated, {info.spacing[0], info.spacing[1], info.spacing[2]}};
    if (!user)
        return scale;
    scale.known = true;
    scale.zKnown = scale.zKnown || user->z;
    scale.spacing = {user->x, user->y, user->z.value_or(scale.spacing[2])};
    return scale;
}

bool needsScale(const image::ImageInfo& info)
{
    return !info.calibrated || (!info.zCalibrated && info.sizeZ > 1);
}

TypedLength parseLength(const std::string& typed)
{
    const std::string text = trimmed(typed);
    const std::string quoted = "\"" + text::shortened(text, maxQuoted) + "\"";
    double number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{})
        return {{}, quoted + " is no length: give a number, and a unit when it is not µm, as in 107.5 nm."};
    const std::string unit = trimmed(std::string(end, text.data() + text.size()));
    const std::optional<double> perUnit = unit.empty() ? 1.0 : image::micronsPer(unit);
    if (!perUnit)
        return {{},
                "\"" + text::shortened(unit, maxQuoted) +
                    "\" is no unit of length: give nm, µm (or um), mm, inch ..."};
    const std::optional<float> microns = image::plausibleSpacing(number * *perUnit);
    if (!microns)
        return {{},
                quoted + (number > 0 ? " is a length that no image has."
                                     : " is no length: it has to be above 0.")};
    return {microns, {}};
}

std::string lengthText(float microns)
{
    char digits[32];
    const auto result = std::to_chars(digits, digits + sizeof digits, microns);
    return std::string(digits, result.ptr) + " µm";
}

} // namespace viewer
