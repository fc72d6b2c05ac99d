// SPDX-License-Identifier: MIT
// Damaged and hostile files: a sentence that names the file or correct behaviour, never a crash.
#include "tests/unit/image/TestFiles.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <sys/stat.h>
#include <tiffio.h>
#include <vector>

using namespace image;
using testing::HasSubstr;
namespace fs = std::filesystem;

namespace {

// Reads some rows of some sections and of their reduced copies; counts the reads that failed.
int readSome(ImageFile& image, const std::string& path)
{
    int failures = 0;
    for (int z = 0; z < std::min(image.info().sizeZ, 4); ++z)
        for (int w = 0; w < std::min(image.info().sizeW, 4); ++w)
            for (int level = 0; level < image.levelCount(); ++level) {
                const int width = image.levelWidth(level), height = image.levelHeight(level);
                std::vector<float> row(static_cast<std::size_t>(width));
                for (const int y : {0, height / 2, height - 1})
                    if (!image.readLevel({z, w, 0, 0}, level, {0, y, width - 1, y}, row)) {
                        EXPECT_THAT(image.lastError(), HasSubstr(path));
                        ++failures;
                    }
            }
    return failures;
}

// Opens and reads; counts the sentences.
int exercise(const fs::path& path)
{
    try {
        return readSome(*ImageFile::open(path), path);
    } catch (const ImageError& error) {
        EXPECT_THAT(error.what(), HasSubstr(path.string()));
        return 1;
    }
}

// Calls the check for the bytes of a file of each kind.
template<class Check> void forEachSeed(Check check)
{
    const std::string ome =
        "<OME><Image><Pixels SizeX='37' SizeY='29' SizeZ='2' SizeC='1' SizeT='1' Type='uint16' "
        "PhysicalSizeX='1'><Channel Color='5'/><TiffData IFD='0' PlaneCount='2'/></Pixels></Image></OME>";
    const TiffSpec seeds[] = {
        {.rowsPerStrip = 3},
        {.bigTiff = true, .tile = 16, .compression = COMPRESSION_ADOBE_DEFLATE, .reducedWidths = {18}},
        {.samples = 3, .planar = true, .bigEndian = true, .compression = COMPRESSION_LZW},
        {.pages = 2, .compression = COMPRESSION_PACKBITS, .description = ome},
        {.pages = 3, .description = "ImageJ=1.5\nimages=3\nslices=3\nunit=um\n"},
    };
    const TempFolder folder;
    for (const TiffSpec& spec : seeds) {
        writeTiff(folder / "whole.tif", spec);
        EXPECT_EQ(exercise(folder / "whole.tif"), 0);
        check(readBytes(folder / "whole.tif"), folder / "spoilt.tif");
    }
}

} // namespace

TEST(Malformed, TruncatedAtEveryLength)
{
    forEachSeed([](const std::string& whole, const fs::path& path) {
        int sentences = 0, cuts = 0;
        for (std::size_t size = 0; size < whole.size(); size += 1 + size / 40, ++cuts) {
            writeBytes(path, whole.substr(0, size));
            sentences += exercise(path) > 0;
        }
        EXPECT_GT(sentences, cuts * 3 / 4); // what is behind the last directory may be missing unnoticed
    });
}

TEST(Malformed, FlippedBytes)
{
    std::mt19937 random(20240607);
    forEachSeed([&](const std::string& whole, const fs::path& path) {
        constexpr int rounds = 400;
        int refused = 0;
        for (int round = 0; round < rounds; ++round) {
            std::string bytes = whole;
            for (int flips = 1 + round % 4; flips > 0; --flips) {
                // Directories stand near the end, the header at the start: those are hit more often.
                const std::size_t tail = std::min<std::size_t>(bytes.size(), 600);
                const std::size_t at =
                    round % 3 == 0 ? random() % bytes.size() : bytes.size() - 1 - random() % tail;
                bytes[round % 17 == 0 ? random() % 16 : at] = static_cast<char>(random());
            }
            writeBytes(path, bytes);
            refused += exercise(path) > 0;
        }
        EXPECT_GT(refused, rounds / 4); // the flips meet what matters
        EXPECT_LT(refused, rounds);     // and pixels alone are no damage
    });
}

