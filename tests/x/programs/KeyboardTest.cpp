// SPDX-License-Identifier: MIT
// The tool window without a pointer: what has the focus is seen, Tab goes everywhere, Alt goes straight to a
// control.
#include "tests/x/programs/Programs.h"

#include <X11/keysym.h>

#include <algorithm>
#include <string>
#include <vector>

using drive::Pair;
using drive::Rect;
using drive::waitUntil;

namespace programs {

namespace {

constexpr drive::Pixel focusColor{0x2f, 0x74, 0xd0}, yellow{255, 255, 0}, armedColor{0xbc, 0xd0, 0xe8};

} // namespace

class Keyboard : public ProgramsTest {
protected:
    // Controls by their place among the window's leaves.
    enum Control { Menu = 1, Toggle, Plot = 4, Done = 8, Save, Count = 11, Clear, Write, Help, Nothing = -1 };

    // Draws a segment and gives the keyboard to the tool window.
    void start(Pair& pair)
    {
        for (const Window leaf : screen.leaves(pair.toolWindow))
            places.push_back(screen.geometry(leaf));
        drawSegment(pair, {20, 20}, {220, 120});
        screen.clickCentre(pair.setting(Pair::ScalingLabel));
        EXPECT_TRUE(support::waitForFocus(screen, pair.toolWindow));
        screen.moveTo(screen.root(), 1590, 1190);
    }
    // The control whose border has the colour of the focus, all around and two pixels thick.
    int focused()
    {
        const drive::Picture picture = screen.captureScreen();
        const auto has = [&](const Rect& r) {
            const int right = r.x + r.width - 1, bottom = r.y + r.height - 1;
            return picture.at(r.x, r.y) == focusColor && picture.at(r.x + 1, r.y + 1) == focusColor &&
                   picture.at(right, bottom) == focusColor && picture.at(right - 1, bottom - 1) == focusColor;
        };
        const auto found = std::find_if(places.begin(), places.end(), has);
        return found == places.end() ? Nothing : static_cast<int>(found - places.begin());
    }
    void expectFocus(int control)
    {
        EXPECT_TRUE(waitUntil([&] { return focused() == control; })) << focused() << " for " << control;
    }
    void alt(KeySym key) { screen.keyWith(XK_Alt_L, key); }
    void expectConfig(const std::string& line)
    {
        EXPECT_TRUE(waitUntil([&] { return readBytes(configFile()).find(line) != std::string::npos; }))
            << readBytes(configFile());
    }

private:
    std::vector<Rect> places;
};

TEST_F(Keyboard, TabGoesRoundTheWindowInBothDirections)
{
    Pair pair = open({ramp()});
    start(pair);
    std::vector<int> round{Menu, Toggle, Plot, Done, Save, Help};
    expectFocus(Menu);
    for (const bool saved : {false, true}) {
        for (size_t i = 1; i <= round.size(); ++i) {
            screen.key(XK_Tab);
            expectFocus(round[i % round.size()]);
        }
        for (size_t i = round.size(); i-- > 0;) {
            screen.keyWith(XK_Shift_L, XK_Tab);
            expectFocus(round[i]);
        }
        if (saved)
            break;
        // With a saved profile Tab goes to "Clear" and "Write To File..." too, but not to the counter, which
        // cannot be edited.
        alt(XK_s);
        expectFocus(Save);
        screen.keyWith(XK_Shift_L, XK_Tab);
        for (int i = 0; i < 3; ++i)
            screen.keyWith(XK_Shift_L, XK_Tab);
        expectFocus(Menu);
        round.insert(round.end() - 1, {Clear, Write});
    }
    expectDone(pair);
}

TEST_F(Keyboard, ThePlotHearsEveryKeyAndShowsItsFocus)
{
    Pair pair = open({ramp()});
    start(pair);
    const auto readoutShown = [&] { return count(screen.capture(pair.plot), yellow) > 100; };
    screen.key(XK_Tab);
    screen.key(XK_Tab);
    expectFocus(Plot);
    screen.moveTo(pair.plot, 100, 90);
    EXPECT_FALSE(readoutShown());
    screen.key(XK_x);
    EXPECT_TRUE(waitUntil(readoutShown));
    // Another size leaves the border whole.
    XResizeWindow(screen.x(), pair.toolWindow, 760, 480);
    XSync(screen.x(), False);
    EXPECT_TRUE(waitUntil([&] {
        const Rect place = screen.geometry(pair.plot);
        const drive::Picture plot = screen.capture(pair.plot);
        return place.width > 500 && plot.at(place.width - 1, place.height - 1) == focusColor &&
               plot.at(place.width / 2, place.height - 1) == focusColor;
    }));
    screen.key(XK_Tab);
    EXPECT_TRUE(waitUntil([&] { return count(screen.capture(pair.plot), focusColor) == 0; }));
    expectDone(pair);
}

TEST_F(Keyboard, EverythingCanBeDoneWithIt)
{
    Pair pair = open({ramp()});
    start(pair);
    alt(XK_p);
    expectConfig("KV_APROF_FWHM:\ttrue");
    expectFocus(Toggle);
    alt(XK_i);
    expectFocus(Menu);
    screen.key(XK_space);
    const auto armed = [&] { return count(screen.captureScreen(), armedColor) > 500; };
    EXPECT_TRUE(waitUntil(armed));
    EXPECT_NE(support::postedMenu(screen, pair.toolWindow), Window{None});
    screen.key(XK_Down);
    drive::waitUntilCalm(screen);
    screen.key(XK_Return);
    expectConfig("KV_APROF_SCALE_AUTO:\tfalse");
    EXPECT_TRUE(waitUntil([&] { return support::postedMenu(screen, pair.toolWindow) == None; }));
    drive::waitUntilCalm(screen); // Motif drops keys while a menu goes away
    screen.key(XK_Escape);        // nothing is left that it could close
    alt(XK_w);                    // is off
    alt(XK_s);
    expectFocus(Save);
    EXPECT_EQ(screen.findTitleNow("Save as"), None);
    screen.key(XK_Return);
    EXPECT_TRUE(waitUntil([&] { return pair.savedCount() == "2"; })) << pair.savedCount();
    alt(XK_w);
    ASSERT_NE(screen.findTitle("Save as SYLK Spreadsheet"), None);
    drive::waitUntilCalm(screen);
    screen.replaceText("keys");
    screen.key(XK_Return);
    EXPECT_TRUE(waitUntil([&] { return fs::exists(folder / "keys.slk"); }));
    ASSERT_TRUE(support::waitForFocus(screen, pair.toolWindow));
    alt(XK_h);
    const Window help = screen.findTitle("Help: LineProfile");
    ASSERT_TRUE(support::waitForFocus(screen, help));
    screen.key(XK_Escape);
    EXPECT_TRUE(waitUntil([&] { return screen.findTitleNow("Help: LineProfile") == None; }));
    ASSERT_TRUE(support::waitForFocus(screen, pair.toolWindow));
    alt(XK_d);
    EXPECT_EQ(pair.tool->wait(), 0);
    EXPECT_EQ(pair.tool->errors(), "");
}

} // namespace programs
