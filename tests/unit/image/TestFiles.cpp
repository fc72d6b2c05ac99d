// SPDX-License-Identifier: MIT
#include "tests/unit/image/TestFiles.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <limits>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <tiffio.h>

namespace fs = std::filesystem;

double storedValue(const TiffSpec& spec, int x, int y, int page, int sample)
{
    if (spec.smooth)
        return 2 * x + y;
    const std::uint32_t mixed =
        7919u * x + 104729u * y + 1299709u * (page + spec.firstPage) + 15485863u * sample;
    const int bits = std::min(spec.kind.bits, 24) - (spec.kind.format == 2 ? 1 : 0);
    if (spec.kind.format == 3) // a half has 11 significant bits
        return (static_cast<double>(mixed % 2048) - 1024) / 64;
    const double value = mixed % (1u << bits);
    return spec.kind.format == 2 && (x + y) % 2 ? -value : value;
}

namespace {

std::uint16_t halfBits(double value)
{
    if (value == 0)
        return 0;
    int exponent = 0;
    const double fraction = std::frexp(std::abs(value), &exponent); // 0.5 to 1
    const auto mantissa = static_cast<unsigned>(fraction * 2048) & 0x3ffu;
    return static_cast<std::uint16_t>((value < 0 ? 0x8000u : 0) | static_cast<unsigned>(exponent + 14) << 10 |
                                      mantissa);
}

// The value as it is stored, in the low bits.
std::uint64_t bitsOf(const PixelKind& kind, double value)
{
    if (kind.format != 3)
        return static_cast<std::uint64_t>(static_cast<std::int64_t>(value));
    return kind.bits == 16   ? halfBits(value)
           : kind.bits == 32 ? std::bit_cast<std::uint32_t>(static_cast<float>(value))
                             : std::bit_cast<std::uint64_t>(value);
}

// Samples of whole bytes in the machine's order; others without a gap, the most significant bit first.
struct Packer {
    std::vector<std::uint8_t> data;
    int bitsInRow = 0;

    void add(std::uint64_t value, int bits)
    {
        constexpr bool little = std::endian::native == std::endian::little;
        if (bits % 8 == 0)
            for (int i = 0; i < bits; i += 8)
                data.push_back(static_cast<std::uint8_t>(value >> (little ? i : bits - 8 - i)));
        else
            for (int i = bits - 1; i >= 0; --i)
                addBit(value >> i & 1);
    }
    void addBit(std::uint64_t bit)
    {
        if (bitsInRow % 8 == 0)
            data.push_back(0);
        data.back() = static_cast<std::uint8_t>(data.back() | bit << (7 - bitsInRow++ % 8));
    }
};

// Pixels of a block as libtiff wants them: the machine's byte order, rows padded to bytes.
std::vector<std::uint8_t> blockData(const TiffSpec& spec, int x0, int y0, int width, int height, int page,
                                    int plane)
{
    Packer packer;
    for (int y = y0; y < y0 + height; ++y, packer.bitsInRow = 0)
        for (int x = x0; x < x0 + width; ++x)
            for (int s = 0; s < (spec.planar ? 1 : spec.samples); ++s) {
                const double value = storedValue(spec, x, y, page, spec.planar ? plane : s);
                packer.add(bitsOf(spec.kind, value), spec.kind.bits);
            }
    return packer.data;
}

using Tiff = std::unique_ptr<TIFF, void (*)(TIFF*)>;

void require(bool good)
{
    if (!good)
        throw std::runtime_error("libtiff could not write the test file");
}

void writeBlocks(TIFF* tiff, const TiffSpec& spec, int page)
{
    const int blockWidth = spec.tile ? spec.tile : spec.width,
              blockHeight = spec.tile ? spec.tile : spec.rowsPerStrip;
    std::uint32_t block = 0;
    for (int plane = 0; plane < (spec.planar ? spec.samples : 1); ++plane)
        for (int y = 0; y < spec.height; y += blockHeight)
            for (int x = 0; x < spec.width; x += blockWidth, ++block) {
                const int rows = spec.tile ? blockHeight : std::min(blockHeight, spec.height - y);
                auto data = blockData(spec, x, y, blockWidth, rows, page, plane);
                const auto size = static_cast<tmsize_t>(data.size());
                require((spec.tile ? TIFFWriteEncodedTile(tiff, block, data.data(), size)
                                   : TIFFWriteEncodedStrip(tiff, block, data.data(), size)) == size);
            }
}

void setTags(TIFF* tiff, const TiffSpec& spec)
{
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, spec.width);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, spec.height);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, spec.kind.bits);
    TIFFSetField(tiff, TIFFTAG_SAMPLEFORMAT, spec.kind.format);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, spec.samples);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, spec.planar ? PLANARCONFIG_SEPARATE : PLANARCONFIG_CONTIG);
    const int usual = spec.samples == 3 ? PHOTOMETRIC_RGB : PHOTOMETRIC_MINISBLACK;
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, spec.photometric >= 0 ? spec.photometric : usual);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, spec.compression);
    TIFFSetField(tiff, TIFFTAG_FILLORDER, spec.fillOrder);
    if (spec.predictor != 1)
        TIFFSetField(tiff, TIFFTAG_PREDICTOR, spec.predictor);
    if (spec.compression == COMPRESSION_WEBP)
        TIFFSetField(tiff, TIFFTAG_WEBP_LOSSLESS, 1);
    if (spec.tile) {
        TIFFSetField(tiff, TIFFTAG_TILEWIDTH, spec.tile);
        TIFFSetField(tiff, TIFFTAG_TILELENGTH, spec.tile);
    } else {
        TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, spec.rowsPerStrip);
    }
    if (spec.resolution > 0) {
        TIFFSetField(tiff, TIFFTAG_XRESOLUTION, spec.resolution);
        TIFFSetField(tiff, TIFFTAG_YRESOLUTION, spec.resolution);
        TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_NONE);
    }
}

