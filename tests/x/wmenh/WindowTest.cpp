// The main window: rows, sizes, bound controls, tips, texts, help.
#include "tests/x/wmenh/Probe.h"

#include "drive/Pair.h" // waitUntilCalm

#include <X11/Xutil.h>
#include <X11/keysym.h>

#include <algorithm>

using drive::Rect;
using drive::waitUntil;

namespace {

bool overlap(const Rect& a, const Rect& b)
{
    return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height && b.y < a.y + a.height;
}

bool inside(const Rect& inner, const Rect& outer)
{
    return inner.x >= outer.x && inner.y >= outer.y && inner.x + inner.width <= outer.x + outer.width &&
           inner.y + inner.height <= outer.y + outer.height;
}

int centre(const Rect& r)
{
    return 2 * r.y + r.height;
}

const std::vector<std::string> controls = {"menu",    "toggle", "axis", "plot", "distance", "text",
                                           "counter", "number", "done", "act",  "write",    "help"};

} // namespace

class WindowTest : public ProbeTest {
protected:
    void checkLayout()
    {
        const Rect shell = place("shell"), axis = place("axis"), plot = place("plot"),
                   distance = place("distance");
        for (const std::string& name : controls) {
            EXPECT_TRUE(inside(place(name), shell)) << name;
            for (const std::string& other : controls)
                EXPECT_TRUE(name == other || !overlap(place(name), place(other))) << name << " on " << other;
        }
        EXPECT_EQ(plot.x, axis.x + axis.width);
        EXPECT_EQ(plot.x, distance.x);
        EXPECT_EQ(plot.width, distance.width);
        EXPECT_EQ(plot.y + plot.height, distance.y);
        EXPECT_EQ(axis.y + axis.height, distance.y);
        EXPECT_EQ(distance.height, 24);
        for (const char* const name : {"act", "counter", "write", "help"})
            EXPECT_NEAR(centre(place("done")), centre(place(name)), 2) << name;
        EXPECT_NEAR(centre(place("menu")), centre(place("toggle")), 2);
    }
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
    bool waitForPlot(int width, int height)
    {
        return waitUntil([&] { return place("plot").width == width && place("plot").height == height; });
    }
    void resize(int width, int height)
    {
        XResizeWindow(screen.x(), window("shell"), static_cast<unsigned>(width),
                      static_cast<unsigned>(height));
        XSync(screen.x(), False);
    }
};

TEST_F(WindowTest, growsThePlotAndNothingElse)
{
    start();
    ASSERT_TRUE(waitForPlot(500, 200));
    checkLayout();
    const Rect shell = place("shell"), text = place("text"), done = place("done");
    resize(shell.width + 211, shell.height + 97);
    ASSERT_TRUE(waitForPlot(711, 297)) << place("plot").width << " x " << place("plot").height;
    checkLayout();
    EXPECT_EQ(place("text").height, text.height);
    EXPECT_EQ(place("text").width, text.width + 211);
    EXPECT_EQ(place("done").width, done.width);
    EXPECT_EQ(place("done").height, done.height);
}

TEST_F(WindowTest, keepsTheUsersSizeWhenAControlGrows)
{
    start({{"PROBE_ACTION", "count"}});
    const Rect before = place("shell");
    resize(before.width + 200, before.height + 100);
    ASSERT_TRUE(waitForPlot(700, 300));
    const int narrow = place("counter").width;
    press("act");
    ASSERT_TRUE(waitUntil([&] { return place("counter").width > narrow; }));
    ASSERT_TRUE(waitFor("counter 123456"));
    EXPECT_EQ(place("shell").width, before.width + 200);
    EXPECT_EQ(place("shell").height, before.height + 100);
    checkLayout();
}

TEST_F(WindowTest, cannotBeMadeTooSmallForItsControls)
{
    start();
    XSizeHints hints{};
    long supplied = 0;
    ASSERT_TRUE(waitUntil([&] {
        XGetWMNormalHints(screen.x(), window("shell"), &hints, &supplied);
        return (hints.flags & PMinSize) && hints.min_height > 100;
    }));
    EXPECT_LT(hints.min_width, place("shell").width);
    EXPECT_LT(hints.min_height, place("shell").height);
    resize(hints.min_width, hints.min_height);
    ASSERT_TRUE(waitUntil([&] { return place("shell").height == hints.min_height; }));
    ASSERT_TRUE(waitUntil([&] { return place("plot").height < 200 && place("plot").width < 500; }));
    checkLayout();
    EXPECT_GE(place("plot").height, 100);
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

TEST_F(WindowTest, showsTips)
{
    start();
    const drive::Picture before = screen.captureScreen();
    const Rect toggle = place("toggle");
    screen.moveTo(window("toggle"), toggle.width / 2, toggle.height / 2);
    // The tip's own background, which nothing else has.
    const drive::Pixel yellow{255, 255, 225};
    const auto tipShown = [&] {
        const auto pixels = screen.captureScreen().pixels;
        return std::count(pixels.begin(), pixels.end(), yellow) > 2000;
    };
    EXPECT_EQ(std::count(before.pixels.begin(), before.pixels.end(), yellow), 0);
    EXPECT_TRUE(waitUntil(tipShown));
}

TEST_F(WindowTest, showsTheMicroSignInEveryLocale)
{
    const struct {
        const char *locale, *held;
    } rows[] = {{"C", "text \xB5\xB5\xB5"}, {"C.UTF-8", "text \xC2\xB5\xC2\xB5\xC2\xB5"}};
    for (const auto& row : rows) {
        start({{"LC_ALL", row.locale}, {"PROBE_MESSAGE", "\xB5\xB5\xB5"}});
        EXPECT_EQ(said("text").back(), row.held);
        ASSERT_TRUE(waitForPlot(500, 200));
        screen.moveTo(screen.root(), 1590, 1190);
        // A micro sign reaches below the base line, which a box or a question mark does not, and there are
        // three of them.
        EXPECT_TRUE(waitUntil([&] { return darkInLowestRow("text") == 3; })) << darkInLowestRow("text");
        EXPECT_EQ(probe->errors(), "");
    }
}

TEST_F(WindowTest, opensHelpOnce)
{
    start();
    press("help");
    const Window help = screen.findTitle("Help: LineProfile");
    ASSERT_NE(help, None);
    EXPECT_TRUE(inside(screen.frameGeometry(help), screen.geometry(screen.root())));
    EXPECT_FALSE(overlap(screen.frameGeometry(help), screen.frameGeometry(window("shell"))));
    press("help");
    screen.requestClose(help);
    EXPECT_TRUE(waitUntil([this] { return countTitled("Help:") == 0; }));
    press("help");
    const Window again = screen.findTitle("Help: LineProfile");
    ASSERT_NE(again, None);
    screen.click(again, 60, 60);
    ASSERT_TRUE(support::waitForFocus(screen, again));
    screen.key(XK_Escape);
    EXPECT_TRUE(waitUntil([this] { return countTitled("Help:") == 0; }));
}
