// SPDX-License-Identifier: MIT
// The description and the private tags that ImageJ writes into a TIFF file.
#pragma once

#include "platform/image/Colors.h"
#include "platform/image/TiffStructure.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace image {

struct ImageJMetadata {
    std::int64_t images = 1, channels = 1, slices = 1, frames = 1; // as written; 0 and less are read as 1
    bool grayscale = false;                                        // shown without the channels' colours
    bool signed16 = false;                         // 16-bit values are stored with 32768 added
    std::optional<double> unitMicrons[3];          // microns per unit of x, y and z
    std::optional<double> zSpacing;                // in units of z
    std::optional<double> frameSeconds;            // from a frame to the next
    std::optional<double> min, max;                // display range of a single channel
    std::vector<std::pair<double, double>> ranges; // display range per channel
    std::vector<Rgb> colors;                       // brightest colour of each channel's table
};

// What ImageJ writes for people, in UTF-8.
struct ImageJTexts {
    std::string info;                // lines
    std::vector<std::string> labels; // of the planes
};

bool isImageJ(std::string_view description);

// directory: the offset of the first page, whose tags hold ranges and colour tables.
ImageJTexts readImageJTexts(const TiffStructure& tags, std::uint64_t directory);
ImageJMetadata readImageJ(std::string_view description, const TiffStructure& tags, std::uint64_t directory);

} // namespace image
