#include "tests/unit/samples/SampleRun.h"

#include <gtest/gtest.h>
#include <tiffio.h>

#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <sstream>

namespace sampletest {

Folder::Folder()
{
    std::string pattern = (std::filesystem::temp_directory_path() / "makesample-XXXXXX").string();
    if (mkdtemp(pattern.data()))
        path = pattern;
}

Folder::~Folder()
{
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
}

std::vector<std::string> Folder::names() const
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

Outcome makeSample(const Folder& folder, const std::string& options, const std::string& before)
{
    const Folder scratch;
    const std::filesystem::path out = scratch / "out", err = scratch / "err";
    const std::string command = "cd " + folder.path.string() + " && (" + before + BIN_DIR "/makesample " +
                                options + ") >" + out.string() + " 2>" + err.string();
    const int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, bytesOf(out), bytesOf(err)};
}

namespace {

using Tiff = std::unique_ptr<TIFF, decltype(&TIFFClose)>;

Tiff openTiff(const std::filesystem::path& file)
{
    TIFFSetWarningHandler(nullptr); // it warns of ImageJ's tags
    return {TIFFOpen(file.c_str(), "r"), TIFFClose};
}

template<typename T> double numberAt(const unsigned char* at)
{
    T value;
    std::memcpy(&value, at, sizeof value);
    return static_cast<double>(value);
}

double valueAt(const unsigned char* row, std::size_t i, int bits, int format)
{
    const unsigned char* at = row + i * bits / 8;
    if (format == SAMPLEFORMAT_IEEEFP)
        return bits == 32 ? numberAt<float>(at) : numberAt<double>(at);
    const bool isSigned = format == SAMPLEFORMAT_INT;
    switch (bits) {
    case 1:
        return row[i / 8] >> (7 - i % 8) & 1;
    case 8:
        return isSigned ? numberAt<std::int8_t>(at) : numberAt<std::uint8_t>(at);
    case 16:
        return isSigned ? numberAt<std::int16_t>(at) : numberAt<std::uint16_t>(at);
    default:
        return isSigned ? numberAt<std::int32_t>(at) : numberAt<std::uint32_t>(at);
    }
}

struct Reader {
    TIFF* tiff;
    std::uint32_t width = 0, height = 0, blockWidth = 0, blockHeight = 0;
    std::uint16_t bits = 1, samples = 1, format = SAMPLEFORMAT_UINT, planar = PLANARCONFIG_CONTIG;

    explicit Reader(TIFF* tiff) : tiff(tiff)
    {
        TIFFGetField(tiff, TIFFTAG_IMAGEWIDTH, &width);
        TIFFGetField(tiff, TIFFTAG_IMAGELENGTH, &height);
        TIFFGetFieldDefaulted(tiff, TIFFTAG_BITSPERSAMPLE, &bits);
        TIFFGetFieldDefaulted(tiff, TIFFTAG_SAMPLESPERPIXEL, &samples);
        TIFFGetFieldDefaulted(tiff, TIFFTAG_SAMPLEFORMAT, &format);
        TIFFGetFieldDefaulted(tiff, TIFFTAG_PLANARCONFIG, &planar);
        blockWidth = width;
        TIFFGetFieldDefaulted(tiff, TIFFTAG_ROWSPERSTRIP, &blockHeight);
        TIFFGetField(tiff, TIFFTAG_TILEWIDTH, &blockWidth);
        TIFFGetField(tiff, TIFFTAG_TILELENGTH, &blockHeight);
    }

    // The block that starts at (x, y), all its samples or one.
    void readBlock(std::uint32_t x, std::uint32_t y, std::uint16_t sample, Pixels& out) const
    {
        const bool tiled = TIFFIsTiled(tiff);
        const std::uint32_t block =
            tiled ? TIFFComputeTile(tiff, x, y, 0, sample) : TIFFComputeStrip(tiff, y, sample);
        std::vector<unsigned char> data(tiled ? TIFFTileSize(tiff) : TIFFStripSize(tiff));
        const auto size = static_cast<tmsize_t>(data.size());
        const tmsize_t got = tiled ? TIFFReadEncodedTile(tiff, block, data.data(), size)
                                   : TIFFReadEncodedStrip(tiff, block, data.data(), size);
        ASSERT_GT(got, 0);
        const int together = planar == PLANARCONFIG_CONTIG ? samples : 1;
        const std::size_t rowBytes = (std::size_t{blockWidth} * together * bits + 7) / 8;
        for (std::uint32_t j = y; j < std::min(y + blockHeight, height); ++j) {
            for (std::uint32_t i = x; i < std::min(x + blockWidth, width); ++i) {
                for (int s = 0; s < together; ++s)
                    out.values[(std::size_t{j} * width + i) * samples + sample + s] = valueAt(
                        data.data() + (j - y) * rowBytes, std::size_t{i - x} * together + s, bits, format);
            }
        }
    }
};

} // namespace

Pixels readPixels(const std::filesystem::path& file, int directory, int level)
{
    const Tiff tiff = openTiff(file);
    Pixels out;
    if (!tiff || !TIFFSetDirectory(tiff.get(), static_cast<tdir_t>(directory))) {
        ADD_FAILURE() << "cannot open directory " << directory << " of " << file;
        return out;
    }
    std::uint16_t levels = 0;
    toff_t* offsets = nullptr;
    if (level > 0 && (!TIFFGetField(tiff.get(), TIFFTAG_SUBIFD, &levels, &offsets) || levels < level ||
                      !TIFFSetSubDirectory(tiff.get(), offsets[level - 1]))) {
        ADD_FAILURE() << "no level " << level << " in " << file;
        return out;
    }
    const Reader reader(tiff.get());
    out = {static_cast<int>(reader.width), static_cast<int>(reader.height), reader.samples, {}};
    out.values.assign(std::size_t{reader.width} * reader.height * reader.samples, -1e9);
    const int planes = reader.planar == PLANARCONFIG_CONTIG ? 1 : reader.samples;
    for (int sample = 0; sample < planes; ++sample) {
        for (std::uint32_t y = 0; y < reader.height; y += reader.blockHeight) {
            for (std::uint32_t x = 0; x < reader.width; x += reader.blockWidth)
                reader.readBlock(x, y, static_cast<std::uint16_t>(sample), out);
        }
    }
    return out;
}

std::string readDescription(const std::filesystem::path& file)
{
    const Tiff tiff = openTiff(file);
    const char* text = nullptr;
    return tiff && TIFFGetField(tiff.get(), TIFFTAG_IMAGEDESCRIPTION, &text) ? text : "";
}

pugi::xml_node parseOme(const std::string& text, pugi::xml_document& document)
{
    const pugi::xml_parse_result result = document.load_string(text.c_str());
    EXPECT_TRUE(result) << result.description();
    return document.child("OME");
}

std::string bytesOf(const std::filesystem::path& file)
{
    std::ifstream in(file, std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return bytes.str();
}

} // namespace sampletest
