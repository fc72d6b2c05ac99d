// SPDX-License-Identifier: MIT
#include "platform/imagewindow/paint/TiffPicture.h"

#include "widgets/picture/Codecs.h"
#include "widgets/picture/OutputFile.h"

#include <tiffio.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

namespace viewer {

namespace {

// A file in memory, as libtiff writes and reads it.
struct Memory {
    std::vector<std::byte> bytes;
    std::size_t place = 0;
};

Memory& memoryOf(thandle_t handle)
{
    return *static_cast<Memory*>(handle);
}

tmsize_t readSome(thandle_t handle, void* out, tmsize_t count)
{
    Memory& memory = memoryOf(handle);
    const std::size_t left = memory.bytes.size() - std::min(memory.place, memory.bytes.size());
    const std::size_t taken = std::min(left, static_cast<std::size_t>(count));
    std::copy_n(memory.bytes.begin() + static_cast<std::ptrdiff_t>(memory.place), taken,
                static_cast<std::byte*>(out));
    memory.place += taken;
    return static_cast<tmsize_t>(taken);
}

tmsize_t writeSome(thandle_t handle, void* data, tmsize_t count)
{
    Memory& memory = memoryOf(handle);
    const std::size_t end = memory.place + static_cast<std::size_t>(count);
    if (memory.bytes.size() < end)
        memory.bytes.resize(end);
    std::memcpy(memory.bytes.data() + memory.place, data, static_cast<std::size_t>(count));
    memory.place = end;
    return count;
}

toff_t seek(thandle_t handle, toff_t offset, int from)
{
    Memory& memory = memoryOf(handle);
    const toff_t base = from == SEEK_CUR ? memory.place : from == SEEK_END ? memory.bytes.size() : 0;
    memory.place = static_cast<std::size_t>(base + offset);
    return memory.place;
}

using Tiff = std::unique_ptr<TIFF, decltype(&TIFFClose)>;

Tiff openIn(Memory& memory)
{
    return {TIFFClientOpen(
                "picture", "w", &memory, readSome, writeSome, seek, [](thandle_t) { return 0; },
                [](thandle_t handle) { return static_cast<toff_t>(memoryOf(handle).bytes.size()); }, nullptr,
                nullptr),
            TIFFClose};
}

void setScale(TIFF* tiff, double micronsPerPixel)
{
    const double pixelsPerMicron = 1 / micronsPerPixel;
    TIFFSetField(tiff, TIFFTAG_XRESOLUTION, pixelsPerMicron);
    TIFFSetField(tiff, TIFFTAG_YRESOLUTION, pixelsPerMicron);
    TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_NONE);
    TIFFSetField(tiff, TIFFTAG_IMAGEDESCRIPTION, "ImageJ=1.0\nimages=1\nunit=micron\n");
}

void setFields(TIFF* tiff, const picture::Picture& picture)
{
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, picture.width);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, picture.height);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 3);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_LZW);
    TIFFSetField(tiff, TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL);
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, TIFFDefaultStripSize(tiff, 0));
}

bool writeRows(TIFF* tiff, const picture::Picture& picture)
{
    std::vector<std::uint8_t> rgb = picture::flatten(picture);
    for (int y = 0; y < picture.height; ++y)
        if (TIFFWriteScanline(
                tiff, rgb.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(picture.width) * 3,
                static_cast<std::uint32_t>(y), 0) < 0)
            return false;
    return TIFFFlush(tiff) != 0;
}

} // namespace

std::vector<std::byte> encodeTiff(const picture::Picture& picture, double micronsPerPixel)
{
    Memory memory;
    bool written = false;
    if (const Tiff tiff = openIn(memory)) {
        setFields(tiff.get(), picture);
        if (micronsPerPixel > 0)
            setScale(tiff.get(), micronsPerPixel);
        written = writeRows(tiff.get(), picture);
    }
    if (!written)
        throw picture::PictureError("The picture cannot be made a TIFF.");
    return std::move(memory.bytes);
}

void writeTiffPicture(const picture::Picture& picture, double micronsPerPixel,
                      const std::filesystem::path& path)
{
    if (const std::string problem = picture::replaceFile(path, encodeTiff(picture, micronsPerPixel));
        !problem.empty())
        throw picture::PictureError(problem);
}

} // namespace viewer
