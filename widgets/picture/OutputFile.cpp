// SPDX-License-Identifier: MIT
#include "widgets/picture/OutputFile.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace picture {

namespace fs = std::filesystem;

namespace {

bool writeAll(int file, std::span<const std::byte> bytes)
{
    while (!bytes.empty()) {
        const ssize_t count = ::write(file, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
    return true;
}

// A file that is replaced keeps its mode; a new one gets what the user's mask leaves.
mode_t modeFor(const fs::path& target)
{
    constexpr mode_t permissions = 07777, newFile = 0666;
    struct stat status;
    if (stat(target.c_str(), &status) == 0)
        return status.st_mode & permissions;
    const mode_t mask = umask(0);
    umask(mask);
    return newFile & ~mask;
}

std::string failure(const fs::path& path)
{
    return path.string() + " cannot be written: " + std::strerror(errno) + ".";
}

} // namespace

std::string replaceFile(const fs::path& path, std::span<const std::byte> bytes)
{
    std::error_code unresolved;
    const fs::path resolved = fs::canonical(path, unresolved);
    const fs::path target = unresolved ? path : resolved;
    if (fs::exists(target) && !fs::is_regular_file(target))
        return path.string() + " is not a regular file.";
    std::string temporary = target.string() + ".XXXXXX";
    const int file = mkostemp(temporary.data(), O_CLOEXEC);
    if (file < 0)
        return failure(path);
    bool done = writeAll(file, bytes) && fchmod(file, modeFor(target)) == 0 && fsync(file) == 0;
    done = close(file) == 0 && done;
    if (done && std::rename(temporary.c_str(), target.c_str()) == 0)
        return {};
    std::string problem = failure(path);
    unlink(temporary.c_str());
    return problem;
}

} // namespace picture
