// SPDX-License-Identifier: MIT
// The file chooser.
#include "drive/Pair.h"
#include "tests/x/wmenh/Probe.h"

#include <X11/keysym.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <string>
#include <vector>

using drive::waitUntil;
namespace fs = std::filesystem;

class ChooserTest : public ProbeTest {
protected:
    void SetUp() override { writeBytes(folder / "results/old.slk", "ID\n"); }
    Window open()
    {
        // The one before lies over the button.
        waitUntil([this] { return countTitled("Save as SYLK") == 0; });
        press("write");
        const Window found = screen.findTitle("Save as SYLK Spreadsheet");
        EXPECT_TRUE(support::waitForFocus(screen, found));
        return found;
    }
    // Replaces what stands in the name field, which has the focus.
    void enter(const std::string& name)
    {
        screen.replaceText(name);
        screen.key(XK_Return);
    }
    // The reason for a refusal is in red, and nothing else.
    long redPixels(Window window)
    {
        const drive::Picture picture = screen.capture(window);
        return std::count_if(picture.pixels.begin(), picture.pixels.end(), [](const drive::Pixel& p) {
            return p.red > 120 && p.green < 40 && p.blue < 40;
        });
    }
    // Where the last line with text on it is in a list.
    int lastLineOf(Window list)
    {
        const drive::Picture picture = screen.capture(list);
        const drive::Pixel ground = picture.at(picture.width - 8, picture.height - 8);
        int y = picture.height - 8;
        while (y > 8 && std::all_of(picture.pixels.begin() + y * picture.width + 8,
                                    picture.pixels.begin() + (y + 1) * picture.width - 8,
                                    [&](const drive::Pixel& p) { return p == ground; }))
            --y;
        return y - 2;
    }
    // The probe has been told of so many choices, the last of them this file in the folder.
    void expectChosen(size_t count, const std::string& file)
    {
        const fs::path path = folder / file;
        waitUntil([&] { return said("chosen").size() == count; });
        ASSERT_EQ(said("chosen").size(), count);
        EXPECT_EQ(said("chosen").back(), "chosen 1 [" + path.string() + "] [" + path.parent_path().string() +
                                             "] [" + path.filename().string() + "] [*.slk]");
    }
};

TEST_F(ChooserTest, proposesTheDefaultNameInAFolderThatExists)
{
    for (const char* lost : {"/gone/away", ""}) {
        start({{"PROBE_LOST", lost}});
        open();
        screen.key(XK_Return);
        expectChosen(1, "cells_PRF.slk");
    }
}

TEST_F(ChooserTest, takesATypedNameAndAddsTheExtension)
{
    start();
    open();
    enter("mine");
    expectChosen(1, "mine.slk");
    open();
    enter("results"); // a folder is entered
    screen.type("in.slk");
    screen.key(XK_Return);
    expectChosen(2, "results/in.slk");
    open();
    enter("other.txt");
    expectChosen(3, "results/other.txt");
    // Folder and name stay for the next time, and in the configuration.
    open();
    screen.key(XK_Return);
    expectChosen(4, "results/other.txt");
    const std::string configuration = readBytes(folder / "config/kelvora/config");
    EXPECT_THAT(configuration, testing::HasSubstr("ZVE_DEF_DIR:\t" + (folder / "results").string()));
    EXPECT_THAT(configuration, testing::HasSubstr("SYLK_EXT:\ttxt"));
}

TEST_F(ChooserTest, cancelsByKeyAndByCloseButton)
{
    start();
    open();
    screen.type("abc");
    screen.key(XK_Escape);
    EXPECT_TRUE(waitUntil([this] { return said("chosen").size() == 1; }));
    screen.requestClose(open());
    EXPECT_TRUE(waitUntil([this] { return said("chosen").size() == 2; }));
    const std::string nothing = "chosen 0 [] [" + folder.path.string() + "] [cells_PRF.slk] [*.slk]";
    EXPECT_THAT(said("chosen"), testing::ElementsAre(nothing, nothing));
    EXPECT_TRUE(waitUntil([this] { return countTitled("Save as SYLK") == 0; }));
}

