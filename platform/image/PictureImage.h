// SPDX-License-Identifier: MIT
// The ImageFile of PNG, JPEG and GIF pictures: one section, grey as one wavelength, colour as red, green and
// blue. Such a file is one compressed stream, so it is decoded as a whole when it is opened.
#pragma once

#include "platform/image/ImageFile.h"

#include <filesystem>
#include <memory>

namespace image {

// Throw FormatError.
std::unique_ptr<ImageFile> openPng(const std::filesystem::path& path);
std::unique_ptr<ImageFile> openJpeg(const std::filesystem::path& path);
std::unique_ptr<ImageFile> openGif(const std::filesystem::path& path);

} // namespace image
