// SPDX-License-Identifier: MIT
// One open file, read at offsets. Never mapped: a mapping of a file that another program truncates raises
// SIGBUS. Reads of several threads at once are fine.
#pragma once

#include "platform/base/FileStamp.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>

namespace image {

using base::FileStamp;

class InputFile {
public:
    // Throws FormatError when the path is not a readable regular file.
    explicit InputFile(const std::filesystem::path& path);
    ~InputFile();
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    FileStamp stamp() const { return base::stampOf(descriptor); }
    std::uint64_t size() const { return stamp().size; }

    // Returns how many bytes were read: fewer than asked for at the end of the file.
    std::size_t readSome(std::uint64_t offset, std::span<std::byte> out) const;
    // Throws FormatError when the file ends before.
    void read(std::uint64_t offset, std::span<std::byte> out) const;

private:
    int descriptor = -1;
};

} // namespace image
