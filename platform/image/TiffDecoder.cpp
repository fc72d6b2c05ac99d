// SPDX-License-Identifier: MIT
#include "platform/image/TiffDecoder.h"

#include "platform/image/Error.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <string>
#include <tiffio.h>
#include <vector>

namespace image {

struct TiffDecoder::Handle {
    const InputFile& file;
    // The file's header with the wanted page in place of the first one: libtiff then reads that page's
    // directory and no other.
    std::array<std::byte, 16> header = {};
    std::size_t headerBytes = 8;
    std::uint64_t position = 0;
    std::string error; // first message of the current call
    TIFF* tiff = nullptr;

    explicit Handle(const InputFile& input) : file(input) {}
    ~Handle()
    {
        if (tiff)
            TIFFClose(tiff);
    }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    tmsize_t readAt(std::span<std::byte> out);
    [[noreturn]] void fail(const char* what);
};

tmsize_t TiffDecoder::Handle::readAt(std::span<std::byte> out)
{
    std::size_t got = 0;
    try {
        got = file.readSome(position, out);
    } catch (const FormatError& failure) {
        error = failure.what();
        return -1;
    }
    for (std::size_t i = 0; i < got && position + i < headerBytes; ++i)
        out[i] = header[position + i];
    position += got;
    return static_cast<tmsize_t>(got);
}

void TiffDecoder::Handle::fail(const char* what)
{
    const std::string reason = error.empty() ? what : std::string(what) + " (" + error + ")";
    error.clear();
    throw FormatError(reason);
}

namespace {

int onError(TIFF*, void* user, const char*, const char* format, va_list arguments)
{
    char text[400];
    std::vsnprintf(text, sizeof text, format, arguments);
    auto& error = *static_cast<std::string*>(user);
    if (error.empty())
        error = text;
    while (!error.empty() && (error.back() == '.' || error.back() == '\n'))
        error.pop_back();
    return 1;
}

int onWarning(TIFF*, void*, const char*, const char*, va_list)
{
    return 1;
}

std::array<std::byte, 16> headerFor(bool bigTiff, bool bigEndian, std::uint64_t offset)
{
    std::array<std::byte, 16> header = {};
    const auto put = [&](std::size_t at, std::size_t size, std::uint64_t value) {
        for (std::size_t i = 0; i < size; ++i)
            header[at + (bigEndian ? size - 1 - i : i)] = static_cast<std::byte>(value >> (8 * i));
    };
    header[0] = header[1] = static_cast<std::byte>(bigEndian ? 'M' : 'I');
    put(2, 2, bigTiff ? 43 : 42);
    if (bigTiff) {
        put(4, 2, 8);
        put(8, 8, offset);
    } else {
        put(4, 4, offset);
    }
    return header;
}

} // namespace

namespace {

// libtiff's file functions over a Handle.
template<class Handle> struct Callbacks {
    static Handle& of(thandle_t user) { return *static_cast<Handle*>(user); }
    static tmsize_t read(thandle_t user, void* data, tmsize_t size)
    {
        return of(user).readAt({static_cast<std::byte*>(data), static_cast<std::size_t>(size)});
    }
    static tmsize_t write(thandle_t, void*, tmsize_t) { return -1; }
    static toff_t seek(thandle_t user, toff_t offset, int whence)
    {
        Handle& handle = of(user);
        const toff_t base = whence == SEEK_CUR ? handle.position : whence == SEEK_END ? size(user) : 0;
        return handle.position = base + offset;
    }
    static int close(thandle_t) { return 0; }
    static toff_t size(thandle_t user) { return of(user).file.size(); }
};

} // namespace

bool hasCodec(int compression)
{
    return TIFFIsCODECConfigured(static_cast<std::uint16_t>(compression)) != 0;
}

TiffDecoder::TiffDecoder(const InputFile& file, bool bigTiff, bool bigEndian, const Directory& directory)
    : handle(std::make_unique<Handle>(file)), offset(directory.offset), stripHeight(directory.blockHeight)
{
    if (!hasCodec(directory.compression))
        throw FormatError("compression scheme " + std::to_string(directory.compression) +
                          " is not supported");
    handle->header = headerFor(bigTiff, bigEndian, offset);
    handle->headerBytes = bigTiff ? 16 : 8;
    const std::unique_ptr<TIFFOpenOptions, void (*)(TIFFOpenOptions*)> options(TIFFOpenOptionsAlloc(),
                                                                               TIFFOpenOptionsFree);
    constexpr tmsize_t largestAllocation = tmsize_t{1} << 30;
    TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), largestAllocation);
    TIFFOpenOptionsSetErrorHandlerExtR(options.get(), onError, &handle->error);
    TIFFOpenOptionsSetWarningHandlerExtR(options.get(), onWarning, nullptr);
    using Io = Callbacks<Handle>;
    // m: no mapping; c: strips as they are in the file.
    handle->tiff = TIFFClientOpenExt("image", "rmc", handle.get(), Io::read, Io::write, Io::seek, Io::close,
                                     Io::size, nullptr, nullptr, options.get());
    if (!handle->tiff)
        handle->fail("a page's directory is damaged");
    if (directory.compression == COMPRESSION_JPEG && directory.photometric == PHOTOMETRIC_YCBCR)
        TIFFSetField(handle->tiff, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
    if (directory.photometric == PHOTOMETRIC_LOGL)
        TIFFSetField(handle->tiff, TIFFTAG_SGILOGDATAFMT, SGILOGDATAFMT_FLOAT);
    handle->error.clear();
}

