// Damaged and hostile files: a sentence that names the file or correct behaviour, never a crash.
#include "tests/unit/image/TestFiles.h"

#include <cstring>
#include <gtest/gtest.h>
#include <random>
#include <sys/stat.h>
#include <tiffio.h>

using namespace image;
namespace fs = std::filesystem;

// Opens and reads everything; counts the sentences.
static int exercise(const fs::path& path)
{
    try {
        const auto image = ImageFile::open(path);
        const ImageInfo& info = image->info();
        int failures = 0;
        for (int z = 0; z < std::min(info.sizeZ, 4); ++z)
            for (int w = 0; w < std::min(info.sizeW, 4); ++w) {
                std::vector<float> row(static_cast<std::size_t>(info.width));
                for (const int y : {0, info.height / 2, info.height - 1})
                    if (!image->read({z, w, 0, 0}, {0, y, info.width - 1, y}, row)) {
                        EXPECT_NE(image->lastError().find(path.string()), std::string::npos);
                        ++failures;
                    }
                for (int level = 1; level < image->levelCount(); ++level) {
                    row.resize(static_cast<std::size_t>(image->levelWidth(level)));
                    failures +=
                        !image->readLevel({z, w, 0, 0}, level, {0, 0, image->levelWidth(level) - 1, 0}, row);
                    row.resize(static_cast<std::size_t>(info.width));
                }
            }
        return failures;
    } catch (const ImageError& error) {
        EXPECT_NE(std::string(error.what()).find(path.string()), std::string::npos);
        return 1;
    }
}

static std::vector<TiffSpec> seeds()
{
    TiffSpec plain, tiled, planar, ome, stack;
    plain.rowsPerStrip = 3;
    tiled.tile = 16;
    tiled.compression = COMPRESSION_ADOBE_DEFLATE;
    tiled.bigTiff = true;
    tiled.reducedWidths = {18};
    planar.samples = 3;
    planar.planar = true;
    planar.compression = COMPRESSION_LZW;
    planar.bigEndian = true;
    ome.pages = 2;
    ome.compression = COMPRESSION_PACKBITS;
    ome.description =
        "<OME><Image><Pixels SizeX='37' SizeY='29' SizeZ='2' SizeC='1' SizeT='1' Type='uint16' "
        "PhysicalSizeX='1'><Channel Color='5'/><TiffData IFD='0' PlaneCount='2'/></Pixels></Image></OME>";
    stack.pages = 3;
    stack.description = "ImageJ=1.5\nimages=3\nslices=3\nunit=um\n";
    return {plain, tiled, planar, ome, stack};
}

TEST(Malformed, TruncatedAtEveryLength)
{
    const TempFolder folder;
    for (const TiffSpec& seed : seeds()) {
        writeTiff(folder / "whole.tif", seed);
        const std::string whole = readBytes(folder / "whole.tif");
        int sentences = 0, cuts = 0;
        for (std::size_t size = 0; size < whole.size(); size += 1 + size / 40) {
            writeBytes(folder / "cut.tif", whole.substr(0, size));
            sentences += exercise(folder / "cut.tif") > 0;
            ++cuts;
        }
        EXPECT_EQ(exercise(folder / "whole.tif"), 0);
        EXPECT_GT(sentences, cuts * 3 / 4); // what is behind the last directory may be missing unnoticed
    }
}

TEST(Malformed, FlippedBytes)
{
    const TempFolder folder;
    std::mt19937 random(20240607);
    for (const TiffSpec& seed : seeds()) {
        writeTiff(folder / "whole.tif", seed);
        const std::string whole = readBytes(folder / "whole.tif");
        for (int round = 0; round < 400; ++round) {
            std::string bytes = whole;
            for (int flips = 1 + round % 4; flips > 0; --flips) {
                // Directories stand near the end, the header at the start: those are hit more often.
                const std::size_t tail = std::min<std::size_t>(bytes.size(), 600);
                const std::size_t at =
                    round % 3 == 0 ? random() % bytes.size() : bytes.size() - 1 - random() % tail;
                bytes[round % 17 == 0 ? random() % 16 : at] = static_cast<char>(random());
            }
            writeBytes(folder / "flipped.tif", bytes);
            exercise(folder / "flipped.tif");
        }
    }
}

