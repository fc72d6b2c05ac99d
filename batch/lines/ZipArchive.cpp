// SPDX-License-Identifier: MIT
#include "batch/lines/ZipArchive.h"

#include <minizip/unzip.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <stdexcept>

namespace batch {

namespace {

// The archive as a file that minizip reads.
struct MemoryFile {
    std::string_view bytes;
    std::size_t at = 0;

    static MemoryFile& of(voidpf stream) { return *static_cast<MemoryFile*>(stream); }
};

voidpf openFile(voidpf bytes, const void*, int)
{
    return bytes;
}

uLong readFile(voidpf, voidpf stream, void* to, uLong wanted)
{
    MemoryFile& file = MemoryFile::of(stream);
    const std::size_t count = std::min<std::size_t>(wanted, file.bytes.size() - file.at);
    std::memcpy(to, file.bytes.data() + file.at, count);
    file.at += count;
    return count;
}

uLong writeFile(voidpf, voidpf, const void*, uLong)
{
    return 0;
}

ZPOS64_T tellFile(voidpf, voidpf stream)
{
    return MemoryFile::of(stream).at;
}

long seekFile(voidpf, voidpf stream, ZPOS64_T offset, int origin)
{
    MemoryFile& file = MemoryFile::of(stream);
    const std::size_t from = origin == SEEK_CUR ? file.at : origin == SEEK_END ? file.bytes.size() : 0;
    const std::size_t to = from + offset;
    if (to > file.bytes.size())
        return -1;
    file.at = to;
    return 0;
}

int closeFile(voidpf, voidpf)
{
    return 0;
}

struct Close {
    void operator()(void* archive) const { unzClose(archive); }
};
using Archive = std::unique_ptr<void, Close>;

Archive openArchive(MemoryFile& file)
{
    zlib_filefunc64_def calls{openFile, readFile, writeFile, tellFile, seekFile, closeFile, closeFile, &file};
    return Archive(unzOpen2_64("", &calls));
}

// Unpacks the present file; at most `most` bytes, whatever its header says.
void unpack(unzFile archive, std::size_t most, ZipEntry& entry)
{
    constexpr std::size_t atOnce = 1u << 16;
    if (unzOpenCurrentFile(archive) != UNZ_OK) {
        entry.problem = "It cannot be unpacked.";
        return;
    }
    int count = 1;
    while (count > 0 && entry.bytes.size() <= most) {
        const std::size_t had = entry.bytes.size();
        entry.bytes.resize(had + atOnce);
        count = unzReadCurrentFile(archive, entry.bytes.data() + had, atOnce);
        entry.bytes.resize(had + static_cast<std::size_t>(std::max(count, 0)));
    }
    const bool tooLarge = entry.bytes.size() > most;
    const bool damaged = unzCloseCurrentFile(archive) != UNZ_OK || count < 0;
    if (tooLarge)
        entry.problem = "It is larger than any selection.";
    else if (damaged)
        entry.problem = "It is damaged in the archive.";
}

std::string nameOf(unzFile archive)
{
    char name[1024] = "";
    unz_file_info64 info;
    if (unzGetCurrentFileInfo64(archive, &info, name, sizeof name - 1, nullptr, 0, nullptr, 0) != UNZ_OK)
        return "?";
    return name;
}

} // namespace

void forEachZipEntry(std::string_view bytes, std::size_t most,
                     const std::function<void(const ZipEntry&)>& take)
{
    MemoryFile file{bytes};
    const Archive archive = openArchive(file);
    if (!archive)
        throw std::runtime_error("is a damaged archive");
    std::size_t total = 0;
    for (int state = unzGoToFirstFile(archive.get()); state == UNZ_OK;
         state = unzGoToNextFile(archive.get())) {
        ZipEntry entry{nameOf(archive.get()), {}, {}};
        if (total > maxUnpackedBytes) {
            take({entry.name,
                  {},
                  "The archive unpacks to more than any set of selections; the rest is left out."});
            return;
        }
        unpack(archive.get(), most, entry);
        total += entry.bytes.size();
        take(entry);
    }
}

} // namespace batch
