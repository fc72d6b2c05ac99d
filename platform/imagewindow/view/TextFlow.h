// SPDX-License-Identifier: MIT
// Breaks texts into lines that fit, so that nothing is cut in the middle of a number. Pure: the caller says
// how wide a text is.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace viewer {

using Measure = std::function<int(const std::string&)>; // pixels that a text takes

constexpr std::size_t maxNameLength = 24; // characters of a wavelength's name among others

// text, or its beginning and three dots when it is wider than width.
std::string fitted(const std::string& text, int width, const Measure& measure);

// The items one after another, separator between those of a line. An item that is wider than a line is broken
// at its blanks, a word that is wider is cut as by fitted(). What is left over after maxLines lines is
// dropped and three dots say so. No items: no lines.
std::vector<std::string> flow(const std::vector<std::string>& items, const std::string& separator, int width,
                              std::size_t maxLines, const Measure& measure);

// The words of a sentence, for flow() with a blank between them.
std::vector<std::string> wordsOf(const std::string& sentence);

} // namespace viewer
