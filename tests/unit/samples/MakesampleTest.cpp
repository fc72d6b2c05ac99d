// SPDX-License-Identifier: MIT
// Pixels, layout and files of the variants, read back and compared with the ramp that the help text promises.
#include "tests/unit/samples/SampleRun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <tiffio.h>

#include <string>
#include <vector>

using namespace sampletest;
using image::ImageFile;
using image::PixelType;
using testing::ElementsAre;
using testing::FloatNear;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

const std::string small = "--size 37x29 --z 3 --time 2 --pattern ramp ";

// A ramp's number n is stored as n % modulus * factor + shift.
constexpr struct StoredType {
    const char* name;
    PixelType type;
    long modulus;
    double factor, shift;
} types[] = {
    {"bit", PixelType::Bit, 2, 1, 0},
    {"uint8", PixelType::UInt8, 256, 1, 0},
    {"int8", PixelType::Int8, 256, 1, -128},
    {"uint16", PixelType::UInt16, 65536, 1, 0},
    {"int16", PixelType::Int16, 32768, 1, -100},
    {"uint32", PixelType::UInt32, 1 << 20, 1, 70000},
    {"int32", PixelType::Int32, 1 << 20, 1, -100},
    {"float", PixelType::Float32, 1 << 20, 0.25, -100},
    {"double", PixelType::Float64, 1 << 20, 0.25, -100},
};

// How many pixels of a section, or of a reduced copy of it, differ from the ramp.
int wrongPixels(ImageFile& image, const image::SectionIndex& at, int level)
{
    const StoredType& stored = *std::ranges::find(types, image.info().pixelType, &StoredType::type);
    const int width = image.levelWidth(level), height = image.levelHeight(level);
    std::vector<float> pixels(static_cast<std::size_t>(width) * height);
    EXPECT_TRUE(image.readLevel(at, level, {0, 0, width - 1, height - 1}, pixels)) << image.lastError();
    int wrong = 0;
    for (int i = 0; i < width * height; ++i) {
        const long x = (i % width) << level, y = (i / width) << level;
        const long n = x + 11 * y + 101L * at.z + 1009L * at.w + 10007L * at.t + 20011L * at.p;
        wrong += pixels[static_cast<std::size_t>(i)] != n % stored.modulus * stored.factor + stored.shift;
    }
    return wrong;
}

int wrongPixels(ImageFile& image)
{
    const auto [z, w, t, p] = sizesOf(image);
    int wrong = 0;
    for (int i = 0; i < z * w * t * p; ++i)
        for (int level = 0; level < image.levelCount(); ++level)
            wrong += wrongPixels(image, {i % z, i / z % w, i / z / w % t, i / z / w / t}, level);
    return wrong;
}

struct Variant {
    std::string options;
    int channels = 2, positions = 1;
    std::size_t files = 1;
};

// Makes the variant and opens the first and the last file of it: each is to be the whole image.
void expectRamp(const Variant& variant, PixelType type = PixelType::UInt16)
{
    SCOPED_TRACE(variant.options);
    const Sample sample(small + (variant.channels == 2 ? "--channels 2 " : "") + variant.options);
    const std::vector<std::string> names = namesIn(sample.folder);
    EXPECT_EQ(names.size(), variant.files);
    for (const std::string& name : {names.front(), names.back()}) {
        const auto image = ImageFile::open(sample.folder / name);
        EXPECT_THAT(sizesOf(*image), ElementsAre(3, variant.channels, 2, variant.positions));
        EXPECT_EQ(std::pair(image->info().width, image->info().height), std::pair(37, 29));
        EXPECT_EQ(image->info().pixelType, type);
        EXPECT_EQ(wrongPixels(*image), 0) << name;
    }
}

} // namespace

TEST(Variants, PixelTypesInBothByteOrders)
{
    for (const StoredType& stored : types)
        for (const char* const order : {"", " --big-endian"})
            expectRamp({std::string("--pixel-type ") + stored.name + order}, stored.type);
}

