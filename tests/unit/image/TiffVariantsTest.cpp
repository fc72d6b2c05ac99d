// Every way to store pixels, as a table: what is read is what was written, as a whole and rectangle by
// rectangle.
#include "platform/image/BlockCache.h"
#include "tests/unit/image/TestFiles.h"

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>
#include <thread>
#include <tiffio.h>

using namespace image;
using testing::ElementsAre;
using testing::HasSubstr;

static std::string nameOf(const TiffSpec& s)
{
    return std::string(s.kind.name) + (s.bigEndian ? " big-endian" : "") + (s.bigTiff ? " BigTIFF" : "") +
           (s.planar ? " planar" : "") + " samples " + std::to_string(s.samples) + " tile " +
           std::to_string(s.tile) + " rows " + std::to_string(s.rowsPerStrip) + " compression " +
           std::to_string(s.compression) + " predictor " + std::to_string(s.predictor);
}

static void expectRectangle(ImageFile& image, const TiffSpec& spec, const SectionIndex& section,
                            const PixelRect& rect, double tolerance)
{
    std::vector<float> out(static_cast<std::size_t>(rect.width()) * rect.height());
    ASSERT_TRUE(image.read(section, rect, out)) << image.lastError();
    for (std::size_t i = 0; i < out.size(); ++i) {
        const int x = rect.xFirst + static_cast<int>(i) % rect.width();
        const int y = rect.yFirst + static_cast<int>(i) / rect.width();
        ASSERT_NEAR(out[i], storedValue(spec, x, y, section.z, section.w), tolerance)
            << "pixel " << x << ", " << y << " page " << section.z << " sample " << section.w;
    }
}

