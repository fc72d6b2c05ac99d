// SPDX-License-Identifier: MIT
// Files that are cut short, or that claim what they do not hold, end in a sentence.
#include "tests/unit/widgets/PictureTest.h"

#include "tests/unit/image/TempFolder.h"

#include <random>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace {

using picture::Format;
using testing::AllOf;
using testing::AnyOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

std::string textOf(std::span<const std::byte> bytes)
{
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

TEST(CutShort, everyLengthIsRefused)
{
    for (const Format format : allFormats) {
        const std::vector<std::byte> whole = picture::encode(fourFields(16, 16), format);
        // Readers do without what ends a file: PNG's last check sum and block, GIF's last byte, JPEG's end
        // mark, what closes XPM's C source.
        const std::size_t spare = format == Format::Png ? 16 : format == Format::Xwd ? 0 : 6;
        for (std::size_t length = 0; length + spare < whole.size(); ++length)
            EXPECT_THAT(problemOf(std::span(whole).first(length)),
                        AllOf(StartsWith("The picture"), EndsWith(".")))
                << static_cast<int>(format) << " cut to " << length;
    }
}

// Whatever the bytes become: a picture or a sentence, and memory as the limits say.
TEST(Damaged, everyByteIsSurvived)
{
    std::mt19937 random(20);
    for (const Format format : allFormats) {
        const std::vector<std::byte> whole = picture::encode(fourFields(16, 16), format);
        for (std::size_t at = 0; at < whole.size(); at += 1 + whole.size() / 400) {
            std::vector<std::byte> damaged = whole;
            damaged[at] = static_cast<std::byte>(random());
            EXPECT_THAT(problemOf(damaged), AnyOf(IsEmpty(), EndsWith("."))) << at;
        }
    }
}

std::string with(Format format, std::size_t at, std::string_view bytes)
{
    std::string file = textOf(picture::encode(fourFields(16, 16), format));
    return file.replace(at, bytes.size(), bytes);
}

struct Claim {
    const char* name;
    std::string file;
    const char* sentence;
};

TEST(Claims, areLimited)
{
    using std::string_literals::operator""s;
    const std::string xpm = "/* XPM */\nstatic char *a[] = {\n";
    const Claim claims[] = {
        {"XPM wider than its text", xpm + "\"30000 8000 2 1\",\n\"a c red\",\n", "cut short"},
        {"XPM of more than the limit", xpm + "\"1000000 1000000 2 1\",\n", "more than can be read"},
        {"XPM with a number that is none", xpm + "\"99999999999999999999 1 1 1\",\n",
         "does not tell its size"},
        {"XPM with an unknown colour", xpm + "\"1 1 1 1\",\n\"a c puce-ish\",\n\"a\"};\n",
         "not known, puce-ish"},
        {"JPEG of 65500 x 65500", with(Format::Jpeg, 163, "\xff\xdc\xff\xdc"s), "65500 x 65500 pixels"},
        {"GIF screen of 65535 x 65535", with(Format::Gif, 6, "\xff\xff\xff\xff"s), "more than can be read"},
        {"XWD of 2^31 columns", with(Format::Xwd, 16, "\x80\0\0\0"s), "more than can be read"},
        {"XWD whose header ends behind the file", with(Format::Xwd, 0, "\0\0\xff\xff"s), "cut short"},
        {"XWD with rows of no bytes", with(Format::Xwd, 48, "\0\0\0\0"s), "rows that are too short"},
        {"XWD of a billion colours", with(Format::Xwd, 76, "\x40\0\0\0"s), "too many colours"},
        {"something else", "II*\0 not a picture"s, "no PNG, JPEG, GIF, XPM or XWD"},
    };
    for (const Claim& claim : claims)
        EXPECT_THAT(problemOf(bytesOf(claim.file)), HasSubstr(claim.sentence)) << claim.name;
}

TEST(Files, thatAreNoneAreTold)
{
    const TempFolder folder;
    for (const auto& [path, sentence] :
         {std::pair{folder / "missing.png", "does not exist."}, {folder.path, "is not a regular file."}}) {
        try {
            picture::read(path);
            ADD_FAILURE() << path;
        } catch (const picture::PictureError& error) {
            EXPECT_EQ(error.what(), path.string() + " " + sentence);
        }
    }
}

} // namespace
