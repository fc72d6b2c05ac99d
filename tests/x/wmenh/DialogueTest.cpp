// Errors, questions and warnings.
#include "tests/x/wmenh/Probe.h"

#include <X11/keysym.h>

#include <cstdlib>

using drive::Rect;
using drive::waitUntil;

class DialogueTest : public ProbeTest {
protected:
    Window dialogue(const std::string& title)
    {
        const Window found = screen.findTitle(title);
        waitForFocus(found);
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

TEST_F(DialogueTest, showsAnErrorBeforeThereIsAMainWindow)
{
    launch({
        {"PROBE_ERROR", "Couldn't attach to window 7"}
    });
    const Window error = dialogue("Error");
    ASSERT_NE(error, None);
    expectCentred(error);
    EXPECT_TRUE(probe->running());
    screen.key(XK_Return);
    EXPECT_EQ(probe->wait(), 3);
}

TEST_F(DialogueTest, endsAnErrorByItsCloseButtonAndByEscape)
{
    for (const bool byKey : {true, false}) {
        launch({
            {"PROBE_ERROR", "Usage: probe window_number"}
        });
        const Window error = dialogue("Error");
        ASSERT_NE(error, None);
        if (byKey)
            screen.key(XK_Escape);
        else
            screen.requestClose(error);
        EXPECT_EQ(probe->wait(), 3) << byKey;
    }
}

TEST_F(DialogueTest, keepsLongTextsOnTheScreen)
{
    std::string path;
    while (path.size() < 4000)
        path += "/a long folder name";
    launch({
        {"PROBE_ERROR", "Couldn't read " + path}
    });
    const Window error = dialogue("Error");
    ASSERT_NE(error, None);
    const Rect frame = screen.frameGeometry(error);
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
    ASSERT_NE(warning, None);
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
    // Once it is gone it is worth telling again.
    press("act");
    EXPECT_NE(dialogue("Warning"), None);
}

TEST_F(DialogueTest, boundsTheNumberOfWarnings)
{
    start({
        {"PROBE_ACTION", "many"}
    });
    press("act");
    ASSERT_TRUE(waitFor("acted"));
    EXPECT_TRUE(waitUntil([this] { return countTitled("Warning") == 5; })) << countTitled("Warning");
}

TEST_F(DialogueTest, asks)
{
    struct Case {
        bool close;
        std::vector<KeySym> keys;
        const char* answer;
    };
    const Case cases[] = {
        {false, {XK_Escape},          "confirmed 0"},
        {false, {XK_Return},          "confirmed 0"}, // nothing is overwritten by a stray key
        {true,  {},                   "confirmed 0"},
        {false, {XK_Left, XK_Return}, "confirmed 1"},
    };
    start({
        {"PROBE_ACTION", "confirm"}
    });
    size_t answers = 0;
    for (const Case& c : cases) {
        press("act");
        const Window question = dialogue("Question");
        ASSERT_NE(question, None);
        expectCentred(question);
        for (const KeySym key : c.keys)
            screen.key(key);
        if (c.close)
            screen.requestClose(question);
        ++answers;
        ASSERT_TRUE(waitUntil([&] { return said("confirmed").size() == answers; }));
        EXPECT_EQ(said("confirmed").back(), c.answer);
        ASSERT_TRUE(waitUntil([this] { return countTitled("Question") == 0; }));
    }
}

TEST_F(DialogueTest, keepsTheToolWaitingWhileItAsks)
{
    start({
        {"PROBE_ACTION", "confirm"}
    });
    press("act");
    const Window question = dialogue("Question");
    ASSERT_NE(question, None);
    press("toggle");
    const Rect size = screen.geometry(question);
    screen.click(question, size.width - 36, size.height - 36); // "No"
    ASSERT_TRUE(waitFor("confirmed 0"));
    EXPECT_TRUE(said("flag").empty());
}
