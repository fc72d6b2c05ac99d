// SPDX-License-Identifier: MIT
// Every way to store pixels, as a table: what is read is what was written, as a whole and rectangle by
// rectangle.
#include "platform/image/BlockCache.h"
#include "tests/unit/image/TestFiles.h"

#include <atomic>
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <thread>
#include <tiffio.h>
#include <vector>

using namespace image;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

std::string nameOf(const TiffSpec& s)
{
    return std::string(s.kind.name) + (s.bigEndian ? " big-endian" : "") + (s.bigTiff ? " BigTIFF" : "") +
           (s.planar ? " planar" : "") + " samples " + std::to_string(s.samples) + " tile " +
           std::to_string(s.tile) + " rows " + std::to_string(s.rowsPerStrip) + " compression " +
           std::to_string(s.compression) + " predictor " + std::to_string(s.predictor);
}

void expectRectangle(ImageFile& image, const TiffSpec& spec, const SectionIndex& section,
                     const PixelRect& rect, double tolerance)
{
    std::vector<float> out(static_cast<std::size_t>(rect.width()) * rect.height());
    ASSERT_TRUE(image.read(section, rect, out)) << image.lastError();
    for (std::size_t i = 0; i < out.size(); ++i) {
        const int x = rect.xFirst + static_cast<int>(i) % rect.width();
        const int y = rect.yFirst + static_cast<int>(i) / rect.width();
        const double stored = storedValue(spec, x, y, section.z, section.w);
        const bool inverted = spec.photometric == PHOTOMETRIC_MINISWHITE;
        ASSERT_NEAR(out[i], inverted ? std::ldexp(1.0, spec.kind.bits) - 1 - stored : stored, tolerance)
            << "pixel " << x << ", " << y << " page " << section.z << " sample " << section.w;
    }
}

// Writes the file and compares every section, as a whole and in random rectangles.
void expectRoundTrip(const TiffSpec& spec, double tolerance = 0)
{
    SCOPED_TRACE(nameOf(spec));
    const TestImage image(spec);
    EXPECT_THAT(sizesOf(*image), ElementsAre(spec.pages, spec.samples, 1, 1));
    EXPECT_EQ(image->info().width, spec.width);
    EXPECT_EQ(image->info().height, spec.height);
    EXPECT_EQ(image->info().pixelType, spec.kind.type);
    EXPECT_FALSE(image->info().calibrated);
    std::mt19937 random(5);
    const auto pick = [&](int from, int to) { return std::uniform_int_distribution(from, to)(random); };
    for (int page = 0; page < spec.pages; ++page)
        for (int sample = 0; sample < spec.samples; ++sample) {
            PixelRect rect{0, 0, spec.width - 1, spec.height - 1};
            for (int round = 0; round < 6; ++round) {
                expectRectangle(*image, spec, {page, sample, 0, 0}, rect, tolerance);
                rect.xFirst = pick(0, spec.width - 1);
                rect.yFirst = pick(0, spec.height - 1);
                rect.xLast = pick(rect.xFirst, spec.width - 1);
                rect.yLast = pick(rect.yFirst, spec.height - 1);
            }
        }
}

constexpr PixelKind kinds[] = {
    bitKind,
    {"2 bits", 2, 1, PixelType::UInt8},
    {"4 bits", 4, 1, PixelType::UInt8},
    {"12 bits", 12, 1, PixelType::UInt16},
    byteKind,
    {"int8", 8, 2, PixelType::Int8},
    wordKind,
    {"int16", 16, 2, PixelType::Int16},
    {"half", 16, 3, PixelType::Float32},
    {"uint24", 24, 1, PixelType::UInt32},
    {"uint32", 32, 1, PixelType::UInt32},
    {"int32", 32, 2, PixelType::Int32},
    floatKind,
    {"uint64", 64, 1, PixelType::Float64},
    {"int64", 64, 2, PixelType::Float64},
    {"double", 64, 3, PixelType::Float64},
};

