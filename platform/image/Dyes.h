// SPDX-License-Identifier: MIT
// Fluorescent dyes and proteins by the names that people give to channels.
#pragma once

#include <optional>
#include <string_view>

namespace image {

struct Dye {
    std::string_view name; // lower case letters and digits; see dyeOf
    float emission;        // maximum in nm, 0: not one
    int color;             // as microscopists show it, index as in Wavelength::colorIndex; 0: by emission
};

// The dye that a channel's name tells ("DAPI", "EGFP", "Alexa Fluor 488", "AF-647", "A568"), null when it
// tells none. Blanks, dashes and the case of letters do not count.
const Dye* dyeOf(std::string_view channelName);

// Its emission maximum in nm.
std::optional<double> dyeEmission(std::string_view channelName);

} // namespace image
