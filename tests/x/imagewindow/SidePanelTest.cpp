// SPDX-License-Identifier: MIT
// The side panel by pointer and keyboard: limits that are dragged and typed, gamma, colour, a sixth
// wavelength, metadata that are searched and copied, messages, and that it comes back with the next window.
#include "tests/x/imagewindow/Viewer.h"

#include "drive/Pair.h"

#include <X11/Xatom.h>
#include <X11/keysym.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

using namespace viewertest;

namespace {

constexpr int histogramHeight = 62;

// Where the window has room to become wider by the panel; window managers place each one further to the
// right.
std::vector<std::string> atTheLeft(std::vector<std::string> arguments)
{
    arguments.insert(arguments.end(), {"--geometry", "+60+60"});
    return arguments;
}

// A window with the panel on one of its tabs.
class Panel : public Viewer {
public:
    explicit Panel(std::vector<std::string> arguments, KeySym letter, bool withControl = false)
        : Viewer(atTheLeft(std::move(arguments))),
          shell(screen.findTitle("Image window " + std::to_string(number))),
          narrow(screen.geometry(shell).width)
    {
        focus();
        withControl ? screen.keyWith(XK_Control_L, letter) : screen.key(letter);
        EXPECT_TRUE(drive::waitUntil([&] { return shown(); }));
        drive::waitUntilCalm(screen);
    }

    ~Panel()
    {
        focus();
        screen.key(XK_F9);
        EXPECT_TRUE(drive::waitUntil([&] { return !shown(); }));
    }

    // The window is wider by the panel.
    bool shown() { return screen.geometry(shell).width > narrow + 250; }

    // The controls at the right of the image, from the top.
    std::vector<Window> leaves()
    {
        constexpr int width = 329, aboveIt = 50, belowIt = 40; // the panel, menus and tool bar, status lines
        const drive::Rect whole = screen.geometry(shell);
        std::vector<Window> list = screen.leaves(shell);
        std::erase_if(list, [&](Window leaf) {
            const drive::Rect place = screen.geometry(leaf);
            return place.x < whole.x + whole.width - width || place.y < whole.y + aboveIt ||
                   place.y > whole.y + whole.height - belowIt;
        });
        return list;
    }

    std::vector<Window> histograms()
    {
        std::vector<Window> list = leaves();
        std::erase_if(list, [&](Window leaf) { return screen.geometry(leaf).height != histogramHeight; });
        return list;
    }

    // Of the first card: black, white, gamma.
    Window field(std::size_t which)
    {
        const drive::Rect above = screen.geometry(histograms().at(0));
        std::vector<Window> list = leaves();
        std::erase_if(list, [&](Window leaf) {
            const int y = screen.geometry(leaf).y;
            return y < above.y + above.height || y > above.y + above.height + 20;
        });
        return list.at(2 * which + 1);
    }

    void type(std::size_t which, const std::string& text)
    {
        screen.clickCentre(field(which));
        drive::waitUntilCalm(screen);
        screen.replaceText(text);
        screen.key(XK_Return);
    }

    // What another program gets from a selection, once there is something in it.
    std::string selection(const char* name, const char* target = "UTF8_STRING")
    {
        const Window asker = XCreateSimpleWindow(screen.x(), screen.root(), 0, 0, 1, 1, 0, 0, 0);
        const Atom atom = XInternAtom(screen.x(), name, False), type = XInternAtom(screen.x(), target, False);
        std::string text;
        drive::waitUntil([&] {
            XConvertSelection(screen.x(), atom, type, type, asker, CurrentTime);
            XEvent event{};
            drive::waitUntil([&] { return XCheckTypedEvent(screen.x(), SelectionNotify, &event) != False; });
            text = screen.property(asker, target);
            return !text.empty();
        });
        XDestroyWindow(screen.x(), asker);
        return text;
    }

    Window shell;
    int narrow; // width of the window without the panel
};

std::string eightWavelengths()
{
    return madeOnce("eight.ome.tif", "--pattern ramp --size 64x48 --z 1 --channels 8 --time 1");
}

int displayedCount(const protocol::DisplayRecord& record)
{
    return static_cast<int>(std::count_if(record.wavelengths.begin(), record.wavelengths.end(),
                                          [](const auto& wave) { return wave.displayed; }));
}

} // namespace

TEST(SidePanel, ADraggedLimitIsDrawn)
{
    Panel panel({rgbImage()}, XK_c);
    ASSERT_GE(panel.histograms().size(), 2U);
    const Window red = panel.histograms()[0];
    const drive::Rect place = panel.screen.geometry(red);
    const drive::Pixel before = panel.pixelAt(20, 3);
    ASSERT_EQ(before, rgbPixel(20, 3));
    panel.screen.drag(red, place.width - 8, 30, place.width / 2, 30);
    EXPECT_TRUE(drive::waitUntil([&] { return panel.pixelAt(20, 3).red > before.red * 3 / 2; }));
    drive::waitUntilCalm(panel.screen);
    const int white = std::atoi(panel.screen.textIn(panel.field(1)).c_str());
    EXPECT_NEAR(white, 128, 20);
    const auto red8 = static_cast<unsigned char>(std::lround(255.0 * before.red / white));
    EXPECT_TRUE(panel.waitForPixel(20, 3, {red8, before.green, before.blue}));
}

