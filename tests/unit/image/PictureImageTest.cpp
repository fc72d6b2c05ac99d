// SPDX-License-Identifier: MIT
// PNG, JPEG and GIF as images: the values are those of the file.
#include "platform/base/DisplayColors.h"
#include "tests/unit/image/TestFiles.h"
#include "widgets/picture/Codecs.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <png.h>
#include <span>
#include <string>
#include <vector>

using namespace image;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

struct PngForm {
    const char* name;
    int bits, color;
    bool interlaced = false, gamma = false;
};

int samplesOf(const PngForm& form)
{
    if (form.color == PNG_COLOR_TYPE_PALETTE)
        return 1;
    return (form.color & PNG_COLOR_MASK_COLOR ? 3 : 1) + (form.color & PNG_COLOR_MASK_ALPHA ? 1 : 0);
}

constexpr int width = 13, height = 9;

// Of a sample, opacity included.
int valueAt(const PngForm& form, int x, int y, int sample)
{
    return (x * 37 + y * 1021 + sample * 4099) & ((1 << form.bits) - 1);
}

std::vector<png_byte> rowOf(const PngForm& form, int y)
{
    const int samples = samplesOf(form);
    std::vector<png_byte> row(static_cast<std::size_t>(width * samples * 2), 0);
    for (int i = 0; i < width * samples; ++i) {
        const int value = valueAt(form, i / samples, y, i % samples);
        if (form.bits == 16) {
            row[static_cast<std::size_t>(2 * i)] = static_cast<png_byte>(value >> 8);
            row[static_cast<std::size_t>(2 * i + 1)] = static_cast<png_byte>(value);
        } else {
            const int bit = i * form.bits;
            row[static_cast<std::size_t>(bit / 8)] |=
                static_cast<png_byte>(value << (8 - form.bits - bit % 8));
        }
    }
    return row;
}

void append(png_structp png, png_bytep data, png_size_t count)
{
    static_cast<std::string*>(png_get_io_ptr(png))->append(reinterpret_cast<char*>(data), count);
}

