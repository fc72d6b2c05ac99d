// SPDX-License-Identifier: MIT
// How an image was seen, as a text that is kept for its file: section, wavelengths, colours, contrast,
// panels, zoom, and where the window stood. What is read back is untrusted and fits the image as far as it
// can. No X.
#pragma once

#include "platform/base/Placement.h"
#include "platform/imagewindow/state/Shown.h"

#include <filesystem>
#include <optional>
#include <string>

namespace viewer {

struct Memory {
    std::string view; // lines "name values"
    std::optional<base::Rectangle>
        place; // of the window: corner of its frame, size without it; screen pixels
    friend bool operator==(const Memory&, const Memory&) = default;
};

// Of the view as it is; place is left to the caller.
Memory memoryOf(const Shown& shown);

// Whether a zoom was among what it brought back.
bool recall(const Memory& memory, Shown& shown);

// Of the file as it is now; nothing when nothing is kept for it.
std::optional<Memory> loadMemory(const std::filesystem::path& image);
// A sentence when it could not be done, else an empty text.
std::string keepMemory(const std::filesystem::path& image, const Memory& memory);
std::string forgetMemory(const std::filesystem::path& image);

} // namespace viewer
