// SPDX-License-Identifier: MIT
// Pictures as TIFF files that tell their scale. Pure.
#pragma once

#include "widgets/picture/Picture.h"

#include <cstddef>
#include <filesystem>
#include <vector>

namespace viewer {

// 8-bit red, green and blue, LZW. With a scale the resolution counts in pixels per micron, and the
// description names the unit as ImageJ does. micronsPerPixel: 0 when it is not known. Throws
// picture::PictureError.
std::vector<std::byte> encodeTiff(const picture::Picture& picture, double micronsPerPixel);

// Throws picture::PictureError; then a file that was there before is unchanged.
void writeTiffPicture(const picture::Picture& picture, double micronsPerPixel,
                      const std::filesystem::path& path);

} // namespace viewer
