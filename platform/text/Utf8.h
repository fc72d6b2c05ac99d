// SPDX-License-Identifier: MIT
// Characters of UTF-8 text that may be anything, one at a time.
#pragma once

#include <string>
#include <string_view>

namespace text {

struct Character {
    char32_t code = 0; // the byte itself where no well-formed sequence starts
    size_t length = 1; // bytes
    bool wide = false; // came as a sequence of several bytes
    bool cut = false;  // the text ended inside a sequence; length is what is left of it
};

// The character at start, which must be inside the text.
Character decodeUtf8(std::string_view text, size_t start);

void appendUtf8(std::string& out, char32_t code);

// The text, or its first characters and three dots, maxCharacters (3 or more) in all. Cuts between
// characters; a byte that belongs to no sequence counts as one.
std::string shortened(std::string_view text, size_t maxCharacters);

// The beginning of the text that fits into maxBytes bytes, in whole characters.
std::string_view cutToBytes(std::string_view text, size_t maxBytes);

} // namespace text
