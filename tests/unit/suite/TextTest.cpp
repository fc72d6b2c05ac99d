// SPDX-License-Identifier: MIT
// Text for the screen and the names that the file chooser makes: no display needed.
#include <gtest/gtest.h>

#include "platform/text/LocaleText.h"
#include "platform/wmenh/ChooserPaths.h"
#include "platform/wmenh/Help.h"
#include "platform/wmenh/Text.h"
#include "tests/unit/image/TempFolder.h"

#include <clocale>
#include <filesystem>
#include <string>

using namespace wmenh;
namespace fs = std::filesystem;

TEST(FromUtf8, marksWhatIsNoText)
{
    const struct {
        const char *given, *utf8, *latin1;
    } cases[] = {
        {"12 \xC2\xB5m", "12 \xC2\xB5m", "12 \xB5m"},
        {"\xE2\x82\xAC 5", "\xE2\x82\xAC 5", "? 5"}, // euro: not in ISO 8859-1
        {"caf\xE9.tif", "caf?.tif", "caf?.tif"},     // no UTF-8
        {"cut \xE2\x82", "cut ?", "cut ?"},
        {"line\nbell\a\x7F\xC2\x9B[2J", "line?bell???[2J", "line?bell???[2J"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(text::fromUtf8(c.given, true), c.utf8) << c.given;
        EXPECT_EQ(text::fromUtf8(c.given, false), c.latin1) << c.given;
    }
}

TEST(FromMixed, takesUtf8AndLatin1)
{
    const struct {
        const char *given, *utf8, *latin1;
    } cases[] = {
        {"plain\ttext\n", "plain\ttext\n", "plain\ttext\n"},
        {"12 \xB5m", "12 \xC2\xB5m", "12 \xB5m"},
        {"12 \xC2\xB5m", "12 \xC2\xB5m", "12 \xB5m"},
        {"\xC3\xB6 \xB5m", "\xC3\xB6 \xC2\xB5m", "\xF6 \xB5m"}, // both in one text
        {"\xE2\x82\xAC 5", "\xE2\x82\xAC 5", "? 5"},            // euro: not in ISO 8859-1
        {"\xF0\x9F\x94\xAC", "\xF0\x9F\x94\xAC", "?"},
        {"\xC0\xAF", "\xC3\x80\xC2\xAF", "\xC0\xAF"},        // overlong: no UTF-8
        {"\xED\xA0\x80", "\xC3\xAD\xC2\xA0 ", "\xED\xA0 "},  // surrogate: no UTF-8
        {"\xC3\xB6 cut \xC3", "\xC3\xB6 cut ", "\xF6 cut "}, // cut by a fixed buffer
        {"caf\xE9", "caf\xC3\xA9", "caf\xE9"},
        {"bell\a\x1B[2J\x7F.", "bell  [2J .", "bell  [2J ."},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(text::fromMixed(c.given, true), c.utf8) << c.given;
        EXPECT_EQ(text::fromMixed(c.given, false), c.latin1) << c.given;
    }
}

TEST(WrapText, breaksAtSpacesElseAnywhere)
{
    ASSERT_TRUE(setlocale(LC_ALL, "C.UTF-8"));
    const struct {
        const char* given;
        int columns;
        const char* wrapped;
    } cases[] = {
        {"short", 10, "short"},
        {"one two three", 7, "one two\nthree"},
        {"one two three", 8, "one two\nthree"},
        {"abcdefghij", 4, "abcd\nefgh\nij"},
        {"a bcdefghij", 4, "a\nbcde\nfghi\nj"},
        {"keep\n\nlines apart here", 6, "keep\n\nlines\napart\nhere"},
        {"\xC2\xB5\xC2\xB5\xC2\xB5", 2, "\xC2\xB5\xC2\xB5\n\xC2\xB5"},
        {"", 5, ""},
        {"end\n", 5, "end\n"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(wrapText(c.given, c.columns), c.wrapped) << c.given;
    EXPECT_EQ(lineCount(wrapText(std::string(4000, 'x'), 80)), 50);
}

TEST(JoinLines, keepsParagraphsAndIndentedLines)
{
    EXPECT_EQ(joinLines("TITLE\n\nOne\ntwo.\n\n  - item\n    more\nnext\n"),
              "TITLE\n\nOne two.\n\n  - item\n    more next\n");
}

TEST(ChooserPaths, makeThePathOfATypedName)
{
    setenv("HOME", "/home/user", 1);
    const std::pair<const char*, const char*> cases[] = {
        {"a.slk", "/data/a.slk"}, {"  a b.slk ", "/data/a b.slk"}, {"sub/a.slk", "/data/sub/a.slk"},
        {"../a.slk", "/a.slk"},   {"/x/./y//a", "/x/y/a"},         {"~/a.slk", "/home/user/a.slk"},
        {"~", "/home/user"},      {"~other/a", "/data/~other/a"},  {"", "/data/"},
    };
    for (const auto& [name, path] : cases)
        EXPECT_EQ(pathFromName("/data", name), path) << name;
}

TEST(ChooserPaths, addAnExtensionWhereThereIsNone)
{
    const std::pair<const char*, const char*> cases[] = {
        {"/d/cells", "/d/cells.slk"},           {"/d/cells.", "/d/cells.slk"},
        {"/d/cells.txt", "/d/cells.txt"},       {"/d.x/cells", "/d.x/cells.slk"},
        {"/d/.hidden", "/d/.hidden.slk"},       {"/d/", "/d/"},
        {"/d/scan 1.5um", "/d/scan 1.5um.slk"}, {"/d/A.SLK", "/d/A.SLK"},
    };
    for (const auto& [path, made] : cases)
        EXPECT_EQ(withExtension(path, "slk"), made) << path;
    EXPECT_EQ(withExtension("/d/cells", ""), "/d/cells");
    EXPECT_EQ(extensionOf("*.slk"), "slk");
    EXPECT_EQ(extensionOf("*"), "");
    EXPECT_EQ(extensionOf("*.s[lL]k"), "");
}

class Folders : public testing::Test {
protected:
    Folders() { fs::create_directory(sub); }
    TempFolder folder;
    fs::path sub = folder / "sub";
};

TEST_F(Folders, fallBackToTheNearestThatExists)
{
    writeBytes(folder / "file", "x");
    const std::pair<std::string, fs::path> cases[] = {
        {sub, sub},
        {sub.string() + "/", sub},
        {sub / "gone/away", sub},
        {folder / "file", folder.path},
        {"/no such folder/at all", "/"},
        {"", fs::current_path()},
    };
    for (const auto& [path, nearest] : cases)
        EXPECT_EQ(nearestDirectory(path), nearest.string()) << path;
}

TEST_F(Folders, saysWhyAPathCannotBeTaken)
{
    const struct {
        std::string name;      // in the folder
        int room;              // bytes that the caller's buffer has beyond what the path needs
        const char* complaint; // a part of the sentence; empty: the path is good
    } cases[] = {
        {"a.slk", 100, ""},
        {"a.slk", 0, ""},
        {"a.slk", -1, "choose a shorter name"},
        {"a.slk", -10, "choose a shorter name"},
        {"", 100, "type a name"},
        {"gone/a.slk", 100, "no folder"},
        {"sub", 100, "is a folder"},
        {"a\nb.slk", 100, "characters that cannot be"},
        {std::string(300, 'x'), 4096, "too long for a file name"},
    };
    for (const auto& c : cases) {
        const std::string path = folder.path.string() + "/" + c.name;
        const std::string sentence = complaintAbout(path, static_cast<int>(path.size()) + 1 + c.room);
        EXPECT_TRUE(*c.complaint ? sentence.find(c.complaint) != std::string::npos : sentence.empty())
            << path << ": " << sentence;
    }
}

TEST_F(Folders, helpTopicsComeFromTheUsersFolderFirst)
{
    unsetenv("KELVORA_HELP_DIR");
    const auto shipped = helpText("LineProfile");
    ASSERT_TRUE(shipped);
    EXPECT_NE(shipped->find("FWHM"), std::string::npos);
    setenv("KELVORA_HELP_DIR", folder.path.c_str(), 1);
    EXPECT_EQ(helpText("LineProfile"), shipped);
    writeBytes(folder / "LineProfile.txt", "ours\n");
    EXPECT_EQ(helpText("LineProfile"), "ours\n");
    writeBytes(folder / "secret.txt", "x\n");
    EXPECT_FALSE(helpText("sub/../secret"));
    EXPECT_FALSE(helpText("NoSuchTopic"));
}
