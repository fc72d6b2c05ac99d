// SPDX-License-Identifier: MIT
// The descriptions that go with the pixels: OME-XML (schema 2016-06) and ImageJ's text and binary metadata.
#pragma once

#include "samples/FileSet.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace sample {

// The OME-XML of the whole set; `own` is the file that will carry it.
std::string omeXml(const Options& options, const FileSet& set, const OutputFile& own);
// What a file carries whose metadata is in the companion.
std::string binaryOnlyXml(const FileSet& set, const OutputFile& own);

// ImageJ's description text.
std::string imageJDescription(const Options& options);
// ImageJ's tags 50838 (byte counts of the parts) and 50839 (the parts: header, display ranges, lookup
// tables), multi-byte values in the byte order of the file.
struct ImageJBinary {
    std::vector<std::uint32_t> counts;
    std::vector<std::byte> data;
};
ImageJBinary imageJBinary(const Options& options);

} // namespace sample