TEST(Malformed, ForeignFiles)
{
    using namespace std::string_literals;
    const std::pair<const char*, std::string> rows[] = {
        {"empty", ""s},
        {"short", "II"s},
        {"text", "This is no image."s},
        {"html", "<html><body>no OME here</body></html>"s},
        {"broken ome", "<OME><Image><Pixels SizeX='"s},
        {"empty ome", "<OME/>"s},
        {"only header", "II\x2a\0\x08\0\0\0"s},
        {"no pages", "II\x2a\0\0\0\0\0"s},
        {"endless chain", "II\x2a\0\x08\0\0\0\x01\0\0\1\4\0\1\0\0\0\1\0\0\0\x08\0\0\0"s}, // its own next page
        {"zeroes", std::string(4096, '\0')},
    };
    const TempFolder folder;
    for (const auto& [name, bytes] : rows) {
        writeBytes(folder / name, bytes);
        EXPECT_THAT(openFailure(folder / name), HasSubstr(name));
    }
    EXPECT_THAT(openFailure(folder / "missing.tif"), HasSubstr("no such file"));
    EXPECT_THAT(openFailure(folder.path), HasSubstr("folder"));
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    EXPECT_THAT(openFailure(folder / "pipe"), HasSubstr("regular"));
}

// Formats that are known but not read: the sentence says which it is and what to do.
TEST(Malformed, FormatsThatAreNotRead)
{
    using namespace std::string_literals;
    const struct {
        std::string head;
        const char* sentencePart;
    } rows[] = {
        {"\x89HDF\r\n\x1a\n", "an HDF5 file, which cannot be read; convert it to OME-TIFF"},
        {"\xd0\xcf\x11\xe0\xa1\xb1\x1a\xe1", "a compound document"},
        {"PK\3\4", "a packed file, which cannot be read; unpack it first"},
        {"\x1f\x8b\x08", "a packed file"},
        {"\x7f", "not a TIFF file; if it is an image, convert it"},
    };
    const TempFolder folder;
    for (const auto& [head, sentencePart] : rows) {
        writeBytes(folder / "image.tif", head + std::string(64, '\1'));
        EXPECT_THAT(openFailure(folder / "image.tif"), HasSubstr(sentencePart));
    }
    for (const char* const name : {"zarr.json", ".zattrs"}) {
        const fs::path zarr = folder / (name + ".folder"s);
        fs::create_directory(zarr);
        writeBytes(zarr / name, "{}");
        EXPECT_THAT(openFailure(zarr), HasSubstr("an OME-Zarr folder")) << name;
    }
}

// One entry of a directory is overwritten with a value that no honest file has.
TEST(Malformed, LyingTags)
{
    struct Row {
        int tag;
        std::uint32_t value;
        const char* sentencePart;
    };
    static constexpr Row rows[] = {
        {TIFFTAG_IMAGEWIDTH, 0x7fffffff, "pixels"},
        {TIFFTAG_IMAGEWIDTH, 0, "pixels"},
        {TIFFTAG_IMAGELENGTH, 0xffffffff, "pixels"},
        {TIFFTAG_IMAGELENGTH, 1 << 20, "incomplete"},
        {TIFFTAG_BITSPERSAMPLE, 37, "37 bits"},
        {TIFFTAG_BITSPERSAMPLE, 0, "0 bits"},
        {TIFFTAG_SAMPLESPERPIXEL, 0, "samples"},
        {TIFFTAG_SAMPLESPERPIXEL, 60000, "samples"},
        {TIFFTAG_COMPRESSION, 4711, "4711"},
        {TIFFTAG_ROWSPERSTRIP, 0, "strips"},
        {TIFFTAG_STRIPOFFSETS, 0x7fffff00, "truncated"},
        {TIFFTAG_SAMPLEFORMAT, 6, "format 6"},
        {TIFFTAG_STRIPBYTECOUNTS, 100, "incomplete"},
    };
    const TempFolder folder;
    writeTiff(folder / "good.tif", {.rowsPerStrip = 29});
    const std::string good = readBytes(folder / "good.tif");
    for (const Row& row : rows) {
        std::string bytes = good;
        ASSERT_TRUE(overwriteTag(bytes, row.tag, row.value)) << row.tag;
        writeBytes(folder / "lie.tif", bytes);
        const std::string sentence = openFailure(folder / "lie.tif");
        EXPECT_NE(sentence, "") << row.tag << " = " << row.value;
        EXPECT_THAT(sentence, HasSubstr(row.sentencePart)) << row.tag << " = " << row.value;
    }
}
