// SPDX-License-Identifier: MIT
#include "platform/image/FileSet.h"

#include "platform/image/Error.h"

#include <algorithm>

namespace image {

constexpr std::size_t maxOpenFiles = 64;

FileSet::FileSet(std::vector<std::filesystem::path> paths) : names(std::move(paths)), stamps(names.size()) {}

void FileSet::keep(std::size_t index, std::shared_ptr<TiffFile> file)
{
    stamps[index] = file->stamp();
    open.push_front({index, std::move(file)});
    if (open.size() > maxOpenFiles)
        open.pop_back();
}

void FileSet::adopt(const std::filesystem::path& path, std::shared_ptr<TiffFile> file)
{
    const auto found = std::find(names.begin(), names.end(), path);
    const std::lock_guard lock(mutex);
    if (file && found != names.end())
        keep(static_cast<std::size_t>(found - names.begin()), std::move(file));
}

std::shared_ptr<TiffFile> FileSet::file(std::size_t index)
{
    const std::lock_guard lock(mutex);
    const auto found =
        std::find_if(open.begin(), open.end(), [&](const Open& o) { return o.index == index; });
    if (found != open.end()) {
        open.splice(open.begin(), open, found);
        return open.front().file;
    }
    std::shared_ptr<TiffFile> file;
    try {
        file = std::make_shared<TiffFile>(names[index]);
    } catch (const FormatError& error) {
        throw FormatError(names[index].filename().string() + " cannot be read: " + error.what());
    }
    if (stamps[index] != FileStamp{} && stamps[index] != file->stamp())
        throw FormatError(names[index].filename().string() + " has changed since the image was opened");
    keep(index, file);
    return file;
}

} // namespace image
