#include "tests/unit/image/TestFiles.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <limits>
#include <memory>
#include <stdexcept>
#include <tiffio.h>

namespace fs = std::filesystem;

double storedValue(const TiffSpec& spec, int x, int y, int page, int sample)
{
    const std::uint32_t mixed =
        7919u * x + 104729u * y + 1299709u * (page + spec.firstPage) + 15485863u * sample;
    const int bits = std::min(spec.kind.bits, 24) - (spec.kind.format == 2 ? 1 : 0);
    if (spec.kind.format == 3) // a half has 11 significant bits
        return (static_cast<double>(mixed % 2048) - 1024) / 64;
    const double value = mixed % (1u << bits);
    return spec.kind.format == 2 && (x + y) % 2 ? -value : value;
}

static std::uint16_t halfBits(double value)
{
    if (value == 0)
        return 0;
    int exponent = 0;
    const double fraction = std::frexp(std::abs(value), &exponent); // 0.5 to 1
    const auto mantissa = static_cast<unsigned>(fraction * 2048) & 0x3ffu;
    return static_cast<std::uint16_t>((value < 0 ? 0x8000u : 0) | static_cast<unsigned>(exponent + 14) << 10 |
                                      mantissa);
}

template<class T> static void put(std::vector<std::uint8_t>& out, T value)
{
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(&value);
    out.insert(out.end(), bytes, bytes + sizeof value);
}

static void putSample(std::vector<std::uint8_t>& out, const PixelKind& kind, double value)
{
    const bool real = kind.format == 3;
    switch (kind.bits) {
    case 8:
        put(out, static_cast<std::uint8_t>(static_cast<int>(value)));
        break;
    case 16:
        put(out, real ? halfBits(value) : static_cast<std::uint16_t>(static_cast<int>(value)));
        break;
    case 24: {
        const auto bits = static_cast<std::uint32_t>(value);
        out.insert(out.end(), {std::uint8_t(bits), std::uint8_t(bits >> 8), std::uint8_t(bits >> 16)});
        break;
    }
    case 32:
        put(out, real ? std::bit_cast<std::uint32_t>(static_cast<float>(value))
                      : static_cast<std::uint32_t>(static_cast<std::int64_t>(value)));
        break;
    default:
        put(out, real ? std::bit_cast<std::uint64_t>(value)
                      : static_cast<std::uint64_t>(static_cast<std::int64_t>(value)));
    }
}

// Packs values of fewer than 8 or of 9 to 15 bits, most significant bit first.
struct BitPacker {
    std::vector<std::uint8_t>& out;
    unsigned pending = 0;
    int count = 0;
    void add(unsigned value, int bits)
    {
        pending = (pending << bits) | value;
        for (count += bits; count >= 8; count -= 8)
            out.push_back(static_cast<std::uint8_t>(pending >> (count - 8)));
    }
    void finishRow()
    {
        if (count > 0)
            add(0, 8 - count);
        pending = 0;
    }
};

// Pixels of a block as libtiff wants them: the machine's byte order, rows padded to bytes.
static std::vector<std::uint8_t> blockData(const TiffSpec& spec, int x0, int y0, int width, int height,
                                           int page, int plane)
{
    const bool packed = spec.kind.bits != 8 && spec.kind.bits < 16;
    std::vector<std::uint8_t> data;
    BitPacker packer{data};
    for (int y = y0; y < y0 + height; ++y) {
        for (int x = x0; x < x0 + width; ++x)
            for (int s = 0; s < (spec.planar ? 1 : spec.samples); ++s) {
                const double value = storedValue(spec, x, y, page, spec.planar ? plane : s);
                if (packed)
                    packer.add(static_cast<unsigned>(value), spec.kind.bits);
                else
                    putSample(data, spec.kind, value);
            }
        packer.finishRow();
    }
    return data;
}

using Tiff = std::unique_ptr<TIFF, void (*)(TIFF*)>;

