// SPDX-License-Identifier: MIT
// Everything that a file tells about its image, as rows for the user to read: all elements and attributes of
// OME-XML, all that ImageJ writes, else the description, and the tags of the first page. Read from the file
// when it is asked for, for opening an image keeps none of it.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace image {

struct MetadataRow {
    int parent = -1; // of the same tree, before this row; -1: topmost
    std::string name, value;
};
using MetadataTree = std::vector<MetadataRow>;

// What a tree has at most: a further row tells that there is more. Rows that are deeper stand under the last
// depth, and longer values end with "...".
constexpr std::size_t maxMetadataRows = 50000, maxMetadataDepth = 40, maxMetadataValue = 4096; // bytes

// path: of an image file. Throws ImageError with a sentence.
MetadataTree readMetadata(const std::filesystem::path& path);

} // namespace image
