// SPDX-License-Identifier: MIT
// Errors, questions and warnings.
#include "tests/x/wmenh/Probe.h"

#include "drive/Pair.h"

#include <X11/keysym.h>

#include <chrono>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

using drive::Rect;
using drive::waitUntil;

class DialogueTest : public ProbeTest {
protected:
    Window dialogue(const std::string& title)
    {
        const Window found = screen.findTitle(title);
        EXPECT_TRUE(support::waitForFocus(screen, found)) << title;
        return found;
    }
    void expectCentred(Window window)
    {
        const Rect all = screen.geometry(screen.root());
        EXPECT_TRUE(waitUntil([&] {
            const Rect frame = screen.geometry(window);
            return std::abs(frame.x + frame.width / 2 - all.width / 2) <= 20 &&
                   std::abs(frame.y + frame.height / 2 - all.height / 2) <= 30;
        })) << screen.geometry(window).x
            << ", " << screen.geometry(window).y;
    }
};

// Before there is a main window, too.
TEST_F(DialogueTest, anErrorIsConfirmedByKeyAndByCloseButton)
{
    const std::pair<const char*, std::function<void(Window)>> answers[] = {
        {"Return", [this](Window) { screen.key(XK_Return); }},
        {"Escape", [this](Window) { screen.key(XK_Escape); }},
        {"close button", [this](Window error) { screen.requestClose(error); }},
    };
    for (const auto& [name, answer] : answers) {
        SCOPED_TRACE(name);
        launch({{"PROBE_ERROR", "Couldn't attach to window 7"}});
        const Window error = dialogue("Error");
        expectCentred(error);
        EXPECT_TRUE(probe->running());
        answer(error);
        EXPECT_EQ(probe->wait(), 3);
    }
}

TEST_F(DialogueTest, keepsLongTextsOnTheScreen)
{
    std::string path;
    while (path.size() < 4000)
        path += "/a long folder name";
    launch({{"PROBE_ERROR", "Couldn't read " + path}});
    const Rect frame = screen.frameGeometry(dialogue("Error"));
    EXPECT_GE(frame.x, 0);
    EXPECT_GE(frame.y, 0);
    EXPECT_LE(frame.width, 1000);
    EXPECT_LE(frame.height, 800);
    screen.key(XK_Return);
    EXPECT_EQ(probe->wait(), 3);
}

TEST_F(DialogueTest, showsARepeatedWarningOnce)
{
    start();
    press("act");
    const Window warning = dialogue("Warning");
    EXPECT_EQ(countTitled("Warning"), 1);
    // It is not modal: the tool still works.
    press("toggle");
    EXPECT_TRUE(waitFor("flag 1"));
    press("act");
    press("toggle");
    EXPECT_TRUE(waitFor("flag 0"));
    EXPECT_EQ(countTitled("Warning"), 1);
    screen.requestClose(warning);
    EXPECT_TRUE(waitUntil([this] { return countTitled("Warning") == 0; }));
    // It does not come back at once, but when it has not been raised for a while.
    press("act");
    drive::waitUntilCalm(screen);
    EXPECT_EQ(countTitled("Warning"), 0);
    const auto later = std::chrono::steady_clock::now() + std::chrono::milliseconds(1200);
    waitUntil([later] { return std::chrono::steady_clock::now() > later; });
    press("act");
    EXPECT_NE(screen.findTitle("Warning"), None);
}

TEST_F(DialogueTest, boundsTheNumberOfWarnings)
{
    start({{"PROBE_ACTION", "many"}});
    press("act");
    ASSERT_TRUE(waitFor("acted"));
    EXPECT_TRUE(waitUntil([this] { return countTitled("Warning") == 5; })) << countTitled("Warning");
}

TEST_F(DialogueTest, asks)
{
    const struct {
        const char* name;
        std::vector<KeySym> keys; // none: the close button
        const char* answer;
    } rows[] = {
        {"Escape", {XK_Escape}, "confirmed 0"},
        {"Return", {XK_Return}, "confirmed 0"}, // nothing is overwritten by a stray key
        {"close button", {}, "confirmed 0"},
        {"the other button", {XK_Left, XK_Return}, "confirmed 1"},
    };
    start({{"PROBE_ACTION", "confirm"}});
    size_t answers = 0;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        press("act");
        const Window question = dialogue("Question");
        expectCentred(question);
        for (const KeySym key : row.keys)
            screen.key(key);
        if (row.keys.empty())
            screen.requestClose(question);
        ++answers;
        ASSERT_TRUE(waitUntil([&] { return said("confirmed").size() == answers; }));
        EXPECT_EQ(said("confirmed").back(), row.answer);
        ASSERT_TRUE(waitUntil([this] { return countTitled("Question") == 0; }));
    }
}

TEST_F(DialogueTest, keepsTheToolWaitingWhileItAsks)
{
    start({{"PROBE_ACTION", "confirm"}});
    press("act");
    const Window question = dialogue("Question");
    press("toggle");
    const Rect size = screen.geometry(question);
    screen.click(question, size.width - 36, size.height - 36); // "No"
    ASSERT_TRUE(waitFor("confirmed 0"));
    EXPECT_TRUE(said("flag").empty());
}
