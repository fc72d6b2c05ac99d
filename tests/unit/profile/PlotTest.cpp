// SPDX-License-Identifier: MIT
#include "tests/recording/RunningTool.h"

#include "profile/Mapping.h"
#include "profile/Plot.h"
#include "profile/Profile.h"
#include "segment/Segment.h"

#include <X11/IntrinsicP.h> // XtResizeWidget

#include <cfloat>
#include <utility>
#include <vector>

using recording::calls;
using recording::script;
using ::testing::Contains;

class Plot : public RunningTool {
protected:
    // Wavelengths of constant value, one per colour index.
    static void setWaves(const std::vector<int>& colors, const std::vector<float>& values)
    {
        script.waves.assign(colors.size(), 528);
        script.displayed.assign(colors.size(), 1);
        script.colors = colors;
        script.pixel = [values](int, int, int, int w) { return values[static_cast<size_t>(w)]; };
    }
    // Draws the profile along a row of the image, from column x0 to x1.
    static void drawRow(float x0, float x1)
    {
        segment.start = {0, x0, 10, 0};
        segment.end = {0, x1, 10, 0};
        segmentDefined = 1;
        EXPECT_EQ(drawProfile(1), 1);
    }
    // Pixels of one colour in a rectangle.
    static int count(Drawable drawable, unsigned long pixel, int x, int y, int width, int height)
    {
        XImage* image = XGetImage(display, drawable, x, y, static_cast<unsigned>(width),
                                  static_cast<unsigned>(height), AllPlanes, ZPixmap);
        int found = 0;
        for (int i = 0; i < width * height; i++)
            found += XGetPixel(image, i % width, i / width) == pixel;
        XDestroyImage(image);
        return found;
    }
    static bool isAt(Drawable drawable, PlotColor color, int x, int y)
    {
        return count(drawable, plot.plotColors[color], x, y, 1, 1) == 1;
    }
    static bool isEmpty()
    {
        const int w = plot.plotWidth, h = plot.plotHeight;
        return count(plot.plotPixmap, plot.plotColors[colorBackground], 0, 0, w, h) == w * h;
    }
    // Pixels of a colour in a line of the widths' texts, below what hangs down from the line before.
    static int textPixels(PlotColor color, int line)
    {
        const int h = plot.lineHeight;
        return count(plot.plotPixmap, plot.plotColors[color], 5, h * line + 4, 100, h - 4);
    }
    // Buttons, motion and keys: their events have the pointer in the same place.
    static void input(int x, int y, int type = ButtonPress)
    {
        XEvent event = {};
        event.xbutton.type = type;
        event.xbutton.display = display;
        event.xbutton.window = XtWindow(plot.plotArea);
        event.xbutton.state = Button1Mask;
        event.xbutton.x = x;
        event.xbutton.y = y;
        XtDispatchEvent(&event);
    }
    static double gauge(const char* name) { return valueOf<double>(plot.intensityScale, name); }
};

TEST_F(Plot, DrawsEachChannelInItsDisplayColor)
{
    const struct {
        int index;
        const char* rgb;
    } cases[] = {
        {0, "white"},   {1, "red"},  {2, "green1"}, {3, "yellow"}, {4, "#6666ff"},
        {5, "magenta"}, {6, "cyan"}, {7, "white"},  {9, "white"},  {-1, "white"},
    };
    for (const auto& c : cases) {
        setWaves({0, c.index, 0}, {0, 60, 100}); // 60 of 100 stands 120 of 200 rows above the bottom
        drawRow(0, 99);
        XColor color, exact;
        XAllocNamedColor(display, DefaultColormap(display, 0), c.rgb, &color, &exact);
        EXPECT_EQ(count(plot.plotPixmap, color.pixel, 250, 80, 1, 1), 1) << c.index;
    }
    EXPECT_TRUE(isAt(XtWindow(plot.plotArea), colorWhite, 250, 80));
    EXPECT_TRUE(isAt(plot.plotPixmap, colorBackground, 250, 100));
}

TEST_F(Plot, TheIntensityAxisFollowsTheRange)
{
    const struct {
        const char* name;
        std::vector<int> colors;
        std::vector<float> values;
        double min, max;
        bool empty;
    } cases[] = {
        {"two levels", {1, 2}, {5, 25}, 5, 25, false},
        {"flat", {1}, {7}, 7, 7, true},
        {"no channel", {}, {}, FLT_MAX, -FLT_MAX, true},
    };
    for (const auto& c : cases) {
        setWaves(c.colors, c.values);
        drawRow(3, 40);
        EXPECT_EQ(gauge("xrtGaMin"), c.min) << c.name;
        EXPECT_EQ(gauge("xrtGaMax"), c.max) << c.name;
        EXPECT_EQ(isEmpty(), c.empty) << c.name;
    }
}

