// SPDX-License-Identifier: MIT
// The files of a ZIP archive that is in memory, one after the other.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace batch {

struct ZipEntry {
    std::string name;
    std::string bytes;
    std::string problem; // a sentence: why there are no bytes
};

// What an archive may unpack to, whatever it claims; beyond, the rest is left out and said so.
constexpr std::size_t maxUnpackedBytes = std::size_t{1} << 30;

// Calls take for each file in the archive. A file of more than `most` bytes is a problem and not unpacked.
// Throws std::runtime_error with a clause when there is no archive.
void forEachZipEntry(std::string_view archive, std::size_t most,
                     const std::function<void(const ZipEntry&)>& take);

} // namespace batch
