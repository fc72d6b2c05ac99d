// SPDX-License-Identifier: MIT
// Tells two states of a file apart: another file under the same name, another size, another time.
#pragma once

#include <cstdint>
#include <filesystem>

namespace base {

struct FileStamp {
    std::uint64_t device = 0, inode = 0, size = 0;
    std::int64_t modified = 0; // nanoseconds since 1970
    friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

// Of a path or an open file as it is now; all zero when the system does not say. One system call.
FileStamp stampOf(const std::filesystem::path& path);
FileStamp stampOf(int descriptor);

} // namespace base
