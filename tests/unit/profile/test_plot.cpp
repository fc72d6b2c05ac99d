#include "tests/recording/RunningTool.h"

#include "profile/mapping.h"
#include "profile/plot.h"
#include "profile/profile.h"
#include "segment/segment.h"

#include <X11/IntrinsicP.h> // XtResizeWidget
#include <Xm/DrawingA.h>

#include <cfloat>

using recording::calls;
using recording::script;
using ::testing::Contains;
using ::testing::IsEmpty;

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
    static void setSegment(float x0, float x1)
    {
        segment.start = {0, x0, 10, 0};
        segment.end = {0, x1, 10, 0};
        segmentDefined = 1;
    }
    static unsigned long pixelAt(Drawable drawable, int x, int y)
    {
        XImage* image = XGetImage(display, drawable, x, y, 1, 1, AllPlanes, ZPixmap);
        unsigned long pixel = XGetPixel(image, 0, 0);
        XDestroyImage(image);
        return pixel;
    }
    // Pixels of one colour in a rectangle of the pixmap.
    static int count(unsigned long pixel, int x, int y, int width, int height)
    {
        XImage* image = XGetImage(display, plot.plotPixmap, x, y, static_cast<unsigned>(width),
                                  static_cast<unsigned>(height), AllPlanes, ZPixmap);
        int found = 0;
        for (int i = 0; i < width * height; i++)
            found += XGetPixel(image, i % width, i / width) == pixel;
        XDestroyImage(image);
        return found;
    }
    static int emptyPlot()
    {
        return count(plot.plotColors[colorBackground], 0, 0, plot.plotWidth, plot.plotHeight) ==
               plot.plotWidth * plot.plotHeight;
    }
    static void click(int x, int y)
    {
        XEvent event = {};
        event.xbutton.type = ButtonPress;
        event.xbutton.x = x;
        event.xbutton.y = y;
        XmDrawingAreaCallbackStruct call = {XmCR_INPUT, &event, XtWindow(plot.plotArea)};
        plotInput(plot.plotArea, nullptr, &call);
    }
    static double gauge(const char* name) { return doubleResource(plot.intensityScale, name); }
};

TEST_F(Plot, DrawsEachChannelInItsDisplayColor)
{
    const struct {
        int index;
        PlotColor expected;
        const char* rgb;
    } cases[] = {
        {0,  colorWhite,   "white"  },
        {1,  colorRed,     "red"    },
        {2,  colorGreen,   "green1" },
        {3,  colorYellow,  "yellow" },
        {4,  colorBlue,    "#6666ff"},
        {5,  colorMagenta, "magenta"},
        {6,  colorCyan,    "cyan"   },
        {7,  colorWhite,   "white"  },
        {9,  colorWhite,   "white"  },
        {-1, colorWhite,   "white"  },
    };
    for (const auto& c : cases) {
        setWaves({0, c.index, 0}, {0, 60, 100}); // 60 of 100 stands 120 of 200 rows above the bottom
        setSegment(0, 99);
        drawProfile(1);
        XColor color, exact;
        XAllocNamedColor(display, DefaultColormap(display, 0), c.rgb, &color, &exact);
        EXPECT_EQ(pixelAt(plot.plotPixmap, 250, 80), color.pixel) << c.index;
        EXPECT_EQ(plot.plotColors[c.expected], color.pixel) << c.index;
    }
    EXPECT_EQ(pixelAt(XtWindow(plot.plotArea), 250, 80), plot.plotColors[colorWhite]);
    EXPECT_EQ(pixelAt(plot.plotPixmap, 250, 100), plot.plotColors[colorBackground]);
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
        {"two levels", {1, 2}, {5, 25}, 5,       25,       false},
        {"flat",       {1},    {7},     7,       7,        true },
        {"no channel", {},     {},      FLT_MAX, -FLT_MAX, true },
    };
    for (const auto& c : cases) {
        setWaves(c.colors, c.values);
        setSegment(3, 40);
        drawProfile(1);
        EXPECT_EQ(gauge("xrtGaMin"), c.min) << c.name;
        EXPECT_EQ(gauge("xrtGaMax"), c.max) << c.name;
        EXPECT_EQ(emptyPlot(), c.empty) << c.name;
    }
}

TEST_F(Plot, APositioningFailureEmptiesThePlotAndKeepsTheRange)
{
    setWaves({1, 2}, {5, 25});
    setSegment(3, 40);
    drawProfile(1);
    script.unpositionable = {1};
    script.pixel = [](int, int, int, int) { return 99.0f; };
    EXPECT_EQ(drawProfile(1), 1);
    EXPECT_TRUE(emptyPlot());
    EXPECT_EQ(gauge("xrtGaMax"), 25);
    EXPECT_EQ(profile.channelCount, 2);
}

TEST_F(Plot, WithoutASegmentNothingIsSampled)
{
    EXPECT_EQ(drawProfile(1), 1);
    EXPECT_THAT(calls, IsEmpty());
    EXPECT_TRUE(emptyPlot());
}

