// SPDX-License-Identifier: MIT
// The entrance for image files: a table of formats, each known by a file's first bytes or by what is in a
// folder; names do not count. TIFF has dialects of its own, which are rows in TiffImage.cpp.
#pragma once

#include "platform/image/ImageFile.h"

#include <array>
#include <filesystem>
#include <memory>
#include <string_view>

namespace image {

struct Format {
    const char* name;                                   // for the user, with its article: "a TIFF file"
    std::array<std::string_view, 4> beginnings;         // a file of the format begins with one of them
    bool (*holds)(const std::filesystem::path& folder); // for formats that are folders, else null
    // Opens a file or folder that was recognised; throws FormatError. Null: the format is not read.
    std::unique_ptr<ImageFile> (*open)(const std::filesystem::path& path);
    const char* remedy; // what the user can do about a format that is not read
};

// Opens the image with the first format that recognises it. Throws FormatError, also when there is none.
std::unique_ptr<ImageFile> openByFormat(const std::filesystem::path& path);

// Whether there is a format that recognises the file and reads it. Looks at the first bytes alone.
bool mayBeImage(const std::filesystem::path& path);

// The beginnings of XML: without and with a byte order mark.
inline constexpr std::array<std::string_view, 4> xmlBeginnings = {"<", "\xef\xbb\xbf<"};

// Whether the file begins with one of them. Throws FormatError when it cannot be read.
bool beginsWith(const std::filesystem::path& file, const std::array<std::string_view, 4>& beginnings);

} // namespace image