TEST(Malformed, ForeignFiles)
{
    const TempFolder folder;
    using namespace std::string_literals;
    struct Row {
        const char* name;
        std::string bytes;
    };
    const Row rows[] = {
        {"empty", ""s},
        {"short", "II"s},
        {"text", "This is no image."s},
        {"png", "\x89PNG\r\n\x1a\n0000IHDR"s},
        {"html", "<html><body>no OME here</body></html>"s},
        {"broken ome", "<OME><Image><Pixels SizeX='"s},
        {"empty ome", "<OME/>"s},
        {"only header", "II\x2a\0\x08\0\0\0"s},
        {"no pages", "II\x2a\0\0\0\0\0"s},
        {"zeroes", std::string(4096, '\0')},
    };
    for (const auto& [name, bytes] : rows) {
        writeBytes(folder / name, bytes);
        EXPECT_NE(openFailure(folder / name).find(name), std::string::npos) << name;
    }
    EXPECT_NE(openFailure(folder / "missing.tif").find("no such file"), std::string::npos);
    EXPECT_NE(openFailure(folder / ".").find("folder"), std::string::npos);
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    EXPECT_NE(openFailure(folder / "pipe").find("regular"), std::string::npos);
}

// One entry of a little-endian directory is overwritten with a value that no honest file has.
TEST(Malformed, LyingTags)
{
    struct Row {
        int tag;
        std::uint32_t value;
        const char* sentencePart;
    };
    static constexpr Row rows[] = {
        {TIFFTAG_IMAGEWIDTH, 0x7fffffff, "pixels"},  {TIFFTAG_IMAGEWIDTH, 0, "pixels"},
        {TIFFTAG_IMAGELENGTH, 0xffffffff, "pixels"}, {TIFFTAG_IMAGELENGTH, 1 << 20, "incomplete"},
        {TIFFTAG_BITSPERSAMPLE, 37, "37 bits"},      {TIFFTAG_BITSPERSAMPLE, 0, "0 bits"},
        {TIFFTAG_SAMPLESPERPIXEL, 0, "samples"},     {TIFFTAG_SAMPLESPERPIXEL, 60000, "samples"},
        {TIFFTAG_COMPRESSION, 4711, "4711"},         {TIFFTAG_ROWSPERSTRIP, 0, "strips"},
        {TIFFTAG_STRIPOFFSETS, 0x7fffff00, ""},      {TIFFTAG_SAMPLEFORMAT, 6, "format 6"},
    };
    const TempFolder folder;
    TiffSpec spec;
    spec.rowsPerStrip = spec.height;
    writeTiff(folder / "good.tif", spec);
    const std::string good = readBytes(folder / "good.tif");
    for (const Row& row : rows) {
        std::string bytes = good;
        std::uint32_t directory = 0;
        std::memcpy(&directory, bytes.data() + 4, 4);
        std::uint16_t count = 0;
        std::memcpy(&count, bytes.data() + directory, 2);
        bool found = false;
        for (std::size_t at = directory + 2; at < directory + 2 + 12u * count; at += 12) {
            std::uint16_t tag = 0;
            std::memcpy(&tag, bytes.data() + at, 2);
            if (tag != row.tag)
                continue;
            const std::uint16_t asLong = 4;
            std::memcpy(bytes.data() + at + 2, &asLong, 2);
            std::memcpy(bytes.data() + at + 8, &row.value, 4);
            found = true;
        }
        ASSERT_TRUE(found) << row.tag;
        writeBytes(folder / "lie.tif", bytes);
        const std::string sentence = openFailure(folder / "lie.tif");
        EXPECT_FALSE(sentence.empty()) << row.tag << " = " << row.value;
        EXPECT_NE(sentence.find(row.sentencePart), std::string::npos) << row.tag << ": " << sentence;
    }
}
