// SPDX-License-Identifier: MIT
// Names of files that stand for a text: what is kept about an image is found by the image's path.
#pragma once

#include <string>
#include <string_view>

namespace base {

// The text's FNV-1a hash of 64 bits (http://www.isthe.com/chongo/tech/comp/fnv/) as 16 hexadecimal digits.
// Two texts may have the same: an entry has to tell whom it is about.
std::string hashName(std::string_view text);

} // namespace base
