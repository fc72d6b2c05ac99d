// Every way to store pixels, as a table: what is read is what was written, as a whole and rectangle by
// rectangle.
#include "tests/unit/image/TestFiles.h"

#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <thread>
#include <tiffio.h>

using namespace image;

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
    {"float", 32, 3, PixelType::Float32},
    {"uint64", 64, 1, PixelType::Float64},
    {"int64", 64, 2, PixelType::Float64},
    {"double", 64, 3, PixelType::Float64},
};

static std::string nameOf(const TiffSpec& s)
{
    return std::string(s.kind.name) + (s.bigEndian ? " big-endian" : "") + (s.bigTiff ? " BigTIFF" : "") +
           (s.planar ? " planar" : "") + " samples " + std::to_string(s.samples) + " tile " +
           std::to_string(s.tile) + " rows " + std::to_string(s.rowsPerStrip) + " compression " +
           std::to_string(s.compression) + " predictor " + std::to_string(s.predictor);
}

// Reads random rectangles of every section and compares each pixel.
static void expectPixels(ImageFile& image, const TiffSpec& spec, double tolerance)
{
    std::mt19937 random(5);
    const auto pick = [&](int from, int to) { return std::uniform_int_distribution(from, to)(random); };
    for (int page = 0; page < spec.pages; ++page)
        for (int sample = 0; sample < spec.samples; ++sample)
            for (int round = 0; round < 6; ++round) {
                PixelRect rect{0, 0, spec.width - 1, spec.height - 1};
                if (round > 0) {
                    rect.xFirst = pick(0, spec.width - 1);
                    rect.yFirst = pick(0, spec.height - 1);
                    rect.xLast = pick(rect.xFirst, spec.width - 1);
                    rect.yLast = pick(rect.yFirst, spec.height - 1);
                }
                std::vector<float> out(static_cast<std::size_t>(rect.width()) * rect.height());
                ASSERT_TRUE(image.read({page, sample, 0, 0}, rect, out)) << image.lastError();
                for (std::size_t i = 0; i < out.size(); ++i) {
                    const int x = rect.xFirst + static_cast<int>(i) % rect.width();
                    const int y = rect.yFirst + static_cast<int>(i) / rect.width();
                    ASSERT_NEAR(out[i], storedValue(spec, x, y, page, sample), tolerance)
                        << "pixel " << x << ", " << y << " page " << page << " sample " << sample;
                }
            }
}

static void expectRoundTrip(const TiffSpec& spec, double tolerance = 0)
{
    SCOPED_TRACE(nameOf(spec));
    const TempFolder folder;
    writeTiff(folder / "a.tif", spec);
    const std::unique_ptr<ImageFile> image = ImageFile::open(folder / "a.tif");
    EXPECT_EQ(image->info().width, spec.width);
    EXPECT_EQ(image->info().height, spec.height);
    EXPECT_EQ(image->info().sizeZ, spec.pages);
    EXPECT_EQ(image->info().sizeW, spec.samples);
    EXPECT_EQ(image->info().pixelType, spec.kind.type);
    EXPECT_FALSE(image->info().calibrated);
    expectPixels(*image, spec, tolerance);
}

TEST(TiffVariants, EveryTypeInEveryLayoutAndByteOrder)
{
    struct Layout {
        int samples;
        bool planar;
        int tile, rowsPerStrip;
    };
    static constexpr Layout layouts[] = {
        {1, false, 0, 29}, // the whole page in one strip
        {1, false, 0, 1},  {1, false, 16, 0}, {3, false, 0, 7}, {3, true, 0, 7}, {3, true, 16, 0},
    };
    for (const PixelKind& kind : kinds)
        for (const Layout& layout : layouts)
            for (const bool bigEndian : {false, true})
                for (const int compression : {COMPRESSION_NONE, COMPRESSION_ADOBE_DEFLATE}) {
                    TiffSpec spec;
                    spec.kind = kind;
                    spec.samples = layout.samples;
                    spec.planar = layout.planar;
                    spec.tile = layout.tile;
                    spec.rowsPerStrip = layout.rowsPerStrip;
                    spec.bigEndian = bigEndian;
                    spec.bigTiff = bigEndian && layout.tile;
                    spec.compression = compression;
                    spec.pages = 2;
                    expectRoundTrip(spec);
                    if (::testing::Test::HasFailure())
                        return;
                }
}

