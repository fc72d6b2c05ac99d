// SPDX-License-Identifier: MIT
// Stacks as ImageJ writes them.
#include "platform/base/DisplayColors.h"
#include "tests/unit/image/TestFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <tiffio.h>

#include <string>

using namespace image;
using testing::ElementsAre;

namespace {

const std::string start = "ImageJ=1.54f\n";

} // namespace

TEST(ImageJ, HyperstackOrderSpacingAndRange)
{
    const TiffSpec spec{.pages = 12,
                        .description = start + "images=12\nchannels=2\nslices=3\nframes=2\nhyperstack=true\n"
                                               "mode=composite\nunit=\\u00B5m\nspacing=0.75\nmin=1\nmax=9\n",
                        .resolution = 4};
    const TestImage image(spec);
    const ImageInfo& info = image->info();
    EXPECT_THAT(sizesOf(*image), ElementsAre(3, 2, 2, 1));
    EXPECT_EQ(info.format, "ImageJ hyperstack");
    EXPECT_THAT(info.spacing, ElementsAre(0.25f, 0.25f, 0.75f));
    EXPECT_EQ(info.wavelengths[0].colorIndex, base::Green);
    EXPECT_EQ(info.wavelengths[1].colorIndex, base::Magenta);
    EXPECT_EQ(pixelAt(*image, {2, 1, 1, 0}), storedValue(spec, 0, 0, 11));
    EXPECT_EQ(pixelAt(*image, {1, 0, 1, 0}), storedValue(spec, 0, 0, 8));
    EXPECT_FALSE(image->extendedHeader({0, 0, 1, 0}, TimeStampSeconds));
}

TEST(ImageJ, PixelsAsUnitAreNoCalibration)
{
    const TestImage image({.description = start + "unit=pixel\n", .resolution = 2});
    EXPECT_FALSE(image->info().calibrated);
    EXPECT_EQ(image->info().spacing[0], 1);
}

// Over 4 GB there is one page and the other planes follow its data: five planes written as one high page, of
// which only the first is declared. The sixth is missing.
TEST(ImageJ, PlanesBehindASinglePage)
{
    constexpr int height = 29;
    const TiffSpec spec{.height = 5 * height,
                        .rowsPerStrip = 5 * height,
                        .description = start + "images=6\nslices=3\nframes=2\n"};
    const TempFolder folder;
    writeTiff(folder / "one.tif", spec);
    std::string bytes = readBytes(folder / "one.tif");
    ASSERT_TRUE(overwriteTag(bytes, TIFFTAG_IMAGELENGTH, height));
    writeBytes(folder / "one.tif", bytes);
    const auto image = ImageFile::open(folder / "one.tif");
    EXPECT_THAT(sizesOf(*image), ElementsAre(3, 1, 2, 1));
    EXPECT_EQ(pixelAt(*image, {1, 0, 1, 0}, 36, 28), storedValue(spec, 36, 4 * height + 28));
    EXPECT_EQ(pixelAt(*image, {2, 0, 0, 0}), storedValue(spec, 0, 2 * height));
    EXPECT_FALSE(image->hasSection({2, 0, 1, 0}));
}

TEST(ImageJ, FrameIntervalGivesTheTimes)
{
    const TestImage image(
        {.pages = 3, .description = start + "images=3\nframes=3\nfinterval=250\ntunit=ms\n"});
    EXPECT_EQ(image->extendedHeader({0, 0, 2, 0}, TimeStampSeconds), 0.5);
}

TEST(ImageJ, DimensionsThatDoNotFitAreASimpleStack)
{
    for (const char* const fields :
         {"images=3\nchannels=2\n", "images=3\nslices=999999999\nframes=999999999\n", "images=-4\n",
          "channels=nan\n", "images=3\nslices=1e300\n"}) {
        const TestImage image({.pages = 3, .description = start + fields});
        EXPECT_THAT(sizesOf(*image), ElementsAre(3, 1, 1, 1)) << fields;
    }
}

TEST(ImageJ, SignedValuesAreStoredWithAnOffset)
{
    const TiffSpec spec{.description = start + "cf=0\nc0=-32768.0\nc1=1.0\nvunit=gray value\n"};
    const TestImage image(spec);
    EXPECT_EQ(image->info().pixelType, PixelType::Int16);
    EXPECT_EQ(pixelAt(*image, {}), storedValue(spec, 0, 0) - 32768);
}
