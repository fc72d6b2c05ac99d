// SPDX-License-Identifier: MIT
// Lines of texts on their way to the screen. No X here.
#pragma once

#include <string>
#include <string_view>

namespace wmenh {

// Breaks lines longer than columns characters at spaces, words longer than that anywhere. text is in UTF-8 or
// in an encoding of one byte per character.
std::string wrapText(std::string_view text, int columns);

// Makes one line of each paragraph, so that it can be wrapped to a window's width: a line feed stays before
// and after empty lines and before lines that start with a space.
std::string joinLines(std::string_view text);

// Lines of text: one more than its line feeds.
int lineCount(std::string_view text);

} // namespace wmenh