// Writes the file and compares every section, as a whole and in random rectangles.
static void expectRoundTrip(const TiffSpec& spec, double tolerance = 0)
{
    SCOPED_TRACE(nameOf(spec));
    const TempFolder folder;
    const auto image = writeAndOpen(folder / "a.tif", spec);
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

static constexpr PixelKind kinds[] = {
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
static void expectRoundTrips(TiffSpec spec)
{
    for (const bool bigEndian : {false, true})
        for (const int compression : {COMPRESSION_NONE, COMPRESSION_ADOBE_DEFLATE}) {
            spec.bigEndian = bigEndian;
            spec.bigTiff = bigEndian && spec.tile;
            spec.compression = compression;
            expectRoundTrip(spec);
        }
}

TEST(TiffVariants, EveryTypeInEveryLayoutAndByteOrder)
{
    static constexpr struct {
        int samples;
        bool planar;
        int tile, rowsPerStrip;
    } layouts[] = {
        {1, false, 0, 29}, // the whole page in one strip
        {1, false, 0, 1},  {1, false, 16, 0}, {3, false, 0, 7}, {3, true, 0, 7}, {3, true, 16, 0},
    };
    for (const PixelKind& kind : kinds)
        for (const auto& layout : layouts) {
            TiffSpec spec;
            spec.kind = kind;
            spec.samples = layout.samples;
            spec.planar = layout.planar;
            spec.tile = layout.tile;
            spec.rowsPerStrip = layout.rowsPerStrip;
            spec.pages = 2;
            expectRoundTrips(spec);
            if (HasFailure())
                return;
        }
}

TEST(TiffVariants, EveryCodec)
{
    static constexpr struct {
        int compression;
        PixelKind kind;
        int samples, predictor, tile, fillOrder;
    } rows[] = {
        {COMPRESSION_NONE, bitKind, 1, 1, 0, FILLORDER_LSB2MSB},
        {COMPRESSION_LZW, wordKind, 1, 2, 0, 1},
        {COMPRESSION_LZW, byteKind, 3, 2, 16, 1},
        {COMPRESSION_PACKBITS, byteKind, 1, 1, 0, 1},
        {COMPRESSION_DEFLATE, wordKind, 1, 2, 16, 1},
        {COMPRESSION_ADOBE_DEFLATE, floatKind, 1, 3, 0, 1},
        {COMPRESSION_LZMA, wordKind, 1, 1, 0, 1},
        {COMPRESSION_ZSTD, wordKind, 1, 2, 0, 1},
        {COMPRESSION_LERC, wordKind, 1, 1, 0, 1},
        {COMPRESSION_WEBP, byteKind, 3, 1, 0, 1},
        {COMPRESSION_JPEG, byteKind, 1, 1, 0, 1}, // loses a little
        {COMPRESSION_CCITTRLE, bitKind, 1, 1, 0, 1},
        {COMPRESSION_CCITTFAX3, bitKind, 1, 1, 0, 1},
        {COMPRESSION_CCITTFAX4, bitKind, 1, 1, 0, FILLORDER_LSB2MSB},
        {COMPRESSION_JBIG, bitKind, 1, 1, 0, 1},
    };
    int tested = 0;
    for (const auto& row : rows) {
        if (!TIFFIsCODECConfigured(static_cast<std::uint16_t>(row.compression)))
            continue;
        TiffSpec spec;
        spec.kind = row.kind;
        spec.samples = row.samples;
        spec.tile = row.tile;
        spec.compression = row.compression;
        spec.predictor = row.predictor;
        spec.fillOrder = row.fillOrder;
        spec.smooth = row.compression == COMPRESSION_JPEG;
        // A whole strip, because JBIG writes no other.
        spec.rowsPerStrip = row.compression == COMPRESSION_JBIG ? spec.height : 8;
        expectRoundTrip(spec, spec.smooth ? 6 : 0);
        ++tested;
    }
    EXPECT_GE(tested, 10);
}

TEST(TiffVariants, WhiteIsZeroIsTurnedAround)
{
    for (const PixelKind& kind : {bitKind, byteKind, wordKind}) {
        TiffSpec spec;
        spec.kind = kind;
        spec.photometric = PHOTOMETRIC_MINISWHITE;
        const TempFolder folder;
        const auto image = writeAndOpen(folder / "w.tif", spec);
        EXPECT_EQ(firstPixel(*image, {}), std::ldexp(1.0, kind.bits) - 1 - storedValue(spec, 0, 0));
    }
}

// Colours that libtiff converts: cyan, magenta, yellow and black inks become red, green and blue.
TEST(TiffVariants, InksBecomeColours)
{
    for (const int tile : {0, 16}) {
        TiffSpec spec;
        spec.kind = byteKind;
        spec.samples = 4;
        spec.tile = tile;
        spec.photometric = PHOTOMETRIC_SEPARATED;
        const TempFolder folder;
        const auto image = writeAndOpen(folder / "i.tif", spec);
        EXPECT_THAT(sizesOf(*image), ElementsAre(1, 3, 1, 1));
        const int x = 33, y = 20;
        for (int w = 0; w < 3; ++w) {
            float value = 0;
            ASSERT_TRUE(image->read({0, w, 0, 0}, {x, y, x, y}, {&value, 1})) << image->lastError();
            const double ink = storedValue(spec, x, y, 0, w), black = storedValue(spec, x, y, 0, 3);
            EXPECT_NEAR(value, (255 - ink) * (255 - black) / 255, 1) << "tile " << tile << " sample " << w;
        }
    }
}

// Large enough to be split over the cores and to span several groups of blocks.
TEST(TiffVariants, LargeReadsEqualSmallOnes)
{
    for (const int tile : {0, 256})
        for (const int compression : {COMPRESSION_NONE, COMPRESSION_ADOBE_DEFLATE}) {
            TiffSpec spec;
            spec.width = 1500;
            spec.height = 1100;
            spec.tile = tile;
            spec.compression = compression;
            const TempFolder folder;
            const auto image = writeAndOpen(folder / "l.tif", spec);
            expectRectangle(*image, spec, {}, {0, 0, 1499, 1099}, 0);
            expectRectangle(*image, spec, {}, {400, 777, 1099, 777}, 0);
        }
}

TEST(TiffVariants, ReducedCopiesAreLevels)
{
    TiffSpec spec;
    spec.width = 128;
    spec.height = 96;
    spec.tile = 16;
    spec.pages = 2;
    spec.reducedWidths = {64, 32};
    const TempFolder folder;
    const auto image = writeAndOpen(folder / "p.tif", spec);
    ASSERT_EQ(image->levelCount(), 3);
    EXPECT_EQ(image->info().sizeZ, 2);
    EXPECT_EQ(image->levelWidth(2), 32);
    EXPECT_EQ(image->levelHeight(1), 48);
    EXPECT_DOUBLE_EQ(image->levelScale(2), 4.0);
    float value = 0;
    ASSERT_TRUE(image->readLevel({1, 0, 0, 0}, 2, {31, 23, 31, 23}, {&value, 1}));
    EXPECT_EQ(value, storedValue(spec, 31, 23, 1));
    EXPECT_FALSE(image->readLevel({1, 0, 0, 0}, 2, {32, 0, 32, 0}, {&value, 1}));
    EXPECT_FALSE(image->readLevel({}, 3, {0, 0, 0, 0}, {&value, 1}));
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
    const TempFolder folder;
    const auto image = writeAndOpen(folder / "a.tif", {});
    std::vector<float> one(1);
    for (const auto& row : rows) {
        EXPECT_FALSE(image->read(row.section, row.rect, one)) << row.rect.xFirst << ", " << row.rect.yFirst;
        EXPECT_THAT(image->lastError(), HasSubstr("a.tif"));
    }
    EXPECT_FALSE(image->hasSection({0, 1, 0, 0}));
    EXPECT_TRUE(image->hasSection({}));
}

TEST(TiffVariants, PagesOfAnotherSizeAreNoSections)
{
    const TempFolder folder;
    TiffSpec spec, small;
    spec.pages = 2;
    writeTiff(folder / "m.tif", spec);
    small.width = 9;
    small.append = spec.append = true;
    writeTiff(folder / "m.tif", small);
    const auto image = writeAndOpen(folder / "m.tif", spec);
    EXPECT_THAT(sizesOf(*image), ElementsAre(4, 1, 1, 1));
    EXPECT_EQ(image->levelCount(), 1);
    EXPECT_EQ(firstPixel(*image, {3, 0, 0, 0}), storedValue(spec, 0, 0, 1));
}

// The viewer reads on one thread while the range scan reads on another.
TEST(TiffVariants, ThreadsReadTheSameImage)
{
    TiffSpec spec;
    spec.width = spec.height = 300;
    spec.pages = 6;
    spec.compression = COMPRESSION_LZW;
    const TempFolder folder;
    const auto image = writeAndOpen(folder / "t.tif", spec);
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
