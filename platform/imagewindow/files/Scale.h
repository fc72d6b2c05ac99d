// SPDX-License-Identifier: MIT
// The scale of an image: how many microns its pixels are apart, from the file or from the user. Pure.
#pragma once

#include "platform/image/ImageFile.h"
#include "platform/protocol/DisplayRecord.h"

#include <optional>
#include <string>

namespace viewer {

// What the user has set.
struct UserScale {
    float x = 1, y = 1;     // microns
    std::optional<float> z; // nothing: as the file says
    friend bool operator==(const UserScale&, const UserScale&) = default;
};

struct Scale {
    bool known = false;  // of x and y; else 1 pixel counts as 1 micron
    bool zKnown = false; // of z; else 1 section counts as 1 micron
    protocol::Spacing spacing{1, 1, 1};
};

Scale scaleOf(const image::ImageInfo& info, const std::optional<UserScale>& user);

// Whether the file leaves something for the user to set.
bool needsScale(const image::ImageInfo& info);

// What the user has typed as a length, or why it is none: one sentence.
struct TypedLength {
    std::optional<float> microns;
    std::string problem;
};

// "0.1075", "107.5 nm", "1 inch": a number and a unit of length, microns when there is none.
TypedLength parseLength(const std::string& text);

// "0.1075 µm", such that parseLength() gives the same microns again.
std::string lengthText(float microns);

} // namespace viewer
