// SPDX-License-Identifier: MIT
// Text on its way to the screen. The callers' strings are ISO 8859-1 or UTF-8 (often a bit of both: a micro
// sign as one byte beside a file name in UTF-8), Motif wants the encoding of the locale. No X here.
#pragma once

#include <string>
#include <string_view>

namespace wmenh {

// text in the encoding of the locale. Well-formed UTF-8 sequences are taken as such, any other byte above
// 0x7F as ISO 8859-1; a sequence cut short at the end of a text that has whole ones is left out. Control
// characters other than line feed and tab become spaces. Where the locale is not UTF-8 the result is ISO
// 8859-1, with '?' for what that lacks.
std::string localeText(std::string_view text, bool utf8);
std::string localeText(std::string_view text);

// Breaks lines longer than columns characters at spaces, words longer than that anywhere. text is in UTF-8 or
// in an encoding of one byte per character.
std::string wrapText(std::string_view text, int columns);

// Makes one line of each paragraph, so that it can be wrapped to a window's width: a line feed stays before
// and after empty lines and before lines that start with a space.
std::string joinLines(std::string_view text);

// Lines of text: one more than its line feeds.
int lineCount(std::string_view text);

} // namespace wmenh
