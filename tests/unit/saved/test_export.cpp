#include <gmock/gmock.h> // before X, whose macros it does not stand

#include "saved/savedProfiles.h"
#include "shell/message.h"
#include "tests/recording/Recording.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

using recording::calls;
using recording::script;
using recording::takeCalls;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::StartsWith;

namespace fs = std::filesystem;

class Export : public ::testing::Test {
protected:
    fs::path folder;

    void SetUp() override
    {
        char name[] = "/tmp/exportXXXXXX";
        folder = mkdtemp(name);
        recording::reset();
        savedControls = {recording::makeToken("counter"), recording::makeToken("Clear"),
                         recording::makeToken("Write")};
        messageField = recording::makeToken("message");
        segment.start = {0, 10, 20, 1};
        segment.end = {0, 6, 20, 1};
        sampleProfile();
    }
    void TearDown() override
    {
        clearSavedProfiles(nullptr, nullptr, nullptr);
        fs::remove_all(folder);
    }

    static void save()
    {
        saveCurrentProfile(nullptr, nullptr, nullptr);
        calls.clear();
    }
    static void write() { writeSavedProfiles(nullptr, nullptr, nullptr); }
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

    // What is proposed is made once in a process: these run in a child, which ends with 0 when all held.
    static void proposesOnce();
    static void proposesTheDataDirectory();
    [[noreturn]] static void inChild(void (*body)())
    {
        body();
        std::_Exit(HasFailure() ? 1 : 0);
    }
};

TEST_F(Export, WritesAndEmptiesTheStore)
{
    save();
    script.chosenPath = folder / "out.slk";
    write();
    EXPECT_THAT(contents(script.chosenPath),
                StartsWith("ID;PKelvora Line Profile\nB;Y12;X8\nC;X1;Y1;K\"/images/"));
    EXPECT_EQ(savedCount, 0);
    std::vector<std::string> last(calls.end() - 4, calls.end());
    EXPECT_THAT(last, ElementsAre("WMUpdateField(message)", "WMDisableField(Clear)", "WMDisableField(Write)",
                                  "WMUpdateField(counter)"));
    EXPECT_EQ(std::string(messageText), ("File " + script.chosenPath + " saved.").substr(0, 49));
}

TEST_F(Export, WarnsWhenThereIsNothingToWrite)
{
    takeCalls();
    write();
    EXPECT_THAT(calls, ElementsAre("WMShowWarning(\"No profiles have been saved\")"));
}

void Export::proposesOnce()
{
    save();
    write(); // cancelled
    EXPECT_THAT(takeCalls(), ElementsAre("OrvelGenerateFileName(\"/images/cells.ome.tif\", \"PRF\", \"slk\")",
                                         "OrvelIsADatabaseURI(\"/images/cells.ome.tif\")",
                                         "WMSetGetFileSrc(\"ZVE_DEF_DIR:\", \"SYLK_EXT:\")",
                                         "WMSetCenterOnScreen(1)", chooser("/images")));
    EXPECT_EQ(savedCount, 1);
    script.filename = "/elsewhere/b.tif";
    clearSavedProfiles(nullptr, nullptr, nullptr);
    save();
    write();
    EXPECT_THAT(takeCalls(), ElementsAre("WMSetGetFileSrc(\"ZVE_DEF_DIR:\", \"SYLK_EXT:\")",
                                         "WMSetCenterOnScreen(1)", chooser("/images")));
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
    EXPECT_EXIT(inChild(proposesOnce), ::testing::ExitedWithCode(0), "");
    EXPECT_EXIT(inChild(proposesTheDataDirectory), ::testing::ExitedWithCode(0), "");
}

TEST_F(Export, AsksBeforeItOverwrites)
{
    script.chosenPath = folder / "out.slk";
    for (int confirm : {0, 1}) {
        std::ofstream(script.chosenPath) << "old";
        script.confirm = confirm;
        save();
        write();
        EXPECT_THAT(calls, Contains("WMConfirm(\"File already exists.\nDo you want to Overwrite it?\")"));
        EXPECT_EQ(contents(script.chosenPath) == "old", !confirm);
        EXPECT_EQ(savedCount, confirm ? 0 : 1);
    }
}

TEST_F(Export, AFileThatCannotBeOpenedKeepsTheStore)
{
    save();
    script.chosenPath = folder / "missing" / "out.slk";
    std::string message = messageText;
    write();
    EXPECT_EQ(savedCount, 1);
    EXPECT_EQ(messageText, message);
    EXPECT_THAT(calls.back(), StartsWith("WMInlineFileChooser"));
}
