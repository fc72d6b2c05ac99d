// Stacks as ImageJ writes them.
#include "tests/unit/image/TestFiles.h"

#include <gtest/gtest.h>
#include <tiffio.h>

using namespace image;

static std::string header(const std::string& fields)
{
    return "ImageJ=1.54f\n" + fields;
}

TEST(ImageJ, HyperstackOrderSpacingAndRange)
{
    TiffSpec spec;
    spec.pages = 12;
    spec.resolution = 4;
    spec.description = header("images=12\nchannels=2\nslices=3\nframes=2\nhyperstack=true\nmode=composite\n"
                              "unit=\\u00B5m\nspacing=0.75\nfinterval=0.5\nmin=1\nmax=9\n");
    const TempFolder folder;
    writeTiff(folder / "h.tif", spec);
    const auto image = ImageFile::open(folder / "h.tif");
    const ImageInfo& info = image->info();
    EXPECT_EQ(std::tuple(info.sizeZ, info.sizeW, info.sizeT, info.sizeP), std::tuple(3, 2, 2, 1));
    EXPECT_EQ(info.format, "ImageJ hyperstack");
    EXPECT_FLOAT_EQ(info.spacing[0], 0.25f);
    EXPECT_FLOAT_EQ(info.spacing[2], 0.75f);
    EXPECT_NE(info.wavelengths[0].colorIndex, info.wavelengths[1].colorIndex);
    EXPECT_EQ(firstPixel(*image, {2, 1, 1, 0}), storedValue(spec, 0, 0, 11, 0));
    EXPECT_EQ(firstPixel(*image, {1, 0, 1, 0}), storedValue(spec, 0, 0, 8, 0));
    EXPECT_FALSE(image->extendedHeader({0, 0, 1, 0}, TimeStampSeconds));
}

TEST(ImageJ, UnitsOfLength)
{
    struct Row {
        const char* unit;
        float spacing; // 0: not calibrated
    };
    static constexpr Row rows[] = {
        {"micron", 0.5f}, {"um", 0.5f},    {"\u00b5m", 0.5f},  {"\xb5m", 0.5f}, {"nm", 0.0005f},
        {"mm", 500.0f},   {"cm", 5000.0f}, {"inch", 12700.0f}, {"pixel", 0},    {"furlong?", 0},
    };
    const TempFolder folder;
    for (const Row& row : rows) {
        TiffSpec spec;
        spec.resolution = 2;
        spec.description = header(std::string("unit=") + row.unit + "\n");
        writeTiff(folder / "u.tif", spec);
        const auto image = ImageFile::open(folder / "u.tif");
        EXPECT_EQ(image->info().calibrated, row.spacing > 0) << row.unit;
        EXPECT_FLOAT_EQ(image->info().spacing[0], row.spacing > 0 ? row.spacing : 1.0f) << row.unit;
    }
}

// Over 4 GB there is one page and the other planes follow its data.
TEST(ImageJ, PlanesBehindASinglePage)
{
    TiffSpec spec;
    spec.bigEndian = true;
    spec.rowsPerStrip = spec.height;
    spec.description = header("images=6\nslices=3\nframes=2\n");
    const TempFolder folder;
    writeTiff(folder / "one.tif", spec);
    // Data behind the whole file: a new directory is not needed when the first strip's offset is moved there.
    std::string bytes = readBytes(folder / "one.tif");
    const std::size_t planeBytes = static_cast<std::size_t>(spec.width) * spec.height * 2, end = bytes.size();
    for (int page = 0; page < 5; ++page) // one plane is missing
        for (std::size_t i = 0; i < planeBytes; i += 2) {
            const std::size_t pixel = i / 2;
            const auto value = static_cast<unsigned>(storedValue(
                spec, static_cast<int>(pixel % spec.width), static_cast<int>(pixel / spec.width), page, 0));
            bytes += {static_cast<char>(value >> 8), static_cast<char>(value)};
        }
    const std::string entry("\x01\x11\x00\x04\x00\x00\x00\x01", 8); // StripOffsets, LONG, 1
    const std::size_t at = bytes.find(entry);
    ASSERT_NE(at, std::string::npos);
    for (std::size_t i = 0; i < 4; ++i)
        bytes[at + 8 + i] = static_cast<char>(end >> (24 - 8 * i));
    writeBytes(folder / "one.tif", bytes);
    const auto image = ImageFile::open(folder / "one.tif");
    EXPECT_EQ(image->info().sizeZ, 3);
    EXPECT_EQ(image->info().sizeT, 2);
    float value = 0;
    ASSERT_TRUE(image->read({1, 0, 1, 0}, {36, 28, 36, 28}, {&value, 1})) << image->lastError();
    EXPECT_EQ(value, storedValue(spec, 36, 28, 4, 0));
    EXPECT_EQ(firstPixel(*image, {2, 0, 0, 0}), storedValue(spec, 0, 0, 2, 0));
    EXPECT_FALSE(image->hasSection({2, 0, 1, 0}));
}

TEST(ImageJ, DimensionsThatDoNotFitAreASimpleStack)
{
    const TempFolder folder;
    for (const char* const fields :
         {"images=3\nchannels=2\n", "images=3\nslices=999999999\nframes=999999999\n", "images=-4\n",
          "channels=nan\n", "images=3\nslices=1e300\n"}) {
        TiffSpec spec;
        spec.pages = 3;
        spec.description = header(fields);
        writeTiff(folder / "odd.tif", spec);
        const auto image = ImageFile::open(folder / "odd.tif");
        EXPECT_EQ(image->info().sizeZ, 3) << fields;
        EXPECT_EQ(image->info().sizeW, 1) << fields;
    }
}

TEST(ImageJ, SignedValuesAreStoredWithAnOffset)
{
    TiffSpec spec;
    spec.description = header("cf=0\nc0=-32768.0\nc1=1.0\nvunit=gray value\n");
    const TempFolder folder;
    writeTiff(folder / "s.tif", spec);
    const auto image = ImageFile::open(folder / "s.tif");
    EXPECT_EQ(image->info().pixelType, PixelType::Int16);
    EXPECT_EQ(firstPixel(*image, {}), storedValue(spec, 0, 0, 0, 0) - 32768);
}
