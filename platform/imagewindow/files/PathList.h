// SPDX-License-Identifier: MIT
// Paths of files as other programs hand them over: dropped, or pasted as text. Pure; the text is untrusted.
#pragma once

#include <string>
#include <vector>

namespace viewer {

constexpr std::size_t maxPaths = 20; // that are taken at a time

struct PathList {
    std::vector<std::string> paths; // absolute
    std::string problem;            // what was not taken, a sentence; empty when all was
};

// One path or file:// URI a line; lines that begin with # do not count. host: the name of this computer;
// home: the user's folder, for "~/".
PathList pathsOf(const std::string& text, const std::string& host, const std::string& home);

// The same with this computer and this user.
PathList pathsOf(const std::string& text);

} // namespace viewer