TEST_F(Plot, AResizeReplacesThePixmap)
{
    setWaves({1, 2}, {0, 10});
    script.pixel = [](int x, int, int, int w) { return w == 1 && x == 1 ? 10.0f : 0.0f; };
    drawRow(0, 2);
    XtResizeWidget(plot.plotArea, 300, 150, 0);
    Window root;
    int x, y;
    unsigned width, height, border, depth;
    XGetGeometry(display, plot.plotPixmap, &root, &x, &y, &width, &height, &border, &depth);
    EXPECT_EQ(std::pair(width, height), std::pair(300u, 150u));
    EXPECT_TRUE(isAt(plot.plotPixmap, colorGreen, 100, 0)); // sample 1 of 3, at the top
    XtResizeWidget(plot.plotArea, 500, 200, 0);
}

TEST_F(Plot, WritesTheWidthOfEachPeakOnItsOwnLine)
{
    setWaves({1, 2, 3}, {});
    script.pixel = [](int x, int, int, int w) {
        return w == 1 ? 1.0f : x == 5 ? 10.0f : x == 4 || x == 6 ? 5.0f : 0;
    };
    settings.showFwhm = 1;
    drawRow(0, 10);
    EXPECT_FLOAT_EQ(profile.fwhmValue, 2 * 10 * 0.5f / 11);
    EXPECT_GT(textPixels(colorRed, 0), 50);
    EXPECT_EQ(textPixels(colorGreen, 1), 0); // flat: its line stays empty
    EXPECT_GT(textPixels(colorYellow, 2), 50);
    settings.showFwhm = 0;
    drawRow(0, 10);
    EXPECT_EQ(profile.fwhmValue, 0);
    EXPECT_EQ(textPixels(colorRed, 0), 0);
}

// A resize may come before the first expose, which loads the font: an X error would end the program.
TEST_F(Plot, BeforeThereIsAFontAWidthIsMeasuredAndNotWritten)
{
    setWaves({1}, {});
    script.pixel = [](int x, int, int, int) { return x == 5 ? 10.0f : x == 4 || x == 6 ? 5.0f : 0; };
    settings.showFwhm = 1;
    const Font font = std::exchange(plot.plotFont, None);
    drawRow(0, 10);
    XSync(display, False);
    EXPECT_FLOAT_EQ(profile.fwhmValue, 2 * 10 * 0.5f / 11);
    EXPECT_EQ(textPixels(colorRed, 0), 0);
    plot.plotFont = font;
    settings.showFwhm = 0;
}

TEST_F(Plot, FwhmValueIsThatOfTheLastChannelDrawn)
{
    const struct {
        const char* name;
        float lastSample;           // x of the segment's end
        std::vector<float> heights; // of the peak at x = 5, by wavelength
        bool measured;
    } cases[] = {
        {"ten samples", 9, {1, 1}, false},
        {"eleven", 10, {1, 1}, true},
        {"last has none", 10, {1, 0}, false},
        {"flat altogether", 10, {0, 0}, false},
    };
    for (const auto& c : cases) {
        setWaves({1, 2}, {});
        script.pixel = [&](int x, int, int, int w) { return x == 5 ? c.heights[static_cast<size_t>(w)] : 0; };
        settings.showFwhm = 1;
        profile.fwhmValue = 4;
        drawRow(0, c.lastSample);
        EXPECT_EQ(profile.fwhmValue > 0, c.measured) << c.name;
    }
}

TEST_F(Plot, EveryInputReadsTheIntensityOnTheScreenOnly)
{
    setWaves({1, 2}, {0, 20});
    drawRow(0, 50);
    for (int type : {ButtonRelease, KeyPress, KeyRelease, MotionNotify, ButtonPress}) {
        calls.clear();
        input(100, 50, type);
        EXPECT_THAT(calls, Contains("IMAlCon(1, 1)")) << type; // redrawn first
    }
    Window window = XtWindow(plot.plotArea);
    EXPECT_TRUE(isAt(window, colorYellow, 0, 50));
    EXPECT_TRUE(isAt(window, colorBackground, 5, 50)); // between two dashes
    EXPECT_TRUE(isAt(plot.plotPixmap, colorBackground, 0, 50));
}

TEST_F(Plot, InputWithoutARangeOrOutsideDoesNothing)
{
    const struct {
        float lastSample, top;
        int x, y;
        bool redrawn;
    } cases[] = {
        {50, 20, 499, 199, true}, {0.5f, 20, 100, 50, false}, {50, 0, 100, 50, false},
        {50, 20, -1, 50, false},  {50, 20, 500, 50, false},   {50, 20, 100, 200, false},
        {50, 20, 100, -1, false},
    };
    for (const auto& c : cases) {
        setWaves({1, 2}, {0, c.top});
        drawRow(0, c.lastSample);
        calls.clear();
        input(c.x, c.y);
        EXPECT_EQ(!calls.empty(), c.redrawn) << c.x << ", " << c.y;
    }
}