TEST(SidePanel, TypedNumbersAreDrawnAndNonsenseIsRefused)
{
    Panel panel({rgbImage()}, XK_c);
    const drive::Pixel stored = rgbPixel(20, 3);
    const auto redIs = [&](double expected) {
        return drive::waitUntil([&] { return std::fabs(panel.pixelAt(20, 3).red - expected) <= 1; });
    };
    panel.type(2, "0.5");
    EXPECT_TRUE(redIs(255 * std::sqrt(stored.red / 255.0)));
    panel.type(2, "1");
    panel.type(1, "100");
    EXPECT_TRUE(redIs(255.0 * stored.red / 100));
    panel.type(0, "20");
    EXPECT_TRUE(redIs(255.0 * (stored.red - 20) / 80));
    panel.type(0, "many");
    EXPECT_TRUE(drive::waitUntil([&] { return panel.screen.textIn(panel.field(0)) == "20"; }));
    EXPECT_TRUE(redIs(255.0 * (stored.red - 20) / 80));
}

TEST(SidePanel, AColourIsDrawnAndPublished)
{
    Panel panel({"--colors", "red,2,blue", rgbImage()}, XK_c);
    constexpr int green = 2;
    const drive::Rect card = panel.screen.geometry(panel.histograms().at(0));
    panel.screen.click(panel.screen.root(), card.x + card.width, card.y - 18); // the colour of the first card
    drive::waitUntilCalm(panel.screen);
    panel.screen.key(XK_Down); // from red
    drive::waitUntilCalm(panel.screen);
    panel.screen.key(XK_Return);
    const auto record =
        panel.waitForRecord([&](const auto& r) { return r.wavelengths[0].colorIndex == green; });
    EXPECT_EQ(record.wavelengths[0].colorIndex, green);
    const drive::Pixel was = rgbPixel(7, 5);
    const int sum = std::min(255, was.red + was.green);
    EXPECT_TRUE(panel.waitForPixel(7, 5, {0, static_cast<unsigned char>(sum), was.blue}));
}

TEST(SidePanel, ASixthWavelengthIsRefusedAndTheMessageStays)
{
    Panel panel({eightWavelengths()}, XK_c);
    ASSERT_EQ(displayedCount(*panel.record()), 5);
    // The list is longer than the panel: to its end.
    const drive::Rect first = panel.screen.geometry(panel.histograms().at(0));
    for (int i = 0; i < 40; ++i)
        panel.screen.click(panel.screen.root(), first.x + 20, first.y + 20, 5);
    drive::waitUntilCalm(panel.screen);
    panel.screen.clickCentre(panel.leaves().back()); // wavelength 8
    drive::waitUntilCalm(panel.screen);
    EXPECT_EQ(displayedCount(*panel.record()), 5);
    panel.screen.clickCentre(panel.leaves().at(2)); // the tab of the messages
    drive::waitUntilCalm(panel.screen);
    const std::vector<Window> leaves = panel.leaves();
    const auto isText = [&](Window leaf) { return panel.screen.geometry(leaf).width > 200; };
    const auto text = std::find_if(leaves.begin() + 3, leaves.end(), isText);
    ASSERT_NE(text, leaves.end());
    panel.screen.click(*text, 40, 10);
    drive::waitUntilCalm(panel.screen);
    panel.screen.keyDown(XK_Control_L);
    panel.screen.key(XK_slash); // selects all
    panel.screen.keyUp(XK_Control_L);
    EXPECT_NE(panel.selection("PRIMARY", "STRING").find("At most five"), std::string::npos);
}

TEST(SidePanel, MetadataAreFoundAndCopied)
{
    Panel panel({stackImage()}, XK_i, true);
    const std::vector<Window> leaves = panel.leaves();
    ASSERT_GT(leaves.size(), 6U); // three tabs, a label, a field, a button and the rows
    panel.screen.clickCentre(leaves[4]);
    panel.screen.type("physicalsizex");
    drive::waitUntilCalm(panel.screen);
    panel.screen.clickCentre(leaves[5]);
    const std::string text = panel.selection("CLIPBOARD");
    EXPECT_NE(text.find("PhysicalSizeX\t0."), std::string::npos) << text;
    EXPECT_NE(text.find("OME\t"), std::string::npos) << text;
    EXPECT_EQ(text.find("PhysicalSizeY\t"), std::string::npos) << text;
    panel.screen.click(leaves[6], 40, 34); // the first row
    drive::waitUntilCalm(panel.screen);
    const std::string row = panel.selection("PRIMARY");
    EXPECT_EQ(row.find("OME"), 0U) << row;
    EXPECT_NE(row.find("PhysicalSizeY\t"), std::string::npos); // with all that is below it
}

TEST(SidePanel, ComesBackWithTheNextWindow)
{
    const auto widthOf = [](Viewer& viewer) {
        return viewer.screen.geometry(viewer.screen.findTitle("Image window")).width;
    };
    int narrow = 0;
    {
        Viewer viewer(atTheLeft({"--zoom", "8", stackImage()}));
        narrow = widthOf(viewer);
        viewer.focus();
        viewer.screen.key(XK_F9);
        ASSERT_TRUE(drive::waitUntil([&] { return widthOf(viewer) > narrow + 250; }));
        drive::waitUntilCalm(viewer.screen);
        EXPECT_EQ(viewer.record()->geometry.zoom, 8);
    }
    Viewer viewer(atTheLeft({"--zoom", "8", stackImage()}));
    EXPECT_GT(widthOf(viewer), narrow + 250);
    viewer.focus();
    viewer.screen.key(XK_F9);
    EXPECT_TRUE(drive::waitUntil([&] { return widthOf(viewer) < narrow + 250; }));
}
