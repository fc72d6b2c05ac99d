// SPDX-License-Identifier: MIT
#include "batch/results/StoredFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>
#include <vector>

namespace batch {

namespace {

RunError writeError(const std::filesystem::path& path)
{
    return RunError(path.string() + " cannot be written: " + std::strerror(errno) + ".");
}

} // namespace

StoredFile::StoredFile(const std::filesystem::path& path, bool anew) : path(path)
{
    constexpr mode_t newFile = 0666;
    descriptor =
        open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | (anew ? O_TRUNC : 0), newFile);
    struct stat status;
    if (descriptor < 0 || fstat(descriptor, &status) != 0)
        throw writeError(path);
    bytesWritten = static_cast<std::uint64_t>(status.st_size);
}

StoredFile::~StoredFile()
{
    if (descriptor >= 0)
        close(descriptor);
}

StoredFile::StoredFile(StoredFile&& other) noexcept
    : path(std::move(other.path)), descriptor(std::exchange(other.descriptor, -1)),
      bytesWritten(other.bytesWritten)
{
}

StoredFile& StoredFile::operator=(StoredFile&& other) noexcept
{
    std::swap(path, other.path);
    std::swap(descriptor, other.descriptor);
    std::swap(bytesWritten, other.bytesWritten);
    return *this;
}

void StoredFile::append(std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t count = write(descriptor, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            throw writeError(path);
        bytesWritten += static_cast<std::uint64_t>(count);
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
}

bool StoredFile::lock()
{
    return flock(descriptor, LOCK_EX | LOCK_NB) == 0;
}

StagedFile::StagedFile(const std::filesystem::path& path) : target(path), temporary(path.string() + ".XXXXXX")
{
    const int descriptor = mkostemp(temporary.data(), O_CLOEXEC);
    if (descriptor < 0)
        throw writeError(target);
    file.reset(fdopen(descriptor, "wb"));
}

StagedFile::~StagedFile()
{
    if (!temporary.empty())
        unlink(temporary.c_str());
}

void StagedFile::copy(int descriptor, std::uint64_t begin, std::uint64_t end)
{
    std::vector<char> buffer(static_cast<std::size_t>(std::min<std::uint64_t>(end - begin, 1u << 20)));
    while (begin < end) {
        const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(end - begin, buffer.size()));
        const ssize_t count = pread(descriptor, buffer.data(), wanted, static_cast<off_t>(begin));
        if (count <= 0)
            throw RunError("What was measured for " + target.string() + " has been cut off.");
        if (std::fwrite(buffer.data(), 1, static_cast<std::size_t>(count), file.get()) !=
            static_cast<std::size_t>(count))
            throw writeError(target);
        begin += static_cast<std::uint64_t>(count);
    }
}

void StagedFile::commit()
{
    const mode_t mask = umask(0);
    umask(mask);
    constexpr mode_t newFile = 0666;
    FILE* const open = file.get();
    const bool whole = std::ferror(open) == 0 && std::fflush(open) == 0 &&
                       fchmod(fileno(open), newFile & ~mask) == 0 && fsync(fileno(open)) == 0;
    if (!whole || std::rename(temporary.c_str(), target.c_str()) != 0)
        throw writeError(target);
    temporary.clear();
}

} // namespace batch