void writePage(TIFF* tiff, const TiffSpec& spec, int page)
{
    setTags(tiff, spec);
    if (page == 0 && !spec.description.empty())
        TIFFSetField(tiff, TIFFTAG_IMAGEDESCRIPTION, spec.description.c_str());
    std::vector<std::uint64_t> offsets(spec.reducedWidths.size());
    if (!offsets.empty())
        TIFFSetField(tiff, TIFFTAG_SUBIFD, static_cast<int>(offsets.size()), offsets.data());
    writeBlocks(tiff, spec, page);
    require(TIFFWriteDirectory(tiff));
    TiffSpec reduced = spec;
    for (const int width : spec.reducedWidths) {
        reduced.width = width;
        reduced.height = spec.height * width / spec.width;
        setTags(tiff, reduced);
        TIFFSetField(tiff, TIFFTAG_SUBFILETYPE, FILETYPE_REDUCEDIMAGE);
        writeBlocks(tiff, reduced, page);
        require(TIFFWriteDirectory(tiff));
    }
}

} // namespace

void writeTiff(const fs::path& path, const TiffSpec& spec)
{
    const std::string order = spec.bigEndian ? "b" : "l", mode = spec.append ? "a" : "w";
    const Tiff tiff(TIFFOpen(path.c_str(), (mode + order + (spec.bigTiff ? "8" : "")).c_str()), TIFFClose);
    require(tiff != nullptr);
    for (int page = 0; page < spec.pages; ++page)
        writePage(tiff.get(), spec, page);
}

std::unique_ptr<image::ImageFile> writeAndOpen(const fs::path& path, const TiffSpec& spec)
{
    writeTiff(path, spec);
    return image::ImageFile::open(path);
}

namespace {

template<class T> T numberAt(const std::string& bytes, std::size_t at)
{
    T value;
    std::memcpy(&value, bytes.data() + at, sizeof value);
    return value;
}

} // namespace

std::size_t nextPointerOf(const std::string& bytes, int page)
{
    const std::size_t directory = directoryOf(bytes, page);
    return directory + 2 + 12u * numberAt<std::uint16_t>(bytes, directory);
}

std::size_t directoryOf(const std::string& bytes, int page)
{
    return numberAt<std::uint32_t>(bytes, page == 0 ? 4 : nextPointerOf(bytes, page - 1));
}

void overwriteNumber(std::string& bytes, std::size_t at, std::uint32_t value)
{
    std::memcpy(&bytes[at], &value, sizeof value);
}

bool overwriteTag(std::string& bytes, int tag, std::uint32_t value, int page)
{
    constexpr std::uint16_t asLong = 4;
    const std::size_t directory = directoryOf(bytes, page), first = directory + 2;
    const std::size_t end = first + 12u * numberAt<std::uint16_t>(bytes, directory);
    for (std::size_t entry = first; entry < end; entry += 12)
        if (numberAt<std::uint16_t>(bytes, entry) == tag) {
            std::memcpy(&bytes[entry + 2], &asLong, 2);
            overwriteNumber(bytes, entry + 4, 1);
            overwriteNumber(bytes, entry + 8, value);
            return true;
        }
    return false;
}

std::array<int, 4> sizesOf(const image::ImageFile& image)
{
    const image::ImageInfo& info = image.info();
    return {info.sizeZ, info.sizeW, info.sizeT, info.sizeP};
}

std::array<std::optional<double>, 5> headerOf(const image::ImageFile& image,
                                              const image::SectionIndex& section)
{
    const auto field = [&](int number) { return image.extendedHeader(section, number); };
    return {field(image::TimeStampSeconds), field(image::StageXMicrons), field(image::StageYMicrons),
            field(image::StageZMicrons), field(image::KnownBias)};
}

std::vector<float> readWhole(image::ImageFile& image, const image::SectionIndex& section)
{
    const image::ImageInfo& info = image.info();
    std::vector<float> pixels(static_cast<std::size_t>(info.width) * info.height);
    if (!image.read(section, {0, 0, info.width - 1, info.height - 1}, pixels))
        pixels.clear();
    return pixels;
}

float pixelAt(image::ImageFile& image, const image::SectionIndex& section, int x, int y, int level)
{
    float value = 0;
    const bool read = image.readLevel(section, level, {x, y, x, y}, {&value, 1});
    return read ? value : std::numeric_limits<float>::quiet_NaN();
}

std::string openFailure(const fs::path& path)
{
    try {
        image::ImageFile::open(path);
        return {};
    } catch (const image::ImageError& error) {
        return error.what();
    }
}
