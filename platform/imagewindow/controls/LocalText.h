// SPDX-License-Identifier: MIT
// Texts of the viewer's labels, made of UTF-8 that may come from files.
#pragma once

#include "platform/text/MotifText.h"

#include <string>
#include <vector>

namespace viewer {

// Whether line feeds break lines. Only in texts of the program's own: a name from a file stays on one line.
enum class LineFeeds { Replaced, Kept };

// What a line of a label shows at most: names in files and properties are as long as their writers like,
// while a request that draws a text has a greatest length, and an X window a greatest width.
constexpr std::size_t maxLineCharacters = 4096; // as long as a path can be

// The compound string of such a text for a label, button or title. Lines above maxLineCharacters are cut.
text::MotifString labelString(const std::string& utf8, LineFeeds lineFeeds = LineFeeds::Replaced);
text::MotifString labelString(const std::vector<std::string>& lines);

} // namespace viewer