std::string pngOf(const PngForm& form)
{
    std::string bytes;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_write_fn(png, &bytes, append, nullptr);
    png_set_IHDR(png, info, width, height, form.bits, form.color,
                 form.interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    if (form.gamma)
        png_set_gAMA(png, info, 1.0);
    std::vector<png_color> colors;
    for (int i = 0; i < 16; ++i)
        colors.push_back({static_cast<png_byte>(i * 16), static_cast<png_byte>(255 - i * 16), 7});
    if (form.color == PNG_COLOR_TYPE_PALETTE)
        png_set_PLTE(png, info, colors.data(), 1 << form.bits);
    png_write_info(png, info);
    const int passes = png_set_interlace_handling(png);
    for (int pass = 0; pass < passes; ++pass)
        for (int y = 0; y < height; ++y)
            png_write_row(png, rowOf(form, y).data());
    png_write_end(png, nullptr);
    png_destroy_write_struct(&png, &info);
    return bytes;
}

// Of a picture that is never written.
std::string headOfPng(png_uint_32 side)
{
    std::string bytes;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_write_fn(png, &bytes, append, nullptr);
    png_set_IHDR(png, info, side, side, 16, PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    png_write_chunk(png, reinterpret_cast<png_const_bytep>("IDAT"), nullptr, 0);
    png_destroy_write_struct(&png, &info);
    return bytes;
}

std::string textOf(const std::vector<std::byte>& bytes)
{
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

picture::Picture evenPicture(std::uint8_t red, std::uint8_t green, std::uint8_t blue)
{
    picture::Picture picture(16, 8);
    for (std::size_t i = 0; i < picture.pixelCount(); ++i)
        std::ranges::copy(std::array<std::uint8_t, 4>{red, green, blue, 255}, &picture.rgba[4 * i]);
    return picture;
}

} // namespace

TEST(PictureImage, PngValuesAreThoseOfTheFile)
{
    const PngForm forms[] = {
        {"grey 8", 8, PNG_COLOR_TYPE_GRAY},
        {"grey 16", 16, PNG_COLOR_TYPE_GRAY},
        {"grey 16 with gamma", 16, PNG_COLOR_TYPE_GRAY, false, true},
        {"grey 8 with gamma", 8, PNG_COLOR_TYPE_GRAY, false, true},
        {"grey 2", 2, PNG_COLOR_TYPE_GRAY},
        {"bilevel", 1, PNG_COLOR_TYPE_GRAY},
        {"grey and opacity", 16, PNG_COLOR_TYPE_GRAY_ALPHA},
        {"colour 8", 8, PNG_COLOR_TYPE_RGB},
        {"colour 16, interlaced", 16, PNG_COLOR_TYPE_RGB, true},
        {"colour and opacity", 8, PNG_COLOR_TYPE_RGB_ALPHA, true},
    };
    const TempFolder folder;
    for (const PngForm& form : forms) {
        SCOPED_TRACE(form.name);
        writeBytes(folder / "picture.png", pngOf(form));
        const auto opened = ImageFile::open(folder / "picture.png");
        const int waves = form.color & PNG_COLOR_MASK_COLOR ? 3 : 1;
        EXPECT_THAT(sizesOf(*opened), ElementsAre(1, waves, 1, 1));
        EXPECT_EQ(opened->info().pixelType, form.bits == 16  ? PixelType::UInt16
                                            : form.bits == 1 ? PixelType::Bit
                                                             : PixelType::UInt8);
        EXPECT_FALSE(opened->info().calibrated);
        for (int w = 0; w < waves; ++w) {
            const std::vector<float> read = readWhole(*opened, {0, w, 0, 0});
            ASSERT_EQ(read.size(), static_cast<std::size_t>(width * height));
            for (int i = 0; i < width * height; ++i)
                ASSERT_EQ(read[static_cast<std::size_t>(i)], valueAt(form, i % width, i / width, w)) << i;
        }
        std::vector<float> part(6);
        ASSERT_TRUE(opened->read({0, waves - 1, 0, 0}, {4, 2, 6, 3}, part));
        EXPECT_EQ(part[5], valueAt(form, 6, 3, waves - 1));
        EXPECT_FALSE(opened->read({0, 0, 0, 0}, {4, 2, 13, 3}, part));
        EXPECT_THAT(opened->lastError(), HasSubstr("not inside"));
        EXPECT_FALSE(opened->hasSection({1, 0, 0, 0}));
    }
}

TEST(PictureImage, ColorTablesAreLookedUp)
{
    const TempFolder folder;
    writeBytes(folder / "picture.png", pngOf({"table", 4, PNG_COLOR_TYPE_PALETTE}));
    const auto opened = ImageFile::open(folder / "picture.png");
    ASSERT_EQ(opened->info().sizeW, 3);
    EXPECT_EQ(opened->info().wavelengths[0].name, "Red");
    EXPECT_EQ(opened->info().wavelengths[2].colorIndex, base::Blue);
    const int entry = (3 * 37 + 2 * 1021) & 15;
    EXPECT_EQ(pixelAt(*opened, {0, 0, 0, 0}, 3, 2), entry * 16);
    EXPECT_EQ(pixelAt(*opened, {0, 1, 0, 0}, 3, 2), 255 - entry * 16);
    EXPECT_EQ(pixelAt(*opened, {0, 2, 0, 0}, 3, 2), 7);
}

TEST(PictureImage, GreyIsOneWavelengthAndColorThree)
{
    const TempFolder folder;
    const auto open = [&](const std::vector<std::byte>& bytes) {
        writeBytes(folder / "any name", textOf(bytes)); // names do not count
        return ImageFile::open(folder / "any name");
    };
    const picture::Picture orange = evenPicture(250, 130, 20), grey = evenPicture(90, 90, 90);
    const auto gif = open(picture::encodeGif(orange));
    ASSERT_EQ(gif->info().sizeW, 3);
    EXPECT_THAT(readWhole(*gif, {0, 1, 0, 0}), Each(130));
    const auto greyGif = open(picture::encodeGif(grey));
    ASSERT_EQ(greyGif->info().sizeW, 1);
    EXPECT_THAT(readWhole(*greyGif, {}), Each(90));
    const auto jpeg = open(picture::encodeJpeg(orange));
    ASSERT_EQ(jpeg->info().sizeW, 3);
    EXPECT_THAT(readWhole(*jpeg, {0, 0, 0, 0}), Each(testing::FloatNear(250, 3)));
    EXPECT_EQ(jpeg->info().format, "JPEG");
}

TEST(PictureImage, BrokenFilesAreRefusedWithASentence)
{
    std::string lying = pngOf({"", 8, PNG_COLOR_TYPE_GRAY});
    lying.replace(16, 8, std::string("\0\x0f\0\0\0\x0f\0\0", 8)); // 983040 x 983040, with the old checksum
    const std::string png = pngOf({"", 16, PNG_COLOR_TYPE_RGB}),
                      jpeg = textOf(picture::encodeJpeg(evenPicture(9, 99, 199))),
                      gif = textOf(picture::encodeGif(evenPicture(9, 99, 199)));
    const struct {
        const char* name;
        std::string bytes;
        const char* sentencePart;
    } rows[] = {
        {"head of PNG", png.substr(0, 20), "it is damaged"},
        {"half of PNG", png.substr(0, png.size() / 2), "it is damaged"},
        {"PNG that lies", lying, "it is damaged"},
        {"PNG of 1.5 GB", headOfPng(16000), "16000 x 16000 pixels, more than"},
        {"head of JPEG", jpeg.substr(0, 10), "it is damaged"},
        {"half of JPEG", jpeg.substr(0, jpeg.size() - 40), "it is damaged"},
        {"head of GIF", gif.substr(0, 20), "it is damaged"},
        {"half of GIF", gif.substr(0, gif.size() - 12), "it is damaged"},
    };
    const TempFolder folder;
    for (const auto& row : rows) {
        writeBytes(folder / row.name, row.bytes);
        EXPECT_THAT(openFailure(folder / row.name), HasSubstr(row.sentencePart)) << row.name;
    }
}
