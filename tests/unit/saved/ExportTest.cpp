// SPDX-License-Identifier: MIT
#include "tests/unit/saved/SavedTest.h"

#include "shell/Message.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

using recording::calls;
using recording::script;
using ::testing::ElementsAre;
using ::testing::StartsWith;

namespace fs = std::filesystem;

class Export : public SavedTest {
protected:
    fs::path folder;

    void SetUp() override
    {
        SavedTest::SetUp();
        char name[] = "/tmp/exportXXXXXX";
        folder = mkdtemp(name);
        messageField = recording::makeToken("message");
    }
    void TearDown() override
    {
        SavedTest::TearDown();
        fs::remove_all(folder);
    }

    static void save()
    {
        SavedTest::save();
        calls.clear();
    }
    static void write() { writeSavedProfiles(nullptr, nullptr, nullptr); }
    // What it has called last.
    static std::vector<std::string> lastCalls(long count) { return {calls.end() - count, calls.end()}; }
    static std::string contents(const fs::path& path)
    {
        std::ostringstream text;
        text << std::ifstream(path).rdbuf();
        return text.str();
    }
    static std::string chooser(const std::string& directory)
    {
        return "WMInlineFileChooser(\"Save as SYLK Spreadsheet\", \"" + directory +
               "\", \"*.slk\", 256, 12, \"default_PRF.slk\")";
    }

    // The proposed name is made once per process, so each of these runs in a child process, whose status 0
    // says that its expectations held.
    static void proposesOnce();
    static void proposesTheDataDirectory();
};

void Export::proposesOnce()
{
    const std::vector<std::string> always{"WMSetGetFileSrc(\"ZVE_DEF_DIR:\", \"SYLK_EXT:\")",
                                          "WMSetCenterOnScreen(1)", chooser("/images")};
    std::vector<std::string> first{"OrvelGenerateFileName(\"/images/cells.ome.tif\", \"PRF\", \"slk\")",
                                   "OrvelIsADatabaseURI(\"/images/cells.ome.tif\")"};
    first.insert(first.end(), always.begin(), always.end());
    save();
    write(); // cancelled
    EXPECT_EQ(calls, first);
    EXPECT_EQ(savedCount, 1);
    script.filename = "/elsewhere/b.tif";
    clear();
    save();
    write();
    EXPECT_EQ(calls, always);
}

void Export::proposesTheDataDirectory()
{
    script.databaseURI = true;
    script.dataDirectory = std::string(300, 'd');
    save();
    write();
    EXPECT_EQ(calls.back(), chooser(std::string(255, 'd')));
}

// The name makes them run before the tests that export in this process.
using ExportDeathTest = Export;
TEST_F(ExportDeathTest, ProposesFromTheFirstProfile)
{
    EXPECT_EXIT((proposesOnce(), std::_Exit(HasFailure())), ::testing::ExitedWithCode(0), "");
    EXPECT_EXIT((proposesTheDataDirectory(), std::_Exit(HasFailure())), ::testing::ExitedWithCode(0), "");
}

TEST_F(Export, WarnsWhenThereIsNothingToWrite)
{
    write();
    EXPECT_THAT(calls, ElementsAre("WMShowWarning(\"No profiles have been saved\")"));
}

TEST_F(Export, AsksBeforeItOverwritesAndEmptiesTheStore)
{
    script.chosenPath = folder / "out.slk";
    std::ofstream(script.chosenPath) << "old";
    script.confirm = 0;
    save();
    write();
    EXPECT_THAT(lastCalls(2),
                ElementsAre("WMSetCenterOnScreen(1)",
                            "WMConfirm(\"File already exists.\nDo you want to Overwrite it?\")"));
    EXPECT_EQ(contents(script.chosenPath), "old");
    EXPECT_EQ(savedCount, 1);
    script.confirm = 1;
    write();
    EXPECT_THAT(contents(script.chosenPath),
                StartsWith("ID;PKelvora Line Profile\nB;Y12;X8\nC;X1;Y1;K\"/images/"));
    EXPECT_EQ(savedCount, 0);
    EXPECT_THAT(lastCalls(4), ElementsAre("WMUpdateField(message)", "WMDisableField(Clear)",
                                          "WMDisableField(Write)", "WMUpdateField(counter)"));
    EXPECT_EQ(std::string(messageText), ("File " + script.chosenPath + " saved.").substr(0, 49));
}

TEST_F(Export, AFileThatCannotBeOpenedKeepsTheStore)
{
    save();
    script.chosenPath = folder / "missing" / "out.slk";
    write();
    EXPECT_EQ(savedCount, 1);
    EXPECT_THAT(calls.back(), StartsWith("WMInlineFileChooser"));
}