TEST(Variants, LayoutsAndCompressions)
{
    for (const char* const options :
         {"--bigtiff", "--bigtiff --big-endian --tile 16", "--tile 64", "--rows-per-strip 1",
          "--rows-per-strip 7 --compression none", "--rows-per-strip 500", "--compression lzw",
          "--compression lzw --big-endian", "--compression packbits", "--compression zstd --no-predictor",
          "--compression lzma"})
        expectRamp({options});
    for (const char* const options :
         {"--tile 16", "--compression fax4", "--compression fax3 --rows-per-strip 5"})
        expectRamp({std::string("--pixel-type bit ") + options}, PixelType::Bit);
    for (const char* const options : {"--rgb", "--planar-rgb", "--planar-rgb --tile 32 --big-endian"})
        expectRamp({options, 3});
    for (const char* const options : {"--tile 16", "--compression webp"})
        expectRamp({std::string("--rgb --pixel-type uint8 ") + options, 3}, PixelType::UInt8);
}

TEST(Variants, FilesAndOrders)
{
    for (const Variant& variant : {
             Variant{"--positions 2", 2, 2},
             Variant{"--split channel", 2, 1, 2},
             Variant{"--split z --order XYZCT", 2, 1, 3},
             Variant{"--split time --order XYTCZ", 2, 1, 2},
             Variant{"--split position --positions 3", 2, 3, 3},
             Variant{"--files 5", 2, 1, 5},
             Variant{"--companion", 2, 1, 2},
             Variant{"--companion --split z --positions 2", 2, 2, 4},
             Variant{"--order XYZTC"},
             Variant{"--order XYCTZ --no-planes"},
             Variant{"--order XYTZC --no-tiffdata"},
         })
        expectRamp(variant);
}

TEST(Layout, TagsFollowTheOptions)
{
    const struct {
        const char* options;
        std::uint32_t tag;
        std::uint32_t expected;
        bool wide; // the tag's value has 32 bits
    } rows[] = {
        {"--tile 32", TIFFTAG_TILEWIDTH, 32, true},
        {"--rows-per-strip 7", TIFFTAG_ROWSPERSTRIP, 7, true},
        {"", TIFFTAG_COMPRESSION, COMPRESSION_ADOBE_DEFLATE, false},
        {"", TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL, false},
        {"--no-predictor", TIFFTAG_PREDICTOR, PREDICTOR_NONE, false},
        {"--pixel-type float", TIFFTAG_PREDICTOR, PREDICTOR_FLOATINGPOINT, false},
        {"--pixel-type float --big-endian", TIFFTAG_PREDICTOR, PREDICTOR_NONE, false},
        {"--compression zstd", TIFFTAG_COMPRESSION, COMPRESSION_ZSTD, false},
        {"--compression jpeg --pixel-type uint8", TIFFTAG_COMPRESSION, COMPRESSION_JPEG, false},
        {"--planar-rgb", TIFFTAG_PLANARCONFIG, PLANARCONFIG_SEPARATE, false},
    };
    for (const auto& row : rows) {
        const Sample sample(small + row.options);
        TIFF* tiff = TIFFOpen(sample.file.c_str(), "r");
        ASSERT_NE(tiff, nullptr);
        std::uint32_t wide = 0;
        std::uint16_t narrow = 0;
        row.wide ? TIFFGetFieldDefaulted(tiff, row.tag, &wide)
                 : TIFFGetFieldDefaulted(tiff, row.tag, &narrow);
        EXPECT_EQ(row.wide ? wide : narrow, row.expected) << row.options;
        TIFFClose(tiff);
    }
}

TEST(Layout, HeaderTellsByteOrderAndSize)
{
    const std::pair<const char*, std::string> rows[] = {{"", {'I', 'I', 42, 0}},
                                                        {"--big-endian", {'M', 'M', 0, 42}},
                                                        {"--bigtiff", {'I', 'I', 43, 0}},
                                                        {"--bigtiff --big-endian", {'M', 'M', 0, 43}}};
    for (const auto& [options, header] : rows)
        EXPECT_EQ(readBytes(Sample(small + options).file).substr(0, 4), header) << options;
}

TEST(Layout, PyramidLevelsHoldTheRampOfTheTopLeftPixels)
{
    const Sample sample(small + "--channels 2 --pyramid 2 --tile 16");
    const auto image = sample.open();
    ASSERT_EQ(image->levelCount(), 3);
    EXPECT_EQ(std::pair(image->levelWidth(2), image->levelHeight(2)), std::pair(37 / 4, 29 / 4));
    EXPECT_EQ(wrongPixels(*image), 0);
}

