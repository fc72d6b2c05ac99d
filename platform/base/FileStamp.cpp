// SPDX-License-Identifier: MIT
#include "platform/base/FileStamp.h"

#include <sys/stat.h>

namespace base {
namespace {

FileStamp stampFrom(const struct stat& status)
{
    constexpr std::int64_t nanosecondsPerSecond = 1'000'000'000;
    return {status.st_dev, status.st_ino, static_cast<std::uint64_t>(status.st_size),
            status.st_mtim.tv_sec * nanosecondsPerSecond + status.st_mtim.tv_nsec};
}

} // namespace

FileStamp stampOf(const std::filesystem::path& path)
{
    struct stat status = {};
    return stat(path.c_str(), &status) == 0 ? stampFrom(status) : FileStamp{};
}

FileStamp stampOf(int descriptor)
{
    struct stat status = {};
    return fstat(descriptor, &status) == 0 ? stampFrom(status) : FileStamp{};
}

} // namespace base
