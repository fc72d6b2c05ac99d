// SPDX-License-Identifier: MIT
// Text on its way to the screen: widgets and terminals want the encoding of the locale, which is UTF-8 or is
// taken for ISO 8859-1, with '?' for what that lacks. No X here.
#pragma once

#include <string>
#include <string_view>

namespace text {

// The locale's own encoding, where a function is not told which.
bool localeIsUtf8();

// Of a text that should be UTF-8: a name from a file, a property, a path. Malformed bytes and control
// characters, line feeds too, become '?'.
std::string fromUtf8(std::string_view text, bool utf8 = localeIsUtf8());

// Of a text that is ISO 8859-1 or UTF-8, often a bit of both: a micro sign as one byte beside a file name in
// UTF-8. Well-formed UTF-8 sequences are taken as such, any other byte above 0x7F as ISO 8859-1; a sequence
// cut short at the end of a text that has whole ones is left out. Control characters other than line feed and
// tab become spaces.
std::string fromMixed(std::string_view text, bool utf8 = localeIsUtf8());

} // namespace text