// Each in both byte orders, uncompressed and compressed.
void expectRoundTrips(TiffSpec spec)
{
    for (const bool bigEndian : {false, true})
        for (const int compression : {COMPRESSION_NONE, COMPRESSION_ADOBE_DEFLATE}) {
            spec.bigEndian = bigEndian;
            spec.bigTiff = bigEndian && spec.tile;
            spec.compression = compression;
            expectRoundTrip(spec);
        }
}

} // namespace

TEST(TiffVariants, EveryTypeInEveryLayoutAndByteOrder)
{
    const TiffSpec layouts[] = {
        {.rowsPerStrip = 29}, // the whole page in one strip
        {.rowsPerStrip = 1},
        {.tile = 16},
        {.samples = 3, .rowsPerStrip = 7},
        {.samples = 3, .planar = true, .rowsPerStrip = 7},
        {.samples = 3, .planar = true, .tile = 16},
    };
    for (const PixelKind& kind : kinds)
        for (TiffSpec spec : layouts) {
            spec.kind = kind;
            spec.pages = 2;
            expectRoundTrips(spec);
            if (HasFailure())
                return;
        }
}

TEST(TiffVariants, EveryCodec)
{
    const TiffSpec rows[] = {
        {.compression = COMPRESSION_LZW, .predictor = 2},
        {.kind = byteKind, .samples = 3, .tile = 16, .compression = COMPRESSION_LZW, .predictor = 2},
        {.kind = byteKind, .compression = COMPRESSION_PACKBITS},
        {.tile = 16, .compression = COMPRESSION_DEFLATE, .predictor = 2},
        {.kind = floatKind, .compression = COMPRESSION_ADOBE_DEFLATE, .predictor = 3},
        {.compression = COMPRESSION_LZMA},
        {.compression = COMPRESSION_ZSTD, .predictor = 2},
        {.compression = COMPRESSION_LERC},
        {.kind = byteKind, .samples = 3, .compression = COMPRESSION_WEBP},
        {.kind = byteKind, .compression = COMPRESSION_JPEG, .smooth = true}, // loses a little
        {.kind = bitKind, .compression = COMPRESSION_CCITTRLE},
        {.kind = bitKind, .compression = COMPRESSION_CCITTFAX3},
        {.kind = bitKind, .compression = COMPRESSION_CCITTFAX4, .fillOrder = FILLORDER_LSB2MSB},
        {.kind = bitKind, .rowsPerStrip = 29, .compression = COMPRESSION_JBIG}, // takes whole pages only
    };
    int tested = 0;
    for (const TiffSpec& spec : rows)
        if (TIFFIsCODECConfigured(static_cast<std::uint16_t>(spec.compression))) {
            expectRoundTrip(spec, spec.smooth ? 6 : 0);
            ++tested;
        }
    EXPECT_GE(tested, 10);
}

TEST(TiffVariants, WhiteIsZeroAndBitsInReverse)
{
    for (const PixelKind& kind : {bitKind, byteKind, wordKind})
        expectRoundTrip({.kind = kind, .photometric = PHOTOMETRIC_MINISWHITE});
    expectRoundTrip({.kind = bitKind, .fillOrder = FILLORDER_LSB2MSB});
}

// Colours that libtiff converts: cyan, magenta, yellow and black inks become red, green and blue.
TEST(TiffVariants, InksBecomeColours)
{
    for (const int tile : {0, 16}) {
        const TiffSpec spec{
            .kind = byteKind, .samples = 4, .tile = tile, .photometric = PHOTOMETRIC_SEPARATED};
        const TestImage image(spec);
        EXPECT_THAT(sizesOf(*image), ElementsAre(1, 3, 1, 1));
        const int x = 33, y = 20;
        for (int w = 0; w < 3; ++w) {
            const double ink = storedValue(spec, x, y, 0, w), black = storedValue(spec, x, y, 0, 3);
            EXPECT_NEAR(pixelAt(*image, {0, w, 0, 0}, x, y), (255 - ink) * (255 - black) / 255, 1)
                << "tile " << tile << " sample " << w;
        }
    }
}

