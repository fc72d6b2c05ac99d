// SPDX-License-Identifier: MIT
// Units of length and time as image metadata spell them.
#pragma once

#include <optional>
#include <string_view>

namespace image {

// Microns per unit of length; nothing for a unit that is no length ("pixel", "reference frame") or unknown.
// Knows every length unit of OME-XML and the spellings that ImageJ writes ("um", "micron", "\u00B5m",
// "inch").
std::optional<double> micronsPer(std::string_view unit);

// Seconds per unit of time; nothing when unknown. Knows every time unit of OME-XML.
std::optional<double> secondsPer(std::string_view unit);

} // namespace image
