// SPDX-License-Identifier: MIT
#include <gmock/gmock.h> // before the headers of X, whose macros break it

#include "profile/Profile.h"
#include "shell/InputLock.h"
#include "shell/Message.h"
#include "shell/Settings.h"
#include "shell/Shutdown.h"
#include "shell/StartUp.h"
#include "tests/recording/Recording.h"

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

using recording::calls;
using recording::script;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::ExitedWithCode;
using ::testing::StrEq;

namespace {

// Functions that end in exit() run in a child process, which writes the calls to standard error.
void tellCallsAtExit()
{
    std::atexit([] {
        for (const std::string& call : calls)
            std::fprintf(stderr, "%s\n", call.c_str());
    });
}

void start(std::vector<std::string> words)
{
    std::vector<char*> arguments;
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    tellCallsAtExit();
    runTool(static_cast<int>(words.size()), arguments.data());
}

void end(bool imageWindowCloses, int lock)
{
    tellCallsAtExit();
    lockId = lock;
    WMDisplayChange change = {WM_DISPLAY_CLOSED, 1};
    if (imageWindowCloses)
        ProcDisChange(1, &change, nullptr);
    else
        quitTool(nullptr, nullptr, nullptr);
}

} // namespace

class Shell : public ::testing::Test {
protected:
    void SetUp() override
    {
        recording::reset();
        lockId = 0;
    }
};
using ShellDeathTest = Shell;

TEST_F(ShellDeathTest, AWrongCommandLineIsTold)
{
    const struct {
        std::vector<std::string> arguments;
        std::string said;
    } cases[] = {
        {{}, "Usage: lineprofile window_number"},
        {{"1", "2"}, "Usage: lineprofile window_number"},
        {{"4"}, "Couldn't attach to window 4"},
        {{"x3"}, "Couldn't attach to window 0"},
        {{""}, "Couldn't attach to window 0"},
        {{"-3"}, "Couldn't attach to window -3"},
        {{"012abc"}, "Couldn't attach to window 12"},
        {{"99999999999999999999"}, "Couldn't attach to window 2147483647"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(::testing::PrintToString(c.arguments));
        std::vector<std::string> words = {"lineprofile"};
        words.insert(words.end(), c.arguments.begin(), c.arguments.end());
        EXPECT_EXIT(start(words), ExitedWithCode(255), EndsWith(")\nWMConfirmError(\"" + c.said + "\")\n"));
    }
}

TEST_F(ShellDeathTest, ARefusedLockNamesItsHolderTwiceAndShowsNoWindow)
{
    script.lock = -1;
    script.lockOwner = "100%s Intensity";
    const std::string expected =
        "WMRequestMonitorLock(\"Arbitray Line Profile\", 291, 12)\n"
        "WMConfirmError(\"Error from the \"Arbitrary Profile\" tool:\n\n"
        "The \"100%s Intensity\" tool has control of input from this window.\n"
        "To look at profiles in this window, you will need to close\nthe \"100%s Intensity\" tool.\")\n";
    EXPECT_EXIT(start({"lineprofile", "3"}), ExitedWithCode(255), EndsWith(expected));
}

TEST_F(ShellDeathTest, EndingsReleaseInTheFixedOrder)
{
    const std::string common = "WMCancelDisplayChange(1)\nWMCancelEventHandler(1, ButtonPressMask)\n";
    const std::string image = "WMCancelEventHandler(1, EnterWindowMask)\nIWGrRmAllGrID(1)\nIWDisplay(1)\n";
    const struct {
        const char* name;
        bool imageWindowCloses;
        int lock;
        std::string released;
    } cases[] = {
        {"Done with the lock", false, 7, common + image + "WMReleaseMonitorLock(7)\nIMClose(1)\n"},
        {"Done without it", false, 0, common + image + "IMClose(1)\n"},
        {"the image window goes, with the lock", true, 7, common + "WMReleaseMonitorLock(7)\n"},
        {"the image window goes, without it", true, 0, common},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EXIT(end(c.imageWindowCloses, c.lock), ExitedWithCode(0), StrEq(c.released));
    }
}

TEST_F(Shell, TheLockIsRequestedOnce)
{
    EXPECT_EQ(acquireInputLock(), 1);
    EXPECT_EQ(lockId, 7);
    EXPECT_EQ(EnterWindow(nullptr, nullptr), 1);
    EXPECT_THAT(recording::callsOf({"WM"}), ::testing::SizeIs(1));
}

TEST_F(Shell, ARefusalIsFinalAndToldOnce)
{
    script.lock = -1;
    script.lockOwner = std::string(4000, '"'); // cut, but both times
    EXPECT_EQ(acquireInputLock(), 0);
    EXPECT_LT(calls.back().size(), 1100u);
    EXPECT_THAT(calls.back(), EndsWith("\" tool.\")"));
    calls.clear();
    script.lock = 7;
    EXPECT_EQ(acquireInputLock(), 0);
    EXPECT_TRUE(calls.empty());
}

TEST_F(Shell, SettingsThatAreNotStoredAreOff)
{
    settings = {9, 9, 0.5f};
    readSettings();
    EXPECT_EQ(settings.showFwhm, 0);
    EXPECT_EQ(settings.scaleMode, 0);
}

TEST_F(Shell, ChangedSettingsAreSavedAtOnce)
{
    settings = {1, 0, 0.5f};
    fwhmToggled(nullptr, nullptr, nullptr);
    scalingChosen(nullptr, nullptr, nullptr);
    settings.scaleMode = 1;
    scalingChosen(nullptr, nullptr, nullptr);
    EXPECT_THAT(calls, ElementsAre("IWSetConfigBoolean(\"KV_APROF_FWHM\", 1)", "IWSaveUserConfig()",
                                   "IWSetConfigBoolean(\"KV_APROF_SCALE_AUTO\", 1)", "IWSaveUserConfig()",
                                   "IWSetConfigBoolean(\"KV_APROF_SCALE_AUTO\", 0)", "IWSaveUserConfig()"));
}

TEST_F(Shell, MessagesAreCutAtTheField)
{
    messageField = recording::makeToken("message");
    showMessage("%s", std::string(49, 'a').c_str());
    EXPECT_EQ(std::string(messageText), std::string(49, 'a'));
    showMessage("%d%s", 1, std::string(60, 'b').c_str());
    EXPECT_EQ(std::string(messageText), "1" + std::string(48, 'b'));
    EXPECT_THAT(calls, ElementsAre("WMUpdateField(message)", "WMUpdateField(message)"));
}
