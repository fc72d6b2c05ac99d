#include <gmock/gmock.h> // before X, whose macros it does not stand

#include "profile/profile.h"
#include "shell/inputLock.h"
#include "shell/message.h"
#include "shell/settings.h"
#include "shell/shutdown.h"
#include "shell/startUp.h"
#include "tests/recording/Recording.h"

#include <cstdio>
#include <cstdlib>

using recording::calls;
using recording::script;
using ::testing::ElementsAre;
using ::testing::ExitedWithCode;
using ::testing::StrEq;

// What runs into exit() runs in a child, which tells its calls on standard error.
static void tellCalls()
{
    for (const std::string& call : calls)
        std::fprintf(stderr, "%s\n", call.c_str());
}

static void start(std::vector<std::string> words)
{
    std::vector<char*> arguments;
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    std::atexit(tellCalls);
    runTool(static_cast<int>(words.size()), arguments.data());
}

class Shell : public ::testing::Test {
protected:
    void SetUp() override
    {
        recording::reset();
        lockId = 0;
    }
};
using ShellDeathTest = Shell;

TEST_F(ShellDeathTest, AWrongCommandLineEndsWithUsage)
{
    const std::string said = "WMConfirmError(\"Usage: lineprofile window_number\")\n";
    EXPECT_EXIT(start({"lineprofile"}), ExitedWithCode(255), StrEq("IWAttach(1, \"lineprofile\")\n" + said));
    EXPECT_EXIT(start({"lineprofile", "1", "2"}), ExitedWithCode(255),
                StrEq("IWAttach(3, \"lineprofile\")\n" + said));
}

TEST_F(ShellDeathTest, AWindowThatCannotBeAttachedIsNamed)
{
    const struct {
        const char *argument, *number;
    } cases[] = {
        {"4",                    "4"         },
        {"x3",                   "0"         },
        {"",                     "0"         },
        {"-3",                   "-3"        },
        {"12abc",                "12"        },
        {"99999999999999999999", "2147483647"},
    };
    for (const auto& c : cases) {
        std::string expected = "IWAttach(2, \"lineprofile\")\nIWGetConfigBoolean(\"KV_APROF_FWHM\")\n"
                               "IWGetConfigBoolean(\"KV_APROF_SCALE_AUTO\")\nIWAttachWin(1, " +
                               std::string(c.number) +
                               ", \"ro\")\nWMConfirmError(\"Couldn't attach to window " + c.number + "\")\n";
        EXPECT_EXIT(start({"lineprofile", c.argument}), ExitedWithCode(255), StrEq(expected)) << c.argument;
    }
}

TEST_F(ShellDeathTest, ARefusedLockNamesItsHolderTwiceAndShowsNoWindow)
{
    script.lock = -1;
    script.lockOwner = "100%s Intensity";
    const std::string expected =
        "IWAttachWin(1, 3, \"ro\")\nIWRtWID(1)\n"
        "WMRequestMonitorLock(\"Arbitray Line Profile\", 291, 12)\n"
        "WMConfirmError(\"Error from the \"Arbitrary Profile\" tool:\n\n"
        "The \"100%s Intensity\" tool has control of input from this window.\n"
        "To look at profiles in this window, you will need to close\nthe \"100%s Intensity\" tool.\")\n";
    EXPECT_EXIT(start({"lineprofile", "3"}), ExitedWithCode(255), ::testing::EndsWith(expected));
}

TEST_F(ShellDeathTest, EndingsReleaseInOrder)
{
    const std::string common = "WMCancelDisplayChange(1)\nWMCancelEventHandler(1, 4)\n";
    auto quit = [](int lock) {
        std::atexit(tellCalls);
        lockId = lock;
        quitTool(nullptr, nullptr, nullptr);
    };
    auto close = [](int lock) {
        std::atexit(tellCalls);
        lockId = lock;
        WMDisplayChange change = {681, 1};
        ProcDisChange(1, &change, nullptr);
    };
    const std::string image = "WMCancelEventHandler(1, 16)\nIWGrRmAllGrID(1)\nIWDisplay(1)\n";
    EXPECT_EXIT(quit(7), ExitedWithCode(0), StrEq(common + image + "WMReleaseMonitorLock(7)\nIMClose(1)\n"));
    EXPECT_EXIT(quit(0), ExitedWithCode(0), StrEq(common + image + "IMClose(1)\n"));
    EXPECT_EXIT(close(7), ExitedWithCode(0), StrEq(common + "WMReleaseMonitorLock(7)\n"));
    EXPECT_EXIT(close(0), ExitedWithCode(0), StrEq(common));
}

TEST_F(Shell, TheLockIsRequestedOnce)
{
    EXPECT_EQ(acquireInputLock(), 1);
    EXPECT_EQ(lockId, 7);
    calls.clear();
    EXPECT_EQ(EnterWindow(nullptr, nullptr), 1);
    EXPECT_TRUE(calls.empty());
}

TEST_F(Shell, ARefusalIsFinalAndToldOnce)
{
    script.lock = -1;
    script.lockOwner = std::string(4000, '"'); // cut, but both times
    EXPECT_EQ(acquireInputLock(), 0);
    EXPECT_LT(calls.back().size(), 1100u);
    EXPECT_THAT(calls.back(), ::testing::EndsWith("\" tool.\")"));
    calls.clear();
    script.lock = 7;
    EXPECT_EQ(acquireInputLock(), 0);
    EXPECT_TRUE(calls.empty());
}

TEST_F(Shell, SettingsAreReadWithTheScalingInverted)
{
    const struct {
        std::map<std::string, std::string> config;
        int showFwhm, scaleMode;
    } cases[] = {
        {{},                                                             0, 0},
        {{{"KV_APROF_FWHM", "true"}},                                    1, 0},
        {{{"KV_APROF_FWHM", "false"}, {"KV_APROF_SCALE_AUTO", "false"}}, 0, 1},
        {{{"KV_APROF_SCALE_AUTO", "true"}},                              0, 0},
    };
    for (const auto& c : cases) {
        settings.showFwhm = settings.scaleMode = 9;
        script.config = c.config;
        readSettings();
        EXPECT_EQ(settings.showFwhm, c.showFwhm);
        EXPECT_EQ(settings.scaleMode, c.scaleMode);
    }
}

TEST_F(Shell, ChangedSettingsAreSavedAtOnce)
{
    settings.showFwhm = 1;
    fwhmToggled(nullptr, nullptr, nullptr);
    for (int mode : {0, 1}) {
        settings.scaleMode = mode;
        scalingChosen(nullptr, nullptr, nullptr);
    }
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
