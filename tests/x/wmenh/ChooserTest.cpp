// The file chooser.
#include "tests/x/wmenh/Probe.h"

#include <X11/keysym.h>

#include <algorithm>
#include <fstream>
#include <sstream>

using drive::waitUntil;
namespace fs = std::filesystem;

class ChooserTest : public ProbeTest {
protected:
    void SetUp() override
    {
        fs::create_directory(folder / "results");
        std::ofstream(folder / "results" / "old.slk") << "ID\n";
    }
    Window open()
    {
        // The one before lies over the button.
        waitUntil([this] { return countTitled("Save as SYLK") == 0; });
        press("write");
        const Window found = screen.findTitle("Save as SYLK Spreadsheet");
        waitForFocus(found);
        return found;
    }
    // Replaces what stands in the name field, which has the focus.
    void enter(const std::string& name)
    {
        replaceText(name);
        screen.key(XK_Return);
    }
    long redPixels(Window window)
    {
        const drive::Picture picture = screen.capture(window);
        return std::count_if(picture.pixels.begin(), picture.pixels.end(), [](const drive::Pixel& p) {
            return p.red > 120 && p.green < 40 && p.blue < 40;
        });
    }
    std::string chosen(size_t count)
    {
        waitUntil([&] { return said("chosen").size() == count; });
        return said("chosen").size() == count ? said("chosen").back() : "";
    }
    std::string answer(const fs::path& path, const fs::path& directory)
    {
        return "chosen 1 [" + path.string() + "] [" + directory.string() + "] [" + path.filename().string() +
               "] [*.slk]";
    }
    std::string configuration()
    {
        std::ifstream file(folder / "config" / "kelvora" / "config");
        std::ostringstream text;
        text << file.rdbuf();
        return text.str();
    }
};

TEST_F(ChooserTest, proposesTheDefaultName)
{
    start();
    ASSERT_NE(open(), None);
    screen.key(XK_Return);
    EXPECT_EQ(chosen(1), answer(folder / "cells_PRF.slk", folder));
}

TEST_F(ChooserTest, takesATypedNameAndAddsTheExtension)
{
    start();
    ASSERT_NE(open(), None);
    enter("mine");
    EXPECT_EQ(chosen(1), answer(folder / "mine.slk", folder));
    // Folder and name stay for the next time, and in the configuration.
    ASSERT_NE(open(), None);
    enter("results/other.txt");
    EXPECT_EQ(chosen(2), answer(folder / "results/other.txt", folder / "results"));
    ASSERT_NE(open(), None);
    screen.key(XK_Return);
    EXPECT_EQ(chosen(3), answer(folder / "results/other.txt", folder / "results"));
    EXPECT_NE(configuration().find("ZVE_DEF_DIR:\t" + (folder / "results").string()), std::string::npos)
        << configuration();
    EXPECT_NE(configuration().find("SYLK_EXT:\ttxt"), std::string::npos) << configuration();
}

TEST_F(ChooserTest, cancelsByKeyAndByCloseButton)
{
    start();
    const Window first = open();
    ASSERT_NE(first, None);
    screen.type("abc");
    screen.key(XK_Escape);
    const std::string nothing = "chosen 0 [] [" + folder.string() + "] [cells_PRF.slk] [*.slk]";
    EXPECT_EQ(chosen(1), nothing);
    const Window second = open();
    screen.requestClose(second);
    EXPECT_EQ(chosen(2), nothing);
    EXPECT_TRUE(waitUntil([this] { return countTitled("Save as SYLK") == 0; }));
}

TEST_F(ChooserTest, refusesWhatItCannotTake)
{
    start();
    const Window chooser = open();
    ASSERT_NE(chooser, None);
    const fs::path longFolder = folder / std::string(200, 'd');
    fs::create_directory(longFolder);
    for (const std::string& name : {longFolder.string() + "/a-name-that-does-not-fit-" + std::string(40, 'x'),
                                    std::string("nowhere/file.slk"), std::string("   ")}) {
        enter(name);
        // The reason appears in red; nothing else in the dialogue is.
        EXPECT_TRUE(waitUntil([&] { return redPixels(chooser) > 100; })) << name;
        EXPECT_TRUE(screen.viewable(chooser)) << name;
        enter("results");
        EXPECT_TRUE(waitUntil([&] { return redPixels(chooser) == 0; })) << name;
        enter("..");
    }
    enter("good.slk");
    EXPECT_EQ(chosen(1), answer(folder / "good.slk", folder));
}

TEST_F(ChooserTest, entersAFolderThatIsTyped)
{
    start();
    ASSERT_NE(open(), None);
    enter("results");
    screen.type("in.slk");
    screen.key(XK_Return);
    EXPECT_EQ(chosen(1), answer(folder / "results/in.slk", folder / "results"));
}

TEST_F(ChooserTest, startsInAFolderThatExists)
{
    start({
        {"PROBE_LOST", "/gone/away"}
    });
    ASSERT_NE(open(), None);
    screen.key(XK_Return);
    EXPECT_EQ(chosen(1), answer(folder / "cells_PRF.slk", folder));
}

TEST_F(ChooserTest, remembersTheFolderFromRunToRun)
{
    start();
    ASSERT_NE(open(), None);
    enter("results/first.slk");
    EXPECT_EQ(chosen(1), answer(folder / "results/first.slk", folder / "results"));
    // The program's own folder comes first while it is there, and a button leads to the remembered one.
    start();
    const Window chooser = open();
    ASSERT_NE(chooser, None);
    // Its own controls have no windows but the fields, the lists and this button.
    const std::vector<Window> leaves = screen.leaves(chooser);
    ASSERT_GE(leaves.size(), 2u);
    screen.clickCentre(leaves.back());
    screen.clickCentre(leaves[leaves.size() - 2]);
    enter("second.slk");
    EXPECT_EQ(chosen(1), answer(folder / "results/second.slk", folder / "results"));
    start({
        {"PROBE_LOST", "/gone"}
    });
    ASSERT_NE(open(), None);
    enter("third.slk");
    EXPECT_EQ(chosen(1), answer(folder / "results/third.slk", folder / "results"));
}
