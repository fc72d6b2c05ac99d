// SPDX-License-Identifier: MIT
// What an image window shows, as the viewer publishes it in the property _IW_DISPLAY of its canvas (type
// _IW_DISPLAY, format 8, version first) and clients read it. No X here: encode and decode are pure.
#pragma once

#include "platform/protocol/Geometry.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace protocol {

constexpr int maxWindowNumber = 9999;

struct WavelengthDisplay {
    bool displayed = false;
    int colorIndex = 0;               // of base::displayColors
    bool rangeKnown = false;          // a section of the wavelength has been scanned
    float rangeMin = 0, rangeMax = 0; // over the sections scanned so far
    int topImage = 0; // scratch windows: number of z sections of this wavelength that have arrived
    friend bool operator==(const WavelengthDisplay&, const WavelengthDisplay&) = default;
};

using Spacing = std::array<float, 3>; // of pixels in x, y and z, microns

struct DisplayRecord {
    int windowNumber = 0;
    std::string path;               // absolute path of the image file
    int z = 0, w = 0, t = 0, p = 0; // displayed section, 0-based; of the first panel in a multi-panel window
    int scratchSize = 0;            // sections a scratch window holds; 0: not a scratch window
    int fileVersion = 0;            // counts how often the viewer has opened the file anew
    std::optional<Spacing> spacing; // set by the user; nothing: as the file says
    Geometry geometry;
    std::vector<WavelengthDisplay> wavelengths; // one per wavelength of the image
    friend bool operator==(const DisplayRecord&, const DisplayRecord&) = default;
};

// A range that is not finite or reversed is written as unknown.
std::vector<std::byte> encodeDisplay(const DisplayRecord& record);

// Nothing when the bytes are not a whole record of this version with every value in range.
std::optional<DisplayRecord> decodeDisplay(std::span<const std::byte> bytes);

} // namespace protocol