TEST(Layout, LossyJpegStaysCloseToConstantPlanes)
{
    const Sample sample(
        "--size 37x29 --pattern planes --channels 2 --pixel-type uint8 --compression jpeg --tile 16");
    const auto image = sample.open();
    const std::vector<float> pixels = readWhole(*image, {1, 1, 0, 0});
    ASSERT_FALSE(pixels.empty()) << image->lastError();
    for (const float value : pixels)
        ASSERT_NEAR(value, (101 + 1009) % 256, 2);
}

TEST(ImageJ, HyperstackWithItsColoursAndRanges)
{
    for (const std::string endian : {"", "--big-endian"}) {
        const Sample sample(small + "--channels 2 --imagej " + endian);
        const std::string text = readDescription(sample.file);
        for (const char* const line : {"\nimages=12\n", "\nhyperstack=true\n", "\nfinterval=30\n"})
            EXPECT_THAT(text, HasSubstr(line));
        const auto image = sample.open();
        EXPECT_THAT(sizesOf(*image), ElementsAre(3, 2, 2, 1));
        EXPECT_THAT(image->info().spacing,
                    ElementsAre(FloatNear(0.10833f, 1e-5f), FloatNear(0.10833f, 1e-5f), 0.5f));
        EXPECT_EQ(wrongPixels(*image), 0);
        const std::vector<image::Wavelength>& wavelengths = image->info().wavelengths;
        EXPECT_EQ(wavelengths[0].colorIndex, 4);
        EXPECT_EQ(wavelengths[1].colorIndex, 2);
        EXPECT_EQ(wavelengths[1].displayMin, 100.0f);
        EXPECT_EQ(wavelengths[1].displayMax, 1600.0f);
    }
}

TEST(Plain, HasNoDescription)
{
    EXPECT_EQ(readDescription(Sample(small + "--plain").file), "");
}

TEST(Failures, WrongUsageGivesASentenceAndStatus2)
{
    for (const char* const options :
         {"", "--size 12 a.tif", "--size 0x5 a.tif", "--size -4x5 a.tif", "--z 0 a.tif", "--channels 9 a.tif",
          "--pixel-type word a.tif", "--compression fax4 a.tif", "--compression jpeg a.tif",
          "--tile 20 a.tif", "--tile 16 --rows-per-strip 4 a.tif", "--size 4x4 --pyramid 3 a.tif",
          "--imagej --pixel-type double a.tif", "--plain --split z a.tif", "--split z --files 2 a.tif",
          "--z 1 --time 1 --channels 1 --files 2 a.tif", "--rgb --channels 4 a.tif", "--unheard-of a.tif"}) {
        const TempFolder folder;
        const Outcome outcome = makeSample(folder, options);
        EXPECT_EQ(outcome.status, 2) << options;
        EXPECT_THAT(outcome.errors, testing::MatchesRegex("makesample: [^\n]+\n")) << options;
        EXPECT_THAT(namesIn(folder), IsEmpty()) << options;
    }
}

TEST(Failures, UnwritableOutputGivesASentenceAndStatus1AndLeavesWhatWasThere)
{
    const std::string limited = "ulimit -f 64; ";
    const std::pair<std::string, std::string> rows[] = {
        {"--pattern ramp missing/a.tif", ""},
        {"--pattern ramp missing/a.ome.tif --companion", ""},
        {"--pattern ramp .", ""},
        {"--pattern ramp --compression none a.tif", limited},           // one file of 31 MB
        {"--pattern ramp --compression none --split z a.tif", limited}, // five of them
    };
    for (const auto& [options, before] : rows) {
        const TempFolder folder;
        writeBytes(folder / "a.tif", "older");
        const Outcome outcome = makeSample(folder, options, before);
        EXPECT_EQ(outcome.status, 1) << options;
        EXPECT_THAT(outcome.errors, testing::MatchesRegex("makesample: Cannot write [^\n]+\n")) << options;
        EXPECT_EQ(readBytes(folder / "a.tif"), "older") << options;
        EXPECT_THAT(namesIn(folder), ElementsAre("a.tif")) << options;
    }
}