static void require(bool good)
{
    if (!good)
        throw std::runtime_error("libtiff could not write the test file");
}

static void writeBlocks(TIFF* tiff, const TiffSpec& spec, int width, int height, int page)
{
    const int blockWidth = spec.tile ? spec.tile : width,
              blockHeight = spec.tile ? spec.tile : spec.rowsPerStrip;
    std::uint32_t block = 0;
    for (int plane = 0; plane < (spec.planar ? spec.samples : 1); ++plane)
        for (int y = 0; y < height; y += blockHeight)
            for (int x = 0; x < width; x += blockWidth, ++block) {
                const int rows = spec.tile ? blockHeight : std::min(blockHeight, height - y);
                auto data = blockData(spec, x, y, blockWidth, rows, page, plane);
                const auto size = static_cast<tmsize_t>(data.size());
                require((spec.tile ? TIFFWriteEncodedTile(tiff, block, data.data(), size)
                                   : TIFFWriteEncodedStrip(tiff, block, data.data(), size)) == size);
            }
}

static void setTags(TIFF* tiff, const TiffSpec& spec, int width, int height)
{
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, width);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, height);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, spec.kind.bits);
    TIFFSetField(tiff, TIFFTAG_SAMPLEFORMAT, spec.kind.format);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, spec.samples);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, spec.planar ? PLANARCONFIG_SEPARATE : PLANARCONFIG_CONTIG);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC,
                 spec.photometric >= 0 ? spec.photometric
                 : spec.samples == 3   ? 2
                                       : 1);
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

void writeTiff(const fs::path& path, const TiffSpec& spec)
{
    const std::string mode = std::string("w") + (spec.bigEndian ? "b" : "l") + (spec.bigTiff ? "8" : "");
    const Tiff tiff(TIFFOpen(path.c_str(), mode.c_str()), TIFFClose);
    require(tiff != nullptr);
    for (int page = 0; page < spec.pages; ++page) {
        setTags(tiff.get(), spec, spec.width, spec.height);
        if (page == 0 && !spec.description.empty())
            TIFFSetField(tiff.get(), TIFFTAG_IMAGEDESCRIPTION, spec.description.c_str());
        std::vector<std::uint64_t> offsets(spec.reducedWidths.size());
        if (!offsets.empty())
            TIFFSetField(tiff.get(), TIFFTAG_SUBIFD, static_cast<int>(offsets.size()), offsets.data());
        writeBlocks(tiff.get(), spec, spec.width, spec.height, page);
        require(TIFFWriteDirectory(tiff.get()));
        for (const int width : spec.reducedWidths) {
            const int height = spec.height * width / spec.width;
            setTags(tiff.get(), spec, width, height);
            TIFFSetField(tiff.get(), TIFFTAG_SUBFILETYPE, FILETYPE_REDUCEDIMAGE);
            writeBlocks(tiff.get(), spec, width, height, page);
            require(TIFFWriteDirectory(tiff.get()));
        }
    }
}

TempFolder::TempFolder()
{
    std::string name = (fs::temp_directory_path() / "image-test-XXXXXX").string();
    if (!mkdtemp(name.data()))
        throw std::runtime_error("no temporary folder");
    path = name;
}

TempFolder::~TempFolder()
{
    std::error_code ignored;
    fs::remove_all(path, ignored);
}

std::string readBytes(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void writeBytes(const fs::path& path, std::string_view bytes)
{
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

std::vector<float> readWhole(image::ImageFile& image, const image::SectionIndex& section)
{
    const image::ImageInfo& info = image.info();
    std::vector<float> pixels(static_cast<std::size_t>(info.width) * info.height);
    if (!image.read(section, {0, 0, info.width - 1, info.height - 1}, pixels))
        pixels.clear();
    return pixels;
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

float firstPixel(image::ImageFile& image, const image::SectionIndex& section)
{
    float value = 0;
    return image.read(section, {0, 0, 0, 0}, {&value, 1}) ? value : std::numeric_limits<float>::quiet_NaN();
}
