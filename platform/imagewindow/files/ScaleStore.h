// SPDX-License-Identifier: MIT
// The scales that the user has set, as notes of images (ImageNotes.h) in the folder scales.
#pragma once

#include "platform/imagewindow/files/Scale.h"

#include <filesystem>
#include <optional>
#include <string>

namespace viewer {

struct KeptScale {
    UserScale scale;
    bool current = false; // set for the file as it is now: same size and time
};

// Nothing when none is kept for that path, or what is there is no entry.
std::optional<KeptScale> loadScale(const std::filesystem::path& image);

// Keeps the scale for the file as it is now; forgetScale() removes what is kept for the path. Both return a
// sentence when it could not be done, else an empty text.
std::string keepScale(const std::filesystem::path& image, const UserScale& scale);
std::string forgetScale(const std::filesystem::path& image);

} // namespace viewer