TEST(TiffVariants, EveryCodec)
{
    struct Row {
        int compression;
        PixelKind kind;
        int samples, predictor, tile;
        double tolerance;
    };
    static constexpr PixelKind real = {"float", 32, 3, PixelType::Float32};
    static constexpr Row rows[] = {
        {COMPRESSION_LZW, wordKind, 1, 2, 0, 0},       {COMPRESSION_LZW, byteKind, 3, 2, 16, 0},
        {COMPRESSION_PACKBITS, byteKind, 1, 1, 0, 0},  {COMPRESSION_DEFLATE, wordKind, 1, 2, 16, 0},
        {COMPRESSION_ADOBE_DEFLATE, real, 1, 3, 0, 0}, {COMPRESSION_LZMA, wordKind, 1, 1, 0, 0},
        {COMPRESSION_ZSTD, wordKind, 1, 2, 0, 0},      {COMPRESSION_LERC, wordKind, 1, 1, 0, 0},
        {COMPRESSION_WEBP, byteKind, 3, 1, 0, 0},      {COMPRESSION_CCITTRLE, bitKind, 1, 1, 0, 0},
        {COMPRESSION_CCITTFAX3, bitKind, 1, 1, 0, 0},  {COMPRESSION_CCITTFAX4, bitKind, 1, 1, 0, 0},
        {COMPRESSION_JBIG, bitKind, 1, 1, 0, 0},
    };
    int tested = 0;
    for (const Row& row : rows) {
        if (!TIFFIsCODECConfigured(static_cast<std::uint16_t>(row.compression)))
            continue;
        TiffSpec spec;
        spec.kind = row.kind;
        spec.samples = row.samples;
        spec.tile = row.tile;
        spec.compression = row.compression;
        spec.predictor = row.predictor;
        // A whole strip, because JBIG writes no other.
        spec.rowsPerStrip = row.compression == COMPRESSION_JBIG ? spec.height : 8;
        expectRoundTrip(spec, row.tolerance);
        ++tested;
    }
    EXPECT_GE(tested, 8);
}

// A lossy codec: the values of a smooth picture come back nearly.
TEST(TiffVariants, JpegKeepsGrayValues)
{
    const TempFolder folder;
    const int side = 64;
    TIFF* const tiff = TIFFOpen((folder / "j.tif").c_str(), "w");
    ASSERT_TRUE(tiff);
    for (const auto& [tag, value] : {std::pair{TIFFTAG_IMAGEWIDTH, side},
                                     {TIFFTAG_IMAGELENGTH, side},
                                     {TIFFTAG_BITSPERSAMPLE, 8},
                                     {TIFFTAG_SAMPLESPERPIXEL, 1},
                                     {TIFFTAG_COMPRESSION, COMPRESSION_JPEG},
                                     {TIFFTAG_PHOTOMETRIC, 1},
                                     {TIFFTAG_ROWSPERSTRIP, 16}})
        TIFFSetField(tiff, tag, value);
    std::vector<std::uint8_t> row(side);
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x)
            row[static_cast<std::size_t>(x)] = static_cast<std::uint8_t>(2 * x + y);
        TIFFWriteScanline(tiff, row.data(), static_cast<std::uint32_t>(y));
    }
    TIFFClose(tiff);
    const auto image = ImageFile::open(folder / "j.tif");
    const std::vector<float> pixels = readWhole(*image, {});
    ASSERT_EQ(pixels.size(), static_cast<std::size_t>(side * side)) << image->lastError();
    for (int i = 0; i < side * side; ++i)
        ASSERT_NEAR(pixels[static_cast<std::size_t>(i)], 2 * (i % side) + i / side, 6);
}

TEST(TiffVariants, WhiteIsZeroIsTurnedAround)
{
    for (const PixelKind& kind : {bitKind, byteKind, wordKind}) {
        TiffSpec spec;
        spec.kind = kind;
        spec.photometric = PHOTOMETRIC_MINISWHITE;
        const TempFolder folder;
        writeTiff(folder / "w.tif", spec);
        const auto image = ImageFile::open(folder / "w.tif");
        EXPECT_EQ(firstPixel(*image, {}), std::ldexp(1.0, kind.bits) - 1 - storedValue(spec, 0, 0, 0, 0));
    }
}

