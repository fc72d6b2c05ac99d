// SPDX-License-Identifier: MIT
// Writes a file as a whole or not at all.
#pragma once

#include <cstddef>
#include <filesystem>
#include <span>
#include <string>

namespace picture {

// Writes to a temporary name beside the file and renames it; a symbolic link stays one and what it names is
// replaced. Returns an empty text on success, else a sentence for the user; the old file is
// unchanged then.
std::string replaceFile(const std::filesystem::path& path, std::span<const std::byte> bytes);

} // namespace picture
