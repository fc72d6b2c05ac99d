// SPDX-License-Identifier: MIT
#include "tests/x/widgets/GalleryTest.h"

#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <unistd.h>

namespace {

class OutlinerTest : public GalleryTest {
protected:
    void SetUp() override
    {
        open("outliner");
        ASSERT_TRUE(drive::waitUntil([&] { return screen.leaves(window).size() == 2; }));
        outliner = screen.leaves(window).at(0);
        ASSERT_TRUE(support::waitForFocus(screen, window));
    }
    // Presses in the middle of a row counted from the top of the list.
    void clickRow(int place, int x = 100) { screen.click(outliner, x, rowY(place)); }
    int rowY(int place)
    {
        // Ten rows and the headings share the height.
        const int height = screen.geometry(outliner).height;
        return height * (2 * place + 3) / 22;
    }
    Window outliner = None;
};

// Seconds of processor time that a process has used.
double cpuSeconds(pid_t pid)
{
    std::ifstream file("/proc/" + std::to_string(pid) + "/stat");
    std::string text((std::istreambuf_iterator<char>(file)), {});
    std::istringstream fields(text.substr(text.rfind(')') + 2));
    std::string skipped;
    for (int i = 0; i < 11; ++i)
        fields >> skipped;
    double user = 0, system = 0;
    fields >> user >> system;
    return (user + system) / static_cast<double>(sysconf(_SC_CLK_TCK));
}

TEST_F(OutlinerTest, tenThousandRowsOpenQuickly)
{
    screen.key(XK_End);
    ASSERT_TRUE(told("selected image-99-98.ome.tif"));
    const double seconds = cpuSeconds(process->pid()); // the start of the program included
    RecordProperty("milliseconds", static_cast<int>(seconds * 1000));
    EXPECT_LT(seconds, 0.3);
}

TEST_F(OutlinerTest, pointerSelectsOpensAndCloses)
{
    clickRow(0);
    ASSERT_TRUE(told("selected Well 00"));
    screen.doubleClick(outliner, 100, rowY(1));
    ASSERT_TRUE(told("opened image-00-00.ome.tif"));
    clickRow(0, 14); // the node
    clickRow(1);
    EXPECT_TRUE(told("selected Well 01"));
}

TEST_F(OutlinerTest, severalRowsAreSelectedByControlAndShift)
{
    const struct {
        const char* name;
        KeySym held;
        int place;
        const char* line;
    } steps[] = {
        {"one", 0, 0, "selected Well 00"},
        {"another", XK_Control_L, 2, "selected image-00-01.ome.tif and 1 more"},
        {"a range from there", XK_Shift_L, 5, "selected image-00-04.ome.tif and 3 more"},
        {"less one of it", XK_Control_L, 5, "selected image-00-03.ome.tif and 2 more"},
        {"a range backwards", XK_Shift_L, 4, "selected image-00-03.ome.tif and 1 more"},
        {"one again", 0, 1, "selected image-00-00.ome.tif"},
    };
    for (const auto& step : steps) {
        if (step.held)
            screen.keyDown(step.held);
        clickRow(step.place);
        if (step.held)
            screen.keyUp(step.held);
        EXPECT_TRUE(told(step.line)) << step.name << ": " << output();
    }
    screen.keyDown(XK_Shift_L);
    screen.key(XK_Down);
    screen.key(XK_Down);
    screen.keyUp(XK_Shift_L);
    EXPECT_TRUE(told("selected image-00-02.ome.tif and 2 more")) << output();
}

TEST_F(OutlinerTest, headingsSortBothWays)
{
    const drive::Rect area = screen.geometry(outliner);
    screen.click(outliner, 250, area.height / 22); // "Size"
    ASSERT_TRUE(told("sorted 1"));
    screen.click(outliner, 250, area.height / 22);
    ASSERT_TRUE(told("sorted 1", 2));
    screen.click(outliner, 30, area.height / 22); // "Name"
    screen.click(outliner, 30, area.height / 22);
    ASSERT_TRUE(told("sorted 0", 2));
    clickRow(0);
    EXPECT_TRUE(told("selected Well 99"));
}

TEST_F(OutlinerTest, edgeOfAColumnResizesItAndSortsNothing)
{
    const drive::Picture before = screen.capture(outliner);
    const int y = screen.geometry(outliner).height / 22;
    screen.drag(outliner, 203, y, 300, y);
    EXPECT_TRUE(drive::waitUntil([&] { return screen.capture(outliner).pixels != before.pixels; }));
    screen.click(outliner, 250, y);
    EXPECT_TRUE(told("sorted 0")); // the first column reaches there now
    EXPECT_EQ(output(), "sorted 0\n");
}

TEST_F(OutlinerTest, keysMoveOpenAndFind)
{
    const struct {
        KeySym key;
        const char* line;
    } steps[] = {
        {XK_Home, "selected Well 00"},
        {XK_Down, "selected image-00-00.ome.tif"},
        {XK_Left, "selected Well 00"},
        {XK_Left, nullptr}, // closes it
        {XK_Down, "selected Well 01"},
        {XK_Return, "opened Well 01"},
        {XK_End, "selected image-99-98.ome.tif"},
    };
    for (const auto& step : steps) {
        screen.key(step.key);
        EXPECT_TRUE(!step.line || told(step.line)) << step.line;
    }
    screen.type("well 42");
    EXPECT_TRUE(told("selected Well 42"));
}

TEST_F(OutlinerTest, wheelAndThumbScroll)
{
    const drive::Rect area = screen.geometry(outliner);
    screen.click(outliner, 50, area.height / 2, 5);
    clickRow(0);
    ASSERT_TRUE(told("selected image-00-02.ome.tif"));
    screen.drag(outliner, area.width - 8, rowY(0), area.width - 8, area.height + 50);
    clickRow(9);
    EXPECT_TRUE(told("selected image-99-98.ome.tif"));
}

TEST_F(OutlinerTest, searchLeavesWhatMatches)
{
    screen.clickCentre(screen.leaves(window).at(1));
    screen.type("07-1");
    EXPECT_TRUE(told("shown 11")); // image-07-10 to -19 and their well
    screen.replaceText("");
    EXPECT_TRUE(told("shown 10000"));
}

} // namespace
