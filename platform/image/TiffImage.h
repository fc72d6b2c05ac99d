// SPDX-License-Identifier: MIT
// The ImageFile of TIFF files: reads rectangles of sections block by block.
#pragma once

#include "platform/image/Dataset.h"

#include <filesystem>
#include <memory>
#include <stop_token>

namespace image {

// Opens the file as what it is; throws FormatError.
std::unique_ptr<ImageFile> openTiffImage(const std::filesystem::path& path);

} // namespace image
