// SPDX-License-Identifier: MIT
// Files that are there as a whole or not at all.
#pragma once

#include <cstddef>
#include <filesystem>
#include <span>
#include <string>

namespace picture {

// Writes to a temporary name beside the file and renames it; a symbolic link stays one and what it names is
// replaced. Empty on success, else the sentence; then what was there is unchanged.
std::string replaceFile(const std::filesystem::path& path, std::span<const std::byte> bytes);

} // namespace picture
