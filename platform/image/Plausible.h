// SPDX-License-Identifier: MIT
// The gate through which texts and numbers of a file's metadata come in: nothing behind it meets a text too
// long for a window or a number that a float cannot hold.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace image {

// A name or identifier: at most 255 characters, the last an ellipsis where the file gives more.
std::string plausibleText(std::string_view text);

// A length, position or time, in whatever unit; nothing beyond +-1e15, where sums and products of a float
// would end in infinity.
std::optional<double> plausible(std::optional<double> value);

// A size in microns: positive, and between 1e-12 and 1e12, so that the square of a length across the image
// is neither infinite nor zero as a float.
std::optional<float> plausibleSpacing(std::optional<double> microns);

} // namespace image