TEST_F(Plot, AResizeReplacesThePixmap)
{
    setWaves({1, 2}, {0, 10});
    script.pixel = [](int x, int, int, int w) { return w == 0 ? 0.0f : x == 1 ? 10.0f : 0.0f; };
    setSegment(0, 2);
    XtResizeWidget(plot.plotArea, 300, 150, 0);
    Window root;
    int x, y;
    unsigned width, height, border, depth;
    XGetGeometry(display, plot.plotPixmap, &root, &x, &y, &width, &height, &border, &depth);
    EXPECT_EQ(width, 300u);
    EXPECT_EQ(height, 150u);
    EXPECT_EQ(pixelAt(plot.plotPixmap, 100, 0), plot.plotColors[colorGreen]); // sample 1 of 3, at the top
    EXPECT_EQ(pixelAt(plot.plotPixmap, 50, 75), plot.plotColors[colorGreen]);
    EXPECT_EQ(count(plot.plotColors[colorGreen], 201, 0, 99, 150), 0); // nothing right of the last sample
    XtResizeWidget(plot.plotArea, 500, 200, 0);
}

TEST_F(Plot, WritesTheWidthOfEachPeakOnItsOwnLine)
{
    setWaves({1, 2, 3}, {});
    script.pixel = [](int x, int, int, int w) {
        return w == 1 ? 1.0f : x == 5 ? 10.0f : x == 4 || x == 6 ? 5.0f : 0;
    };
    settings = {1, 0, 0.5f};
    setSegment(0, 10);
    drawProfile(1);
    EXPECT_FLOAT_EQ(profile.fwhmValue, 2 * 10 * 0.5f / 11);
    int line = plot.lineHeight;
    EXPECT_GT(count(plot.plotColors[colorRed], 5, 2, 100, line), 50);
    EXPECT_EQ(count(plot.plotColors[colorGreen], 5, line + 2, 100, line - 2),
              0); // flat: its line stays empty
    EXPECT_GT(count(plot.plotColors[colorYellow], 5, 2 * line + 4, 100, line - 2), 50);
    settings.showFwhm = 0;
    drawProfile(1);
    EXPECT_EQ(profile.fwhmValue, 0);
    EXPECT_EQ(count(plot.plotColors[colorRed], 5, 2, 100, line), 0);
}

TEST_F(Plot, FwhmValueIsThatOfTheLastChannelDrawn)
{
    const struct {
        const char* name;
        float lastSample; // x of the segment's end
        std::function<float(int, int, int, int)> pixel;
        bool measured;
    } cases[] = {
        {"ten samples",     9,  [](int x, int, int, int) { return x == 5 ? 1.0f : 0; },             false},
        {"eleven",          10, [](int x, int, int, int) { return x == 5 ? 1.0f : 0; },             true },
        {"last has none",   10, [](int x, int, int, int w) { return w == 0 && x == 5 ? 1.0f : 0; }, false},
        {"flat altogether", 10, [](int,   int, int, int) { return 3.0f; },                          false},
    };
    for (const auto& c : cases) {
        setWaves({1, 2}, {});
        script.pixel = c.pixel;
        settings.showFwhm = 1;
        profile.fwhmValue = 4;
        setSegment(0, c.lastSample);
        drawProfile(1);
        EXPECT_EQ(profile.fwhmValue > 0, c.measured) << c.name;
    }
}

TEST_F(Plot, AClickReadsTheIntensityOnTheScreenOnly)
{
    setWaves({1, 2}, {0, 20});
    setSegment(0, 50);
    drawProfile(1);
    calls.clear();
    click(100, 50);
    EXPECT_THAT(calls, Contains("IMAlCon(1, 1)")); // redrawn first
    Window window = XtWindow(plot.plotArea);
    EXPECT_EQ(pixelAt(window, 0, 50), plot.plotColors[colorYellow]);
    EXPECT_EQ(pixelAt(window, 5, 50), plot.plotColors[colorBackground]); // between two dashes
    EXPECT_EQ(pixelAt(plot.plotPixmap, 0, 50), plot.plotColors[colorBackground]);
    drawProfile(1);
    EXPECT_EQ(pixelAt(window, 0, 50), plot.plotColors[colorBackground]);
}

TEST_F(Plot, ClicksWithoutARangeOrOutsideDoNothing)
{
    const struct {
        float lastSample, top;
        int x, y;
        bool redrawn;
    } cases[] = {
        {50,   20, 499, 199, true },
        {0.5f, 20, 100, 50,  false},
        {50,   0,  100, 50,  false},
        {50,   20, -1,  50,  false},
        {50,   20, 500, 50,  false},
        {50,   20, 100, 200, false},
        {50,   20, 100, -1,  false},
    };
    for (const auto& c : cases) {
        setWaves({1, 2}, {0, c.top});
        setSegment(0, c.lastSample);
        drawProfile(1);
        calls.clear();
        click(c.x, c.y);
        EXPECT_EQ(!calls.empty(), c.redrawn) << c.x << ", " << c.y;
    }
}
