// SPDX-License-Identifier: MIT
// The other images in the folder of an image, in the order in which people read names: "z2" before "z10". No
// X.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace viewer {

// Whether a comes before b: runs of digits count as numbers, the case of letters only where all else is
// equal.
bool naturallyBefore(const std::string& a, const std::string& b);

// The regular files after the image (step 1) or before it (step -1), the nearest first. Of any kind: opening
// tells which are images.
std::vector<std::filesystem::path> neighboursOf(const std::filesystem::path& image, int step);

} // namespace viewer
