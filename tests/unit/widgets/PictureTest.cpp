// SPDX-License-Identifier: MIT
// What is written is read again, and so are files as other programs write them.
#include "tests/unit/widgets/PictureTest.h"

#include "tests/Rows.h"
#include "tests/unit/image/TempFolder.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <sys/resource.h>
#include <tuple>

namespace {

using picture::Format;
using picture::Picture;
using testing::HasSubstr;

std::tuple<int, int, int, int> pixel(const Picture& picture, int x, int y)
{
    const std::uint8_t* p = picture.at(x, y);
    return {p[0], p[1], p[2], p[3]};
}

struct Kept {
    const char* name;
    Format format;
    std::tuple<int, int, int, int> yellow; // what becomes of the half opaque field
    int tolerance;
};

class RoundTrip : public testing::TestWithParam<Kept> {};

TEST_P(RoundTrip, keepsSizeAndColors)
{
    const Picture written = fourFields(32, 48);
    const Picture read = picture::decode(picture::encode(written, GetParam().format));
    ASSERT_EQ(read.width, 32);
    ASSERT_EQ(read.height, 48);
    EXPECT_EQ(pixel(read, 28, 40), GetParam().yellow);
    for (auto [x, y] : {std::pair{3, 3}, {28, 3}, {3, 40}})
        for (int part = 0; part < 4; ++part)
            EXPECT_NEAR(read.at(x, y)[part], written.at(x, y)[part], GetParam().tolerance) << x << "," << y;
}

INSTANTIATE_TEST_SUITE_P(Formats, RoundTrip,
                         testing::Values(Kept{"png", Format::Png, {255, 255, 0, 100}, 0},
                                         Kept{"jpeg", Format::Jpeg, {255, 255, 155, 255}, 4},
                                         Kept{"gif", Format::Gif, {0, 0, 0, 0}, 0},
                                         Kept{"xpm", Format::Xpm, {0, 0, 0, 0}, 0},
                                         Kept{"xwd", Format::Xwd, {255, 255, 155, 255}, 0}),
                         RowName{});

// 64 x 64 different colours: more than a GIF holds, more than one character of an XPM tells apart.
Picture manyColors()
{
    Picture picture(64, 64);
    for (int i = 0; i < 64 * 64; ++i) {
        std::uint8_t* p = picture.at(i % 64, i / 64);
        p[0] = static_cast<std::uint8_t>(i % 64 * 4);
        p[1] = static_cast<std::uint8_t>(i / 64 * 4);
        p[3] = 255;
    }
    return picture;
}

TEST(Colors, manyAreKeptByXpmAndChosenForGif)
{
    const Picture many = manyColors();
    EXPECT_EQ(picture::decode(picture::encode(many, Format::Xpm)).rgba, many.rgba);
    const Picture chosen = picture::decode(picture::encode(many, Format::Gif));
    double error = 0;
    for (std::size_t i = 0; i < many.rgba.size(); ++i)
        error += std::abs(many.rgba[i] - chosen.rgba[i]);
    EXPECT_LT(error / static_cast<double>(many.rgba.size()), 6);
}

TEST(Xpm, readsNamesCommentsAndTransparency)
{
    const Picture read = picture::decode(bytesOf(R"(/* XPM */
static char *icon[] = {
/* sizes: "9 9 9 9" */
"3 2 4 1",
"  c None",
". c Navy Blue",
"+ c #f00",
"@ m black c grey40",
" .+",
"@@@" };
)"));
    EXPECT_EQ(pixel(read, 0, 0), std::tuple(0, 0, 0, 0));
    EXPECT_EQ(pixel(read, 1, 0), std::tuple(0, 0, 128, 255));
    EXPECT_EQ(pixel(read, 2, 0), std::tuple(255, 0, 0, 255));
    EXPECT_EQ(pixel(read, 0, 1), std::tuple(102, 102, 102, 255));
}

std::string word(std::uint32_t value)
{
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes += static_cast<char>(value >> shift);
    return bytes;
}

// A dump of one row: the fields that differ between the visuals of servers, the colours, the row.
std::string dump(std::uint32_t byteOrder, std::uint32_t bits, std::uint32_t visual, const std::string& colors,
                 const std::string& row, std::uint32_t width)
{
    const auto masks = [](bool direct) {
        return direct ? word(0xF800) + word(0x07E0) + word(0x001F) : word(0) + word(0) + word(0);
    };
    const auto length = static_cast<std::uint32_t>(row.size());
    return word(104) + word(7) + word(bits == 1 ? 0 : 2) + word(bits) + word(width) + word(1) + word(0) +
           word(byteOrder) + word(32) + word(0) + word(32) + word(bits) + word(length) + word(visual) +
           masks(visual == 4) + word(8) + word(0) + word(static_cast<std::uint32_t>(colors.size() / 12)) +
           word(width) + word(1) + word(0) + word(0) + word(0) + std::string("win\0", 4) + colors + row;
}

TEST(Xwd, readsEveryVisual)
{
    constexpr std::uint32_t palette = 3, direct = 4, leastFirst = 0;
    const std::string entry = word(1) + std::string("\x10\x00\x20\x00\x30\x00\x07\x00", 8);
    const std::string colors = word(0) + std::string(8, '\xff') + entry;
    const Picture mapped =
        picture::decode(bytesOf(dump(leastFirst, 8, palette, colors, std::string("\0\1\1\0", 4), 3)));
    EXPECT_EQ(pixel(mapped, 0, 0), std::tuple(255, 255, 255, 255));
    EXPECT_EQ(pixel(mapped, 1, 0), std::tuple(16, 32, 48, 255));
    const Picture high =
        picture::decode(bytesOf(dump(leastFirst, 16, direct, "", std::string("\x1f\x00\x00\xf8", 4), 2)));
    EXPECT_EQ(pixel(high, 0, 0), std::tuple(0, 0, 255, 255));
    EXPECT_EQ(pixel(high, 1, 0), std::tuple(255, 0, 0, 255));
    const Picture bits =
        picture::decode(bytesOf(dump(leastFirst, 1, palette, colors, std::string("\2\0\0\0", 4), 3)));
    EXPECT_EQ(pixel(bits, 1, 0), std::tuple(16, 32, 48, 255));
}

// An interlaced image of one column and six rows, each in a colour of its own, right of the screen's left
// edge.
TEST(Gif, readsInterlacedImagesInTheirPlace)
{
    std::string file = "GIF89a";
    file += std::string("\x02\x00\x06\x00\x92\x00\x00", 7);
    for (char i = 0; i < 8; ++i)
        file += std::string(3, static_cast<char>(i * 10));
    file += std::string("\x2c\x01\x00\x00\x00\x01\x00\x06\x00\x40", 10);
    // Codes of four bits: clear (8), rows 0 4 2 1 3 5 as the interlacing orders them, each equal to its row,
    // and the end (9). The width of the codes grows to five bits after the seventh.
    file += std::string("\x03\x05\x08\x24\x31\x95\x00\x00\x3b", 9);
    const Picture read = picture::decode(bytesOf(file));
    ASSERT_EQ(read.width, 2);
    EXPECT_EQ(pixel(read, 0, 0), std::tuple(0, 0, 0, 0));
    for (int y = 0; y < 6; ++y)
        EXPECT_EQ(pixel(read, 1, y), std::tuple(10 * y, 10 * y, 10 * y, 255)) << y;
}

TEST(Files, areKnownByContentWhateverTheirName)
{
    const TempFolder folder;
    picture::write(fourFields(4, 4), folder / "image.PNG");
    std::filesystem::rename(folder / "image.PNG", folder / "image.gif");
    EXPECT_EQ(picture::read(folder / "image.gif").rgba, fourFields(4, 4).rgba);
    for (const Format format : allFormats)
        EXPECT_EQ(picture::formatOfContent(picture::encode(fourFields(4, 4), format)), format);
}

std::string writeProblem(const std::filesystem::path& path)
{
    try {
        picture::write(fourFields(512, 512), path);
    } catch (const picture::PictureError& error) {
        return error.what();
    }
    return {};
}

TEST(Files, failedWriteLeavesWhatWasThere)
{
    const TempFolder folder;
    writeBytes(folder / "kept.xwd", "before");
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, SIG_IGN); // as on a full disk, write() fails
    const rlimit small{4096, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    const std::string problem = writeProblem(folder / "kept.xwd");
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_THAT(problem, HasSubstr("kept.xwd cannot be written: "));
    EXPECT_EQ(readBytes(folder / "kept.xwd"), "before");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path), {}), 1);
}

TEST(Files, refusedNamesAreTold)
{
    const TempFolder folder;
    std::filesystem::create_directory(folder / "folder.png");
    EXPECT_THAT(writeProblem(folder / "a.bmp"), HasSubstr("should end with"));
    EXPECT_THAT(writeProblem(folder / "none" / "a.png"), HasSubstr("No such file"));
    EXPECT_THAT(writeProblem(folder / "folder.png"), HasSubstr("is not a regular file."));
}

TEST(Files, writingThroughALinkKeepsTheLink)
{
    const TempFolder folder;
    writeBytes(folder / "real.png", "old");
    std::filesystem::create_symlink("real.png", folder / "link.png");
    picture::write(fourFields(4, 4), folder / "link.png");
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "link.png"));
    EXPECT_EQ(picture::read(folder / "real.png").width, 4);
}

} // namespace