// Large enough to be split over the cores and to span several groups of blocks.
TEST(TiffVariants, LargeReadsEqualSmallOnes)
{
    for (const int tile : {0, 256})
        for (const int compression : {COMPRESSION_NONE, COMPRESSION_ADOBE_DEFLATE}) {
            const TiffSpec spec{.width = 1500, .height = 1100, .tile = tile, .compression = compression};
            const TestImage image(spec);
            expectRectangle(*image, spec, {}, {0, 0, 1499, 1099}, 0);
            expectRectangle(*image, spec, {}, {400, 777, 1099, 777}, 0);
        }
}

TEST(TiffVariants, ReducedCopiesAreLevels)
{
    const TiffSpec spec{.width = 128, .height = 96, .pages = 2, .tile = 16, .reducedWidths = {64, 32}};
    const TestImage image(spec);
    ASSERT_EQ(image->levelCount(), 3);
    EXPECT_EQ(image->info().sizeZ, 2);
    EXPECT_EQ(image->levelWidth(2), 32);
    EXPECT_EQ(image->levelHeight(1), 48);
    EXPECT_DOUBLE_EQ(image->levelScale(2), 4.0);
    const SectionIndex second{1, 0, 0, 0};
    EXPECT_EQ(pixelAt(*image, second, 31, 23, 2), storedValue(spec, 31, 23, 1));
    EXPECT_TRUE(std::isnan(pixelAt(*image, second, 32, 0, 2)));
    EXPECT_TRUE(std::isnan(pixelAt(*image, second, 0, 0, 3)));
}

TEST(TiffVariants, RectanglesOutsideAreRefusedWithASentence)
{
    constexpr int far = 1 << 30;
    const struct {
        SectionIndex section;
        PixelRect rect;
    } rows[] = {
        {{}, {-1, 0, -1, 0}},         {{}, {37, 0, 37, 0}},
        {{}, {0, 29, 0, 29}},         {{}, {1, 0, 0, 0}},
        {{}, {-far, -far, far, far}}, {{}, {0, 0, 1, 0}}, // two pixels into room for one
        {{1, 0, 0, 0}, {0, 0, 0, 0}}, {{0, -1, 0, 0}, {0, 0, 0, 0}},
    };
    const TestImage image({});
    std::vector<float> one(1);
    for (const auto& row : rows) {
        EXPECT_FALSE(image->read(row.section, row.rect, one)) << row.rect.xFirst << ", " << row.rect.yFirst;
        EXPECT_THAT(image->lastError(), HasSubstr("test.tif"));
    }
    EXPECT_FALSE(image->hasSection({0, 1, 0, 0}));
    EXPECT_TRUE(image->hasSection({}));
}

TEST(TiffVariants, PagesOfAnotherSizeAreNoSections)
{
    const TempFolder folder;
    writeTiff(folder / "m.tif", {.pages = 2});
    writeTiff(folder / "m.tif", {.width = 9, .append = true});
    const auto image = writeAndOpen(folder / "m.tif", {.pages = 2, .append = true});
    EXPECT_THAT(sizesOf(*image), ElementsAre(4, 1, 1, 1));
    EXPECT_EQ(image->levelCount(), 1);
    EXPECT_EQ(pixelAt(*image, {3, 0, 0, 0}), storedValue({}, 0, 0, 1));
}

// The viewer reads on one thread while the range scan reads on another.
TEST(TiffVariants, ThreadsReadTheSameImage)
{
    const TiffSpec spec{.width = 300, .height = 300, .pages = 6, .compression = COMPRESSION_LZW};
    const TestImage image(spec);
    std::atomic<int> wrong = 0;
    const auto readAll = [&](int shift) {
        for (int i = 0; i < 60; ++i) {
            const int page = i * shift % spec.pages, at = i * 997 % 90000;
            const std::vector<float> pixels = readWhole(*image, {page, 0, 0, 0});
            wrong += pixels.empty() ||
                     pixels[static_cast<std::size_t>(at)] != storedValue(spec, at % 300, at / 300, page);
        }
    };
    setBlockCacheLimit(200'000); // less than one section: blocks come and go
    {
        const std::jthread first(readAll, 1), second(readAll, 5), third(readAll, 1);
    }
    EXPECT_LE(BlockCache::instance().used(), 200'000u);
    setBlockCacheLimit(128u << 20);
    EXPECT_EQ(wrong, 0);
}
