// SPDX-License-Identifier: MIT
// Which of the seven display colours a wavelength gets.
#pragma once

#include "platform/base/DisplayColors.h"
#include "platform/image/ImageFile.h"

#include <optional>
#include <span>
#include <string_view>

namespace image {

using base::Rgb;

// The display colour with the same hue: colours are compared at full brightness. Nothing for black.
std::optional<int> nearestColor(Rgb color);

// Colour of light of this wavelength as microscopists show it; nothing for 0.
// docs/image-formats.md tells the bands.
std::optional<int> colorOfNanometres(double nanometres);

// Colour of a dye that the channel's name tells ("DAPI", "AF647", "mCherry"); nothing when it tells none.
std::optional<int> colorOfDye(std::string_view channelName);

// What the file says about the colour of one wavelength.
struct ColorHint {
    std::optional<Rgb> color;       // the file's own
    std::optional<double> emission; // nm
    std::optional<double> excitation;
};

// Sets colorIndex, red, green and blue of every wavelength: from the file's own colour, else from emission,
// else from excitation, else from the dye in the name; the others in turn get colours that no other has.
void assignColors(std::span<Wavelength> wavelengths, std::span<const ColorHint> hints);

} // namespace image
