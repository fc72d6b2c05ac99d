// SPDX-License-Identifier: MIT
// The main window: bound fields, and texts in every locale.
#include "tests/x/wmenh/Probe.h"

#include <X11/keysym.h>

#include <string>

using drive::Rect;
using drive::waitUntil;

class WindowTest : public ProbeTest {
protected:
    // Clicks into the number field and waits until it shows that it has the focus.
    void focusNumber()
    {
        ASSERT_TRUE(support::waitForFocus(screen, window("shell")));
        press("number");
        const drive::Pixel background{220, 220, 217};
        ASSERT_TRUE(waitUntil([&] { return screen.capture(window("number")).at(0, 0) != background; }));
    }
    // Dark pixels in the lowest row of a text that has any.
    int darkInLowestRow(const std::string& name)
    {
        const drive::Picture picture = screen.capture(window(name));
        int dark = 0;
        for (int y = picture.height - 5; y >= 4 && dark == 0; --y)
            for (int x = 4; x < 60; ++x)
                dark += picture.at(x, y).red < 128;
        return dark;
    }
};

TEST_F(WindowTest, keepsTheUsersSizeWhenAControlGrows)
{
    start({{"PROBE_ACTION", "count"}});
    const Rect before = place("shell");
    XResizeWindow(screen.x(), window("shell"), static_cast<unsigned>(before.width + 200),
                  static_cast<unsigned>(before.height + 100));
    XSync(screen.x(), False);
    ASSERT_TRUE(waitUntil([&] { return place("plot").width == 700 && place("plot").height == 300; }));
    const int narrow = place("counter").width;
    press("act");
    ASSERT_TRUE(waitUntil([&] { return place("counter").width > narrow; }));
    ASSERT_TRUE(waitFor("counter 123456"));
    EXPECT_EQ(place("shell").width, before.width + 200);
    EXPECT_EQ(place("shell").height, before.height + 100);
}

TEST_F(WindowTest, takesNumbersWithinLimits)
{
    start();
    const struct {
        const char* typed;
        KeySym key;
        const char* told;
    } rows[] = {
        {"7", XK_Return, "number 7"},                        // by typing
        {"50", XK_Return, "number 9"},                       // beyond the maximum
        {"", XK_Down, "number 7"},                           // a step of two
        {"", XK_Up, "number 9"},       {"x", XK_Return, ""}, // no number: the old one comes back
        {"3", XK_Tab, "number 3"},                           // leaving the field
    };
    size_t told = 0;
    for (const auto& row : rows) {
        if (*row.typed) {
            focusNumber();
            screen.replaceText(row.typed);
        }
        screen.key(row.key);
        if (!*row.told)
            continue;
        ++told;
        ASSERT_TRUE(waitUntil([&] { return said("number").size() >= told; })) << row.typed;
        EXPECT_EQ(said("number").back(), row.told);
    }
    EXPECT_EQ(said("number").size(), told);
}

TEST_F(WindowTest, showsTheMicroSignInEveryLocale)
{
    const struct {
        const char *locale, *held;
    } rows[] = {{"C", "text \xB5\xB5\xB5"}, {"C.UTF-8", "text \xC2\xB5\xC2\xB5\xC2\xB5"}};
    for (const auto& row : rows) {
        start({{"LC_ALL", row.locale}, {"PROBE_MESSAGE", "\xB5\xB5\xB5"}});
        EXPECT_EQ(said("text").back(), row.held);
        screen.moveTo(screen.root(), 1590, 1190);
        // A micro sign reaches below the base line, which a box or a question mark does not, and there are
        // three of them.
        EXPECT_TRUE(waitUntil([&] { return darkInLowestRow("text") == 3; })) << darkInLowestRow("text");
        EXPECT_EQ(probe->errors(), "");
    }
}
