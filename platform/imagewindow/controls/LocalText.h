// SPDX-License-Identifier: MIT
// Text for widgets and standard output in the character set of the user's locale: UTF-8, or else ISO 8859-1,
// which is what the widgets draw in the C locale.
#pragma once

#include "platform/text/MotifText.h"

#include <string>
#include <vector>

namespace viewer {

// utf8 in the locale's character set; what it cannot hold, malformed bytes and control characters become '?'.
std::string localText(const std::string& utf8);

// Whether line feeds break lines. Only in texts of the program's own: a name from a file stays on one line.
enum class LineFeeds { Replaced, Kept };

// What a line of a label shows at most: names in files and properties are as long as their writers like,
// while a request that draws a text has a greatest length, and an X window a greatest width.
constexpr std::size_t maxLineCharacters = 4096; // as long as a path can be

// The compound string of such a text for a label, button or title. Lines above maxLineCharacters are cut.
text::MotifString labelString(const std::string& utf8, LineFeeds lineFeeds = LineFeeds::Replaced);
text::MotifString labelString(const std::vector<std::string>& lines);

} // namespace viewer
