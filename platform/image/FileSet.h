// SPDX-License-Identifier: MIT
// The files of one image, opened when they are first needed. At most maxOpenFiles stay open: a set may have
// thousands of files. May be used by several threads at once.
#pragma once

#include "platform/image/TiffFile.h"

#include <filesystem>
#include <list>
#include <memory>
#include <mutex>
#include <vector>

namespace image {

class FileSet {
public:
    explicit FileSet(std::vector<std::filesystem::path> paths);

    // Takes a file that is open already.
    void adopt(const std::filesystem::path& path, std::shared_ptr<TiffFile> file);

    // Throws FormatError when the file cannot be opened, or was replaced since it was first opened.
    std::shared_ptr<TiffFile> file(std::size_t index);

    const std::vector<std::filesystem::path>& paths() const { return names; }

private:
    struct Open {
        std::size_t index;
        std::shared_ptr<TiffFile> file;
    };

    void keep(std::size_t index, std::shared_ptr<TiffFile> file);

    std::vector<std::filesystem::path> names;
    std::mutex mutex;              // guards what follows
    std::list<Open> open;          // most recently used first
    std::vector<FileStamp> stamps; // at the first opening; all zero before
};

} // namespace image
