// SPDX-License-Identifier: MIT
// Files that are made to cost time and memory, or that a window could not show.
#include "platform/image/BlockCache.h"
#include "platform/image/PlaneMap.h"
#include "platform/image/TiffStructure.h"
#include "platform/text/Utf8.h"
#include "tests/unit/image/TestFiles.h"

#include <cstring>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <malloc.h>
#include <memory>
#include <string>
#include <tiffio.h>
#include <vector>

using namespace image;
using testing::ElementsAre;
using testing::HasSubstr;
namespace fs = std::filesystem;

namespace {

std::string omeText(const std::string& attributes, const std::string& content)
{
    return "<OME><Image><Pixels Type='uint16' SizeX='37' SizeY='29' " + attributes + ">" + content +
           "</Pixels></Image></OME>";
}

std::size_t charactersOf(const std::string& text)
{
    std::size_t count = 0;
    for (std::size_t at = 0; at < text.size(); ++count)
        at += text::decodeUtf8(text, at).length;
    return count;
}

} // namespace

TEST(Hostile, LongNamesEndWithAnEllipsis)
{
    for (const std::size_t length : {254u, 255u, 256u, 270'000u}) {
        std::string name = "x";
        for (std::size_t i = 1; i < length; ++i)
            name += "\u00e9";
        const TestImage image({.description = omeText("", "<Channel Name='" + name + "'/>")});
        const std::string& shown = image->info().wavelengths[0].name;
        EXPECT_EQ(charactersOf(shown), std::min<std::size_t>(length, 255));
        EXPECT_EQ(shown.ends_with("\u00e9..."), length > 255) << length;
        EXPECT_EQ(shown == name, length <= 255) << length;
    }
}

namespace {

// Each directory has 4096 entries and shares all but two with the next one.
std::string overlappingDirectories(std::size_t count)
{
    constexpr std::uint16_t entries = 4096;
    constexpr std::size_t start = 11, step = 24; // the start keeps offsets from looking like the tags in use
    std::string bytes(start + step * (count + entries / 2 + 1), '\0');
    bytes.replace(0, 4, std::string("II\x2a\0", 4));
    overwriteNumber(bytes, 4, start);
    for (std::size_t i = 0; start + step * (i + 1) + 2 < bytes.size(); ++i) {
        char* const at = &bytes[start + step * i];
        const std::size_t directory = i - entries / 2; // whose next pointer is here
        const std::uint16_t widthOrHeight = 256 + i % 2, asShort = 3, side = 16;
        const std::uint32_t next = i >= entries / 2 && directory + 1 < count ? start + step * (directory + 1)
                                                                             : 0,
                            one = 1;
        std::memcpy(at, &entries, 2);
        std::memcpy(at + 2, &next, 4);
        std::memcpy(at + 14, &widthOrHeight, 2);
        std::memcpy(at + 16, &asShort, 2);
        std::memcpy(at + 18, &one, 4);
        std::memcpy(at + 22, &side, 2);
    }
    return bytes;
}

} // namespace

TEST(Hostile, DirectoriesThatOverlapAreReadNoLongerThanTheFile)
{
    const TempFolder folder;
    writeBytes(folder / "overlap.tif", overlappingDirectories(30'000));
    const InputFile file(folder / "overlap.tif");
    const PageChain chain = TiffStructure(file).pages();
    EXPECT_THAT(chain.damage, HasSubstr("overlap"));
    EXPECT_EQ(chain.pages.size(), file.size() / (4096 * 12 + 6));
}

namespace {

// A strip of 48 MiB that takes next to nothing in the file; a pixel's value is its row's number.
void writeLongStrip(const fs::path& path, std::uint16_t compression)
{
    constexpr std::uint32_t width = 4096, height = 12288;
    const std::unique_ptr<TIFF, void (*)(TIFF*)> tiff(TIFFOpen(path.c_str(), "w"), TIFFClose);
    TIFFSetField(tiff.get(), TIFFTAG_IMAGEWIDTH, width);
    TIFFSetField(tiff.get(), TIFFTAG_IMAGELENGTH, height);
    TIFFSetField(tiff.get(), TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(tiff.get(), TIFFTAG_SAMPLESPERPIXEL, 1);
    TIFFSetField(tiff.get(), TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
    TIFFSetField(tiff.get(), TIFFTAG_COMPRESSION, compression);
    TIFFSetField(tiff.get(), TIFFTAG_ROWSPERSTRIP, height);
    std::string pixels;
    for (std::uint32_t y = 0; y < height; ++y)
        pixels.append(width, static_cast<char>(y % 251));
    TIFFWriteEncodedStrip(tiff.get(), 0, pixels.data(), static_cast<tmsize_t>(pixels.size()));
}

} // namespace

TEST(Hostile, LongStripsAreDecodedInParts)
{
    constexpr std::size_t oneBlock = 8u << 20;
    const TempFolder folder;
    for (const std::uint16_t compression :
         {COMPRESSION_ADOBE_DEFLATE, COMPRESSION_PACKBITS, COMPRESSION_LZW}) {
        writeLongStrip(folder / "long.tif", compression);
        const std::size_t before = BlockCache::instance().used();
        const auto image = ImageFile::open(folder / "long.tif");
        EXPECT_EQ(pixelAt(*image, {}, 5, 3), 3);
        EXPECT_LE(BlockCache::instance().used(), before + oneBlock);
        for (const int row : {12287, 0, 6000, 5999, 1100, 12000})
            EXPECT_EQ(pixelAt(*image, {}, 4095, row), row % 251) << compression;
        std::vector<float> column(12288);
        ASSERT_TRUE(image->read({}, {7, 0, 7, 12287}, column));
        for (int row = 0; row < 12288; ++row)
            ASSERT_EQ(column[static_cast<std::size_t>(row)], row % 251) << compression;
    }
}

namespace {

std::size_t allocatedBytes()
{
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

} // namespace

TEST(Hostile, DeclaredSectionsTakeNoMemory)
{
    constexpr int sections = 1 << 24;
    const TempFolder folder;
    writeTiff(folder / "many.tif", {.kind = byteKind,
                                    .width = 1,
                                    .height = 1,
                                    .description = "ImageJ=1.5\nimages=" + std::to_string(sections) + "\n"});
    fs::resize_file(folder / "many.tif", sections + 1024);
    const std::size_t before = allocatedBytes();
    const auto image = ImageFile::open(folder / "many.tif");
    EXPECT_LE(allocatedBytes(), before + (1u << 20));
    EXPECT_EQ(image->info().sizeZ, sections);
    EXPECT_TRUE(image->hasSection({sections - 1, 0, 0, 0}));
}

TEST(Hostile, MetadataOfNothingButElementsAreRefused)
{
    constexpr int million = 1'000'000;
    const struct {
        const char* element;
        int count;
        const char* sentencePart;
    } rows[] = {{"<a/>", 5 * million, "elements"},
                {"<TiffData/>", million + 50'000, "elements"},
                {"<Channel   />", million / 2, "channels"},
                {"</Pixels></Image><Image><Pixels>", million / 10, "images"}};
    const TempFolder folder;
    for (const auto& [element, count, sentencePart] : rows) {
        std::string content;
        for (int i = 0; i < count; ++i)
            content += element;
        writeBytes(folder / "bomb.companion.ome", omeText("", content));
        EXPECT_THAT(openFailure(folder / "bomb.companion.ome"), HasSubstr(sentencePart)) << element;
    }
}

// Where runs overlap the first one counts; the others fill what it leaves free.
TEST(PlaneMap, RunsThatOverlap)
{
    const auto run = [](std::uint32_t first, std::uint32_t count, std::uint32_t page) {
        return PlaneRun{first, count, {0, page, 0}, 0};
    };
    const PlaneMap map(
        std::vector{run(10, 5, 100), run(20, 5, 200), run(5, 17, 300), run(0, 40, 400), run(9, 2, 500)});
    const auto page = [&](std::uint32_t key) { return map.find(key).value_or(PlanePlace{0, 9999, 0}).page; };
    EXPECT_EQ(page(0), 400u);
    EXPECT_EQ(page(5), 300u);
    EXPECT_EQ(page(10), 100u);
    EXPECT_EQ(page(14), 104u);
    EXPECT_EQ(page(15), 310u);
    EXPECT_EQ(page(21), 201u);
    EXPECT_EQ(page(25), 425u);
    EXPECT_EQ(page(39), 439u);
    EXPECT_EQ(page(40), 9999u);
    EXPECT_EQ(map.count(), 40u);
    EXPECT_EQ(map.runs().size(), 6u);
}

// What is sound before the damage is shown, with a sentence about the rest.
TEST(Hostile, PagesBeforeTheDamageAreShown)
{
    const struct {
        const char* name;
        void (*spoil)(std::string& bytes);
        const char* sentencePart;
    } rows[] = {
        {"next page outside", [](std::string& b) { overwriteNumber(b, nextPointerOf(b, 1), 0x7fffffff); },
         "beyond the end"},
        {"next page inside the pixels", [](std::string& b) { overwriteNumber(b, nextPointerOf(b, 1), 9); },
         "damage"},
        {"circle",
         [](std::string& b) {
             overwriteNumber(b, nextPointerOf(b, 1), static_cast<std::uint32_t>(directoryOf(b, 0)));
         },
         "circle"},
        {"bad tag", [](std::string& b) { overwriteNumber(b, directoryOf(b, 2) + 4, 0x7fff); },
         "after page 2"},
        {"page without pixels", [](std::string& b) { overwriteTag(b, TIFFTAG_IMAGEWIDTH, 0, 2); }, "0 x 29"},
    };
    const TempFolder folder;
    const TiffSpec spec{.pages = 4};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        writeTiff(folder / "damaged.tif", spec);
        std::string bytes = readBytes(folder / "damaged.tif");
        row.spoil(bytes);
        writeBytes(folder / "damaged.tif", bytes);
        const auto image = ImageFile::open(folder / "damaged.tif");
        EXPECT_EQ(image->info().sizeZ, 2);
        EXPECT_THAT(image->info().remarks, ElementsAre(HasSubstr(row.sentencePart)));
        EXPECT_EQ(pixelAt(*image, {1, 0, 0, 0}), storedValue(spec, 0, 0, 1));
    }
}

TEST(Hostile, PagesOfAnotherSizeAreCounted)
{
    const TempFolder folder;
    writeTiff(folder / "mixed.tif", {.pages = 2});
    writeTiff(folder / "mixed.tif", {.width = 20, .pages = 3, .append = true});
    const TiffSpec last{.pages = 1, .firstPage = 5, .append = true};
    writeTiff(folder / "mixed.tif", last);
    const auto image = ImageFile::open(folder / "mixed.tif");
    EXPECT_EQ(image->info().sizeZ, 3);
    EXPECT_EQ(pixelAt(*image, {2, 0, 0, 0}), storedValue(last, 0, 0));
    EXPECT_THAT(image->info().remarks, ElementsAre("3 pages of another size or kind are not shown."));
}

// Another program makes one strip of a page's four, in the same bytes and with the same time.
TEST(Hostile, PageThatChangedSinceItsDirectoryWasRead)
{
    constexpr std::uint16_t separated = PHOTOMETRIC_SEPARATED;
    const TempFolder folder;
    const fs::path path = folder / "cmyk.tif";
    const auto image = writeAndOpen(
        path, {.kind = byteKind, .width = 200, .samples = 4, .pages = 2, .photometric = separated});
    ASSERT_TRUE(image->isComplete({1, 0, 0, 0}));
    const fs::file_time_type time = fs::last_write_time(path);
    std::string bytes = readBytes(path);
    const std::size_t strips = bytes.find(std::string("\x11\x01\x04", 3), directoryOf(bytes, 1));
    std::uint32_t table = 0, first = 0;
    std::memcpy(&table, &bytes[strips + 8], 4);
    std::memcpy(&first, &bytes[table], 4);
    ASSERT_TRUE(overwriteTag(bytes, TIFFTAG_STRIPOFFSETS, first, 1));
    ASSERT_TRUE(overwriteTag(bytes, TIFFTAG_STRIPBYTECOUNTS, 200 * 29 * 4, 1));
    ASSERT_TRUE(overwriteTag(bytes, TIFFTAG_ROWSPERSTRIP, 29, 1));
    writeBytes(path, bytes);
    fs::last_write_time(path, time);
    EXPECT_TRUE(readWhole(*image, {1, 0, 0, 0}).empty());
    EXPECT_THAT(image->lastError(), HasSubstr("damaged"));
}