TEST(TiffVariants, BitsInReverseFillOrder)
{
    TiffSpec spec;
    spec.kind = bitKind;
    spec.fillOrder = FILLORDER_LSB2MSB;
    expectRoundTrip(spec);
    spec.compression = COMPRESSION_CCITTFAX4;
    expectRoundTrip(spec);
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
            writeTiff(folder / "l.tif", spec);
            const auto image = ImageFile::open(folder / "l.tif");
            const std::vector<float> all = readWhole(*image, {});
            ASSERT_FALSE(all.empty()) << image->lastError();
            for (std::size_t i = 0; i < all.size(); ++i)
                ASSERT_EQ(all[i],
                          storedValue(spec, static_cast<int>(i % 1500), static_cast<int>(i / 1500), 0, 0));
            std::vector<float> row(700);
            ASSERT_TRUE(image->read({}, {400, 777, 1099, 777}, row));
            EXPECT_TRUE(std::equal(row.begin(), row.end(), all.begin() + 777 * 1500 + 400));
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
    writeTiff(folder / "p.tif", spec);
    const auto image = ImageFile::open(folder / "p.tif");
    ASSERT_EQ(image->levelCount(), 3);
    EXPECT_EQ(image->info().sizeZ, 2);
    EXPECT_EQ(image->levelWidth(2), 32);
    EXPECT_EQ(image->levelHeight(1), 48);
    EXPECT_DOUBLE_EQ(image->levelScale(2), 4.0);
    float value = 0;
    ASSERT_TRUE(image->readLevel({1, 0, 0, 0}, 2, {31, 23, 31, 23}, {&value, 1}));
    EXPECT_EQ(value, storedValue(spec, 31, 23, 1, 0));
    EXPECT_FALSE(image->readLevel({1, 0, 0, 0}, 2, {32, 0, 32, 0}, {&value, 1}));
    EXPECT_FALSE(image->readLevel({}, 3, {0, 0, 0, 0}, {&value, 1}));
}

TEST(TiffVariants, RectanglesOutsideAreRefusedWithASentence)
{
    TiffSpec spec;
    const TempFolder folder;
    writeTiff(folder / "a.tif", spec);
    const auto image = ImageFile::open(folder / "a.tif");
    std::vector<float> one(1);
    struct Row {
        SectionIndex section;
        PixelRect rect;
    };
    static constexpr int far = 1 << 30;
    for (const Row& row : {Row{{}, {-1, 0, -1, 0}}, Row{{}, {37, 0, 37, 0}}, Row{{}, {0, 29, 0, 29}},
                           Row{{}, {1, 0, 0, 0}}, Row{{}, {-far, -far, far, far}}, Row{{}, {0, 0, 1, 0}},
                           Row{{1, 0, 0, 0}, {0, 0, 0, 0}}, Row{{0, -1, 0, 0}, {0, 0, 0, 0}}}) {
        EXPECT_FALSE(image->read(row.section, row.rect, one));
        EXPECT_NE(image->lastError().find("a.tif"), std::string::npos);
    }
    EXPECT_FALSE(image->hasSection({0, 1, 0, 0}));
    EXPECT_TRUE(image->hasSection({}));
}

TEST(TiffVariants, PagesOfAnotherSizeAreNoSections)
{
    const TempFolder folder;
    TIFF* const tiff = TIFFOpen((folder / "m.tif").c_str(), "w");
    ASSERT_TRUE(tiff);
    for (const int width : {20, 20, 9, 20}) {
        TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, width);
        TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, 1);
        TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
        TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, 1);
        std::vector<std::uint8_t> row(20, static_cast<std::uint8_t>(TIFFCurrentDirectory(tiff) & 0xff));
        TIFFWriteScanline(tiff, row.data(), 0);
        TIFFWriteDirectory(tiff);
    }
    TIFFClose(tiff);
    const auto image = ImageFile::open(folder / "m.tif");
    EXPECT_EQ(image->info().sizeZ, 3);
    EXPECT_EQ(image->info().width, 20);
    EXPECT_EQ(readWhole(*image, {2, 0, 0, 0}).size(), 20u);
}

// The viewer reads on one thread while the range scan reads on another.
TEST(TiffVariants, ThreadsReadTheSameImage)
{
    TiffSpec spec;
    spec.width = spec.height = 300;
    spec.pages = 6;
    spec.compression = COMPRESSION_LZW;
    const TempFolder folder;
    writeTiff(folder / "t.tif", spec);
    const auto image = ImageFile::open(folder / "t.tif");
    std::atomic<int> wrong = 0;
    const auto readAll = [&](int shift) {
        for (int i = 0; i < 60; ++i) {
            const int page = (i * shift) % spec.pages;
            const std::vector<float> pixels = readWhole(*image, {page, 0, 0, 0});
            const std::size_t at = static_cast<std::size_t>(i) * 997 % 90000;
            const double expected =
                storedValue(spec, static_cast<int>(at % 300), static_cast<int>(at / 300), page, 0);
            wrong += pixels.empty() || pixels[at] != expected;
        }
    };
    setBlockCacheLimit(200'000); // less than one section: blocks come and go
    {
        const std::jthread first(readAll, 1), second(readAll, 5), third(readAll, 1);
    }
    setBlockCacheLimit(128u << 20);
    EXPECT_EQ(wrong, 0);
}