TiffDecoder::~TiffDecoder() = default;

void TiffDecoder::strip(std::uint32_t index, std::span<std::byte> out)
{
    const auto size = static_cast<tmsize_t>(out.size());
    if (TIFFIsTiled(handle->tiff) || TIFFStripSize(handle->tiff) < size)
        throw FormatError("the size of its strips is damaged");
    const tmsize_t got = TIFFReadEncodedStrip(handle->tiff, index, out.data(), size);
    if (got != size)
        handle->fail("its pixel data cannot be decoded");
    handle->error.clear();
}

int TiffDecoder::rowsBefore(int sample, int first) const
{
    const int inStrip = first % stripHeight;
    const bool goesOn = sample == nextSample && nextRow <= first && nextRow >= first - inStrip;
    return goesOn ? first - nextRow : inStrip;
}

void TiffDecoder::rows(int sample, int first, std::size_t rowBytes, std::span<std::byte> out)
{
    std::uint32_t rowsPerStrip = 0;
    TIFFGetFieldDefaulted(handle->tiff, TIFFTAG_ROWSPERSTRIP, &rowsPerStrip);
    if (TIFFIsTiled(handle->tiff) || TIFFScanlineSize(handle->tiff) != static_cast<tmsize_t>(rowBytes) ||
        rowsPerStrip < static_cast<std::uint32_t>(stripHeight))
        throw FormatError("the size of its strips is damaged");
    std::vector<std::byte> skipped(rowBytes);
    const int end = first + static_cast<int>(out.size() / rowBytes);
    int row = first - rowsBefore(sample, first);
    nextRow = -1; // in case of an exception
    for (std::size_t done = 0; row < end; ++row) {
        std::byte* const to = row < first ? skipped.data() : out.data() + done;
        if (TIFFReadScanline(handle->tiff, to, static_cast<std::uint32_t>(row),
                             static_cast<std::uint16_t>(sample)) != 1)
            handle->fail("its pixel data cannot be decoded");
        done += row < first ? 0 : rowBytes;
    }
    nextSample = sample;
    nextRow = end;
    handle->error.clear();
}

void TiffDecoder::tile(std::uint32_t index, std::span<std::byte> out)
{
    const auto size = static_cast<tmsize_t>(out.size());
    if (!TIFFIsTiled(handle->tiff) || TIFFTileSize(handle->tiff) != size)
        throw FormatError("the size of its tiles is damaged");
    if (TIFFReadEncodedTile(handle->tiff, index, out.data(), size) != size)
        handle->fail("its pixel data cannot be decoded");
    handle->error.clear();
}

namespace {

// libtiff fills a raster from the bottom row up.
void copyRaster(std::span<const std::uint32_t> raster, int width, int height, std::span<std::byte> out)
{
    std::byte* to = out.data();
    for (int y = height - 1; y >= 0; --y)
        for (int x = 0; x < width; ++x, to += 3) {
            const std::uint32_t pixel = raster[static_cast<std::size_t>(y) * width + x];
            to[0] = static_cast<std::byte>(TIFFGetR(pixel));
            to[1] = static_cast<std::byte>(TIFFGetG(pixel));
            to[2] = static_cast<std::byte>(TIFFGetB(pixel));
        }
}

} // namespace

// libtiff fills the raster by what the page's directory said when the decoder was made: that may be another
// one than the caller's, since another program may have written the page anew in between.
void TiffDecoder::requireSize(bool tiled, int width, int height)
{
    std::uint32_t nowWidth = 0, nowHeight = 0;
    TIFFGetField(handle->tiff, tiled ? TIFFTAG_TILEWIDTH : TIFFTAG_IMAGEWIDTH, &nowWidth);
    TIFFGetFieldDefaulted(handle->tiff, tiled ? TIFFTAG_TILELENGTH : TIFFTAG_ROWSPERSTRIP, &nowHeight);
    std::uint32_t pageHeight = nowHeight;
    if (!tiled)
        TIFFGetField(handle->tiff, TIFFTAG_IMAGELENGTH, &pageHeight);
    if ((TIFFIsTiled(handle->tiff) != 0) != tiled || nowWidth != static_cast<std::uint32_t>(width) ||
        std::min(nowHeight, pageHeight) != static_cast<std::uint32_t>(height))
        throw FormatError("the size of its strips or tiles is damaged");
}

void TiffDecoder::rgbStrip(int y, int width, int height, std::span<std::byte> out)
{
    requireSize(false, width, height);
    std::vector<std::uint32_t> raster(static_cast<std::size_t>(width) * height);
    if (!TIFFReadRGBAStripExt(handle->tiff, static_cast<std::uint32_t>(y), raster.data(), 1))
        handle->fail("its pixel data cannot be decoded");
    copyRaster(raster, width, height, out);
}

void TiffDecoder::rgbTile(int x, int y, int width, int height, std::span<std::byte> out)
{
    requireSize(true, width, height);
    std::vector<std::uint32_t> raster(static_cast<std::size_t>(width) * height);
    if (!TIFFReadRGBATileExt(handle->tiff, static_cast<std::uint32_t>(x), static_cast<std::uint32_t>(y),
                             raster.data(), 1))
        handle->fail("its pixel data cannot be decoded");
    copyRaster(raster, width, height, out);
}

} // namespace image
