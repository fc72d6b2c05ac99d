// SPDX-License-Identifier: MIT
// File names made from a text: what the programs keep about an image lies in a file whose name is made from
// the image's path.
#pragma once

#include <string>
#include <string_view>

namespace base {

// The text's FNV-1a hash of 64 bits (http://www.isthe.com/chongo/tech/comp/fnv/) as 16 hexadecimal digits.
// Two texts may give the same name, so the file itself has to say which text it belongs to.
std::string hashName(std::string_view text);

} // namespace base
