// SPDX-License-Identifier: MIT
// The channels that makesample can write, in their order: dyes, filters and how they are shown. One table for
// the image and for its metadata.
#pragma once

#include "samples/Cells.h"

#include <array>
#include <cstdint>

namespace sample {

struct Channel {
    const char* name;
    const char* fluor;
    Stain stain;
    int emission, excitation; // nanometres; 0 for transmitted light
    std::uint32_t color;      // 0xRRGGBB
    double exposureSeconds;
    double bleaching;        // fraction lost per time point
    double autofluorescence; // photons per micron of cell height
    double background;       // photons per pixel everywhere
};

constexpr int maxChannels = 8;

extern const std::array<Channel, maxChannels> channelTable;

// The optics and the camera, the same for all channels.
constexpr double numericalAperture = 1.4;
constexpr double sectionMicrons = 0.5;  // z distance of sections
constexpr double cameraOffset = 100;    // counts without light
constexpr double cameraReadNoise = 1.6; // electrons
constexpr double countsPerElectron = 1;

} // namespace sample
