// SPDX-License-Identifier: MIT
#include "platform/image/InputFile.h"

#include "platform/image/Error.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <limits>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace image {

InputFile::InputFile(const std::filesystem::path& path)
{
    // O_NONBLOCK: opening a named pipe must not wait for a writer.
    descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0)
        throw FormatError(errno == ENOENT ? "there is no such file" : std::strerror(errno));
    struct stat status = {};
    const bool regular = fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
    if (!regular || status.st_size == 0) {
        ::close(descriptor);
        throw FormatError(S_ISDIR(status.st_mode) ? "it is a folder"
                          : regular               ? "the file is empty"
                                                  : "it is not a regular file");
    }
}

InputFile::~InputFile()
{
    ::close(descriptor);
}

std::size_t InputFile::readSome(std::uint64_t offset, std::span<std::byte> out) const
{
    std::size_t done = 0;
    while (done < out.size()) {
        if (offset + done > static_cast<std::uint64_t>(std::numeric_limits<off_t>::max()))
            break;
        const ssize_t got =
            pread(descriptor, out.data() + done, out.size() - done, static_cast<off_t>(offset + done));
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            throw FormatError(std::string("reading failed: ") + std::strerror(errno));
        if (got == 0)
            break;
        done += static_cast<std::size_t>(got);
    }
    return done;
}

void InputFile::read(std::uint64_t offset, std::span<std::byte> out) const
{
    if (readSome(offset, out) != out.size())
        throw FormatError("the file is truncated or points beyond its own end");
}

} // namespace image
