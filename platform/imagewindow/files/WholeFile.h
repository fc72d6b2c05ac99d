// SPDX-License-Identifier: MIT
// Small text files of the program's own, which a reader finds as they were or as they are, never half
// written.
#pragma once

#include <filesystem>
#include <string>

namespace viewer {

// Makes the folders above the file. 0, or an error number; the old file is unchanged then.
int writeWhole(const std::filesystem::path& path, const std::string& text);

} // namespace viewer
