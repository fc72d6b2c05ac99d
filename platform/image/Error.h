// SPDX-License-Identifier: MIT
// What the readers throw among themselves: what() is a clause without the file's name ("the file is
// truncated"); ImageFile::open and the read functions make the user's sentence out of it.
#pragma once

#include <stdexcept>

namespace image {

struct FormatError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

} // namespace image
