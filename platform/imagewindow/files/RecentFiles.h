// SPDX-License-Identifier: MIT
// The images that were opened last, one path a line in the file recent of the user's data folder. Read anew
// at each call, so that several programs at a time lose little of each other's. No X.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace viewer {

constexpr std::size_t maxRecent = 10;

// The newest first, as far as they are there; at most maxRecent.
std::vector<std::filesystem::path> recentFiles();

// path: absolute. A failure to write is not reported, as the list is a mere convenience.
void noteRecent(const std::filesystem::path& path);

// A path for a menu or list: from "~" on in the user's folder, its beginning left out where it is long.
std::string shownPath(const std::filesystem::path& path);

} // namespace viewer
