// SPDX-License-Identifier: MIT
// Ranges of wavelengths kept between runs, one small file per image in the user's cache directory.
#pragma once

#include "platform/base/FileStamp.h"
#include "platform/image/RangeScan.h"

#include <optional>
#include <string>
#include <vector>

namespace image {

// Names the image's files by path, size and modification time: the opened one in the given state, the others
// as they are now.
std::string rangeIdentity(const ImageFile& image, const base::FileStamp& opened);

// The ranges that were kept for this identity; nothing when there are none, or not `count` of them.
std::optional<std::vector<ValueRange>> loadRanges(const std::string& identity, std::size_t count);

// Keeps the ranges. A cache directory that cannot be written is no error.
void storeRanges(const std::string& identity, const std::vector<ValueRange>& ranges);

} // namespace image
