// SPDX-License-Identifier: MIT
// The ImageFile of TIFF files: reads rectangles of sections block by block.
#pragma once

#include "platform/image/Dataset.h"

#include <filesystem>
#include <memory>
#include <stop_token>

namespace image {

// Opens a TIFF file, or a file of OME metadata with the TIFF files that it names, in the dialect that its
// description tells. Throws FormatError.
std::unique_ptr<ImageFile> openTiffImage(const std::filesystem::path& path);

} // namespace image
