// SPDX-License-Identifier: MIT
// Paths that other programs hand over, and the list of the images opened last.
#include "platform/imagewindow/files/PathList.h"
#include "platform/imagewindow/files/RecentFiles.h"
#include "tests/unit/image/TempFolder.h"

#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace viewer;
using testing::ElementsAre;
using testing::HasSubstr;

TEST(PathList, LinesBecomePaths)
{
    const struct {
        const char *name, *text;
        std::vector<std::string> paths;
        const char* problem = "";
    } rows[] = {
        {"uri list", "# two\r\nfile:///a/b%20c.tif\r\nfile://localhost/d.tif\r\n", {"/a/b c.tif", "/d.tif"}},
        {"this computer", "file://here/a.tif", {"/a.tif"}},
        {"one slash", "file:/a.tif", {"/a.tif"}},
        {"bad escapes stay", "file:///100%25%zz%4", {"/100%%zz%4"}},
        {"paths", "/a b.tif\n\n  /c.tif \n", {"/a b.tif", "/c.tif"}},
        {"home", "~/a.tif", {"/home/me/a.tif"}},
        {"quoted", "'/a b.tif'\n\"/c.tif\"", {"/a b.tif", "/c.tif"}},
        {"elsewhere", "file://there/a.tif\n/b.tif", {"/b.tif"}, "on another computer"},
        {"zero", "file:///a%00b", {}, "names no file"},
        {"no path", "file://", {}, "names no file"},
        {"web", "https://example.org/a.tif", {}, "begin with /"},
        {"words", "some words", {}, "begin with /"},
        {"nothing", " \n", {}, "no path"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const PathList list = pathsOf(row.text, "here", "/home/me");
        EXPECT_EQ(list.paths, row.paths);
        EXPECT_THAT(list.problem, HasSubstr(row.problem));
        EXPECT_EQ(list.problem.empty(), std::string(row.problem).empty());
    }
}

TEST(PathList, NoMoreThanTwentyAtATime)
{
    std::string text;
    for (int i = 0; i < 100000; ++i)
        text += "/a.tif\n";
    const PathList list = pathsOf(text, "", "");
    EXPECT_EQ(list.paths.size(), maxPaths);
    EXPECT_THAT(list.problem, HasSubstr("At most 20"));
}

TEST(RecentFiles, TheNewestFirstEachOnceAndOnlyThoseThatAreThere)
{
    const TempFolder folder;
    setenv("XDG_DATA_HOME", (folder / "data").c_str(), 1);
    EXPECT_THAT(recentFiles(), ElementsAre());
    for (int i = 0; i < 30; ++i) {
        const auto path = folder / ("image" + std::to_string(i) + ".tif");
        if (i != 28)
            writeBytes(path, "x");
        noteRecent(path);
    }
    noteRecent(folder / "image25.tif");
    const auto list = recentFiles();
    ASSERT_EQ(list.size(), maxRecent);
    EXPECT_EQ(list[0], folder / "image25.tif");
    EXPECT_EQ(list[1], folder / "image29.tif");
    EXPECT_EQ(list[2], folder / "image27.tif");
    EXPECT_EQ(list[4], folder / "image24.tif");
    writeBytes(folder / "data/kelvora/recent", "no path\n" + std::string(1 << 20, '/') + "\n/tmp\n");
    EXPECT_THAT(recentFiles(), ElementsAre("/tmp"));
    unsetenv("XDG_DATA_HOME");
}

TEST(RecentFiles, LongPathsKeepTheirEnd)
{
    setenv("HOME", "/home/me", 1);
    EXPECT_EQ(shownPath("/home/me/a.tif"), "~/a.tif");
    const std::string text = shownPath("/" + std::string(80, 'b') + "/\xc3\xa4" + std::string(59, 'a'));
    EXPECT_EQ(text, "..." + std::string(59, 'a')); // not in the middle of a character
}