TEST_F(ChooserTest, refusesWhatItCannotTake)
{
    start();
    const Window chooser = open();
    const fs::path longFolder = folder / std::string(200, 'd');
    fs::create_directory(longFolder);
    for (const std::string& name :
         {(longFolder / ("a-name-that-does-not-fit-" + std::string(40, 'x'))).string(),
          std::string("nowhere/file.slk"), std::string("   ")}) {
        enter(name);
        EXPECT_TRUE(waitUntil([&] { return redPixels(chooser) > 100; })) << name;
        EXPECT_TRUE(screen.viewable(chooser)) << name;
        enter("results");
        EXPECT_TRUE(waitUntil([&] { return redPixels(chooser) == 0; })) << name;
        enter("..");
    }
    enter("good.slk");
    expectChosen(1, "good.slk");
}

TEST_F(ChooserTest, editsTheNameAndStaysOnTheScreenBesideLongNames)
{
    const std::string longName(200, 'a');
    fs::create_directory(folder / longName);
    writeBytes(folder / "results" / "x", "x");
    writeBytes(folder / longName.substr(1).append(".slk"), "ID\n");
    start();
    const Window chooser = open();
    EXPECT_TRUE(screen.geometry(chooser).width <= 1440) << screen.geometry(chooser).width;
    EXPECT_GE(screen.geometry(chooser).x, 0);
    screen.key(XK_Home);
    screen.type("my");
    screen.key(XK_End);
    screen.key(XK_Return);
    expectChosen(1, "mycells_PRF.slk");
}

TEST_F(ChooserTest, keepsTheNameWhenAFolderIsChosenInTheList)
{
    start();
    const Window chooser = open();
    screen.key(XK_Home);
    screen.type("my");
    // The list of files has the upper edge; the last line of that of folders is "results".
    const std::vector<Window> leaves = screen.leaves(chooser);
    std::vector<Window> lists;
    std::copy_if(leaves.begin(), leaves.end(), std::back_inserter(lists), [this](Window leaf) {
        const drive::Rect place = screen.geometry(leaf);
        return place.width > 100 && place.height > 100;
    });
    ASSERT_EQ(lists.size(), 2u);
    // The chooser has answered the keys, so its lists are drawn.
    ASSERT_TRUE(waitUntil([&] { return screen.textIn(leaves.back()) == "mycells_PRF.slk"; }));
    screen.doubleClick(lists[1], 30, lastLineOf(lists[1]));
    drive::waitUntilCalm(screen);
    EXPECT_EQ(screen.textIn(leaves.back()), "mycells_PRF.slk");
    screen.clickCentre(leaves.back());
    screen.key(XK_Return);
    expectChosen(1, "results/mycells_PRF.slk");
}

TEST_F(ChooserTest, controlASelectsTheWholeName)
{
    start();
    open();
    screen.keyWith(XK_Control_L, XK_a);
    screen.type("all");
    screen.key(XK_Return);
    expectChosen(1, "all.slk");
}

TEST_F(ChooserTest, proposesANameThatIsNoUtf8)
{
    start({{"PROBE_NAME", "caf\xE9_PRF.slk"}});
    open();
    screen.key(XK_Return);
    expectChosen(1, "caf\xC3\xA9_PRF.slk");
}

TEST_F(ChooserTest, remembersTheFolderFromRunToRun)
{
    start();
    open();
    enter("results/first.slk");
    expectChosen(1, "results/first.slk");
    // The program's own folder comes first while it is there, and a button leads to the remembered one.
    start();
    const Window chooser = open();
    // Its own controls have no windows but the fields, the lists and this button.
    const std::vector<Window> leaves = screen.leaves(chooser);
    ASSERT_GE(leaves.size(), 2u);
    screen.clickCentre(leaves.back());
    screen.clickCentre(leaves[leaves.size() - 2]);
    enter("second.slk");
    expectChosen(1, "results/second.slk");
    start({{"PROBE_LOST", "/gone"}});
    open();
    enter("third.slk");
    expectChosen(1, "results/third.slk");
}
