// SPDX-License-Identifier: MIT
#include "platform/imagewindow/files/Scratch.h"

#include "platform/base/UserFolders.h"

#include <algorithm>
#include <bit>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <poll.h>
#include <span>
#include <sys/stat.h>
#include <tiffio.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace viewer {

namespace {

constexpr int waitMilliseconds = 200; // between two looks for the first section
constexpr std::size_t chunkBytes = std::size_t{1} << 20, bytesPerPump = std::size_t{64} << 20;

// What the signal handler removes; empty: nothing.
char fileToRemove[PATH_MAX];

void removeAndEnd(int signal)
{
    if (fileToRemove[0])
        unlink(fileToRemove);
    std::signal(signal, SIG_DFL);
    raise(signal);
}

std::filesystem::path scratchFolder()
{
    const std::filesystem::path cache = base::cacheFolder();
    return (cache.empty() ? std::filesystem::temp_directory_path() / "kelvora" : cache) / "scratch";
}

// A file of a process that was killed stays behind; it carries that process's number.
void removeOrphans(const std::filesystem::path& folder)
{
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
        const long process = std::strtol(entry.path().filename().c_str(), nullptr, 10);
        if (process > 0 && kill(static_cast<pid_t>(process), 0) != 0 && errno == ESRCH)
            std::filesystem::remove(entry.path(), error);
    }
}

void swapBytes(std::vector<std::byte>& values)
{
    for (std::size_t i = 0; i + 1 < values.size(); i += 2)
        std::swap(values[i], values[i + 1]);
}

} // namespace

FileWatch::FileWatch(std::filesystem::path path) : path(std::move(path)), last(base::stampOf(this->path)) {}

bool FileWatch::changed()
{
    const base::FileStamp now = base::stampOf(path);
    return std::exchange(last, now) != now;
}

int topImage(const image::ImageFile& file, int wavelength, int timePoint, int position)
{
    int z = 0;
    while (z < file.info().sizeZ && file.hasSection({z, wavelength, timePoint, position}))
        ++z;
    return z;
}

image::SectionIndex newestSection(const image::ImageFile& file)
{
    const image::ImageInfo& info = file.info();
    for (int t = info.sizeT - 1; t >= 0; --t) {
        int top = 0;
        for (int w = 0; w < info.sizeW; ++w)
            top = std::max(top, topImage(file, w, t, 0));
        if (top > 0)
            return {top - 1, 0, t, 0};
    }
    return {};
}

ScratchInput::ScratchInput()
{
    const auto folder = scratchFolder();
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    removeOrphans(folder);
    file = folder / (std::to_string(getpid()) + ".tif");
    if (file.native().size() >= sizeof fileToRemove)
        throw image::ImageError("The path of the cache directory is too long.");
    // BigTIFF: the stream may bring more than the 4 GB that a plain TIFF can hold.
    out = TIFFOpen(file.c_str(), "w8");
    if (!out)
        throw image::ImageError("Cannot write the sections to " + file.string() + ".");
    std::snprintf(fileToRemove, sizeof fileToRemove, "%s", file.c_str());
    for (int signal : {SIGTERM, SIGINT, SIGHUP})
        std::signal(signal, removeAndEnd);
}

ScratchInput::~ScratchInput()
{
    if (out)
        TIFFClose(out);
    unlink(file.c_str());
    fileToRemove[0] = 0;
}

bool ScratchInput::pump(int waitMilliseconds)
{
    std::vector<std::byte> chunk(chunkBytes);
    for (std::size_t taken = 0; !ended && taken < bytesPerPump;) {
        pollfd input{STDIN_FILENO, POLLIN, 0};
        if (poll(&input, 1, taken == 0 ? waitMilliseconds : 0) <= 0)
            break;
        const ssize_t size = read(STDIN_FILENO, chunk.data(), chunk.size());
        if (size < 0 && errno == EINTR)
            continue;
        if (size <= 0)
            return finish(stream.insideImage() ? "Standard input ended in the middle of a section." : "");
        taken += static_cast<std::size_t>(size);
        try {
            stream.feed(std::span(chunk).first(static_cast<std::size_t>(size)));
            while (auto image = stream.next())
                append(std::move(*image));
        } catch (const StreamError& error) {
            return finish(error.what());
        }
    }
    return !ended;
}

bool ScratchInput::finish(const std::string& sentence)
{
    ended = true;
    reason = sentence;
    return false;
}

// After each call the file is whole: the library writes the page and then links it.
void ScratchInput::append(std::vector<std::byte> image)
{
    const StreamFormat& format = *stream.format();
    if (format.bytesPerValue == 2 && std::endian::native == std::endian::little)
        swapBytes(image);
    TIFFSetField(out, TIFFTAG_IMAGEWIDTH, format.width);
    TIFFSetField(out, TIFFTAG_IMAGELENGTH, format.height);
    TIFFSetField(out, TIFFTAG_BITSPERSAMPLE, 8 * format.bytesPerValue);
    TIFFSetField(out, TIFFTAG_SAMPLESPERPIXEL, format.samples);
    TIFFSetField(out, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(out, TIFFTAG_PHOTOMETRIC, format.samples == 3 ? PHOTOMETRIC_RGB : PHOTOMETRIC_MINISBLACK);
    TIFFSetField(out, TIFFTAG_ROWSPERSTRIP, format.height);
    const bool written =
        TIFFWriteEncodedStrip(out, 0, image.data(), static_cast<tmsize_t>(image.size())) >= 0 &&
        TIFFWriteDirectory(out);
    if (!written)
        throw StreamError("The sections can no longer be written to " + file.string() + ": " +
                          std::strerror(errno) + ".");
    ++count;
}

ImageSource openImage(const std::string& path)
{
    ImageSource source;
    source.file = image::ImageFile::open(path);
    source.path = std::filesystem::absolute(path).lexically_normal();
    source.name = source.path.filename().string();
    return source;
}

namespace {

// False when nothing more will come, so that waiting is in vain.
bool waitForMore(ScratchInput* input, const std::filesystem::path& path)
{
    if (input)
        return input->pump(waitMilliseconds);
    poll(nullptr, 0, waitMilliseconds);
    return access(path.c_str(), R_OK) == 0;
}

} // namespace

ImageSource openGrowing(const std::string& path)
{
    ImageSource source;
    source.growing = true;
    if (path == "-")
        source.input = std::make_unique<ScratchInput>();
    const std::string place = source.input ? source.input->path().string() : path;
    source.path = std::filesystem::absolute(place).lexically_normal();
    source.name = source.input ? "standard input" : source.path.filename().string();
    FileWatch watch(source.path);
    for (bool told = false, more = true;; more = waitForMore(source.input.get(), source.path)) {
        const bool worthTrying = !told || watch.changed() || !more;
        try {
            if (worthTrying && (!source.input || source.input->sections() > 0)) {
                source.file = image::ImageFile::open(source.path);
                return source;
            }
        } catch (const image::ImageError&) {
            if (!more || access(source.path.c_str(), R_OK) != 0)
                throw;
        }
        if (!more)
            throw image::ImageError(source.input->error().empty() ? "Standard input held no section."
                                                                  : source.input->error());
        if (!std::exchange(told, true))
            std::fprintf(stderr, "imagewindow: waiting for the first section of %s.\n", source.name.c_str());
    }
}

} // namespace viewer
