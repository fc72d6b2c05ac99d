// The three classes as real widgets on a real server: resources, children, drawing. The test framework comes
// before Xlib, whose macros (None, True) it does not survive.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/x/gauge/ToolAxes.h"

#include <X11/IntrinsicP.h>
#include <Xm/BulletinB.h>
#include <Xm/Label.h>

#include <dlfcn.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace {

bool refusePixmaps = false;

} // namespace

// Stands before the library's own function, so that a test can let the server refuse: no screen has that
// depth.
extern "C" Pixmap XCreatePixmap(Display* display, Drawable drawable, unsigned width, unsigned height,
                                unsigned depth)
{
    using Create = Pixmap (*)(Display*, Drawable, unsigned, unsigned, unsigned);
    static const auto real = reinterpret_cast<Create>(dlsym(RTLD_NEXT, "XCreatePixmap"));
    return real(display, drawable, width, height, refusePixmaps ? 77 : depth);
}

namespace {

using axes::asArg;
using axes::Axis;
using axes::doubleOf;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr int width = 300;
constexpr int height = 200;

struct Toolkit {
    XtAppContext app;
    Display* display;

    Toolkit()
    {
        XtToolkitInitialize();
        app = XtCreateApplicationContext();
        static std::string name = "gauge_test";
        static char* argv[] = {name.data(), nullptr};
        int argc = 1;
        display = XtOpenDisplay(app, nullptr, nullptr, "GaugeTest", nullptr, 0, &argc, argv);
    }
};

Toolkit& toolkit()
{
    static Toolkit only;
    return only;
}

template<class T> T valueOf(Widget object, const char* name)
{
    T value{};
    XtVaGetValues(object, name, &value, nullptr);
    return value;
}

std::vector<Widget> listOf(Widget gauge, const char* name)
{
    std::vector<Widget> items;
    for (WidgetList item = valueOf<WidgetList>(gauge, name); item && *item; ++item)
        items.push_back(*item);
    return items;
}

// What the window of a widget shows.
struct Image {
    int width = 0;
    int height = 0;
    std::vector<unsigned long> pixels;

    unsigned long at(int x, int y) const { return pixels[static_cast<std::size_t>(y * width + x)]; }
    friend bool operator==(const Image&, const Image&) = default;
};

Image imageOf(Widget widget)
{
    XSync(XtDisplay(widget), False);
    Image image{widget->core.width, widget->core.height, {}};
    XImage* source = XGetImage(XtDisplay(widget), XtWindow(widget), 0, 0, widget->core.width,
                               widget->core.height, AllPlanes, ZPixmap);
    for (int i = 0; source && i < image.width * image.height; ++i)
        image.pixels.push_back(XGetPixel(source, i % image.width, i / image.width));
    if (source)
        XDestroyImage(source);
    return image;
}

// Rows (on a vertical line) or columns (on a horizontal one) that differ from the background.
std::vector<int> marksDown(const Image& image, int x, unsigned long ground)
{
    std::vector<int> rows;
    for (int y = 0; y < image.height; ++y) {
        if (image.at(x, y) != ground)
            rows.push_back(y);
    }
    return rows;
}

std::vector<int> marksRight(const Image& image, int y, unsigned long ground)
{
    std::vector<int> columns;
    for (int x = 0; x < image.width; ++x) {
        if (image.at(x, y) != ground)
            columns.push_back(x);
    }
    return columns;
}

class GaugeTest : public testing::Test {
protected:
    GaugeTest()
    {
        shell = XtVaAppCreateShell("gauge_test", "GaugeTest", applicationShellWidgetClass, toolkit().display,
                                   nullptr);
        board = XtVaCreateManagedWidget("board", xmBulletinBoardWidgetClass, shell, XmNmarginWidth, 0,
                                        XmNmarginHeight, 0, XmNwidth, 800, XmNheight, 300, nullptr);
        intensity = axes::createIntensityAxis(board, 0, 0, height);
        distance = axes::createDistanceAxis(board, 60, height, width);
    }

    ~GaugeTest() override
    {
        refusePixmaps = false;
        if (shell)
            XtDestroyWidget(shell);
        dispatchPending();
    }

    void dispatchPending()
    {
        XSync(toolkit().display, False);
        while (XtAppPending(toolkit().app))
            XtAppProcessEvent(toolkit().app, XtIMAll);
    }

    void dispatchUntil(const bool& done)
    {
        auto end = std::chrono::steady_clock::now() + std::chrono::seconds(15);
        while (!done && std::chrono::steady_clock::now() < end)
            XtAppProcessEvent(toolkit().app, XtIMAll);
    }

    static void noteCall(Widget, XtPointer flag, XtPointer) { *static_cast<bool*>(flag) = true; }

    // Shows the shell and waits until the gauges have drawn themselves.
    void show()
    {
        bool drawn = false;
        XtAddCallback(distance.gauge, XmNxrtGaExposeCallback, noteCall, &drawn);
        XtRealizeWidget(shell);
        XtAppAddTimeOut(
            toolkit().app, 15000, [](XtPointer flag, XtIntervalId*) { *static_cast<bool*>(flag) = true; },
            &drawn);
        dispatchUntil(drawn);
        XtRemoveCallback(distance.gauge, XmNxrtGaExposeCallback, noteCall, &drawn);
        dispatchPending();
    }

    Pixel ground(const Axis& axis) { return valueOf<Pixel>(axis.gauge, XmNbackground); }

    Widget shell = nullptr;
    Widget board = nullptr;
    Axis intensity;
    Axis distance;
};

// One of each class without any resource given.
class DefaultsTest : public GaugeTest {
protected:
    Widget gauge = XtVaCreateWidget("g", xmXrtGaLinearGaugeWidgetClass, board, nullptr);
    Widget scale = XtVaCreateWidget("s", xmXrtGaLinearScaleObjectClass, gauge, nullptr);
    Widget tick = XtVaCreateWidget("t", xmXrtGaTickObjectClass, gauge, nullptr);

    template<class Value> struct Row {
        Widget object;
        const char* name;
        Value value;
    };

    template<class Stored, class Value, std::size_t Size> void expectAll(const Row<Value> (&rows)[Size])
    {
        for (const auto& row : rows)
            EXPECT_EQ(valueOf<Stored>(row.object, row.name), row.value) << row.name;
    }
};

TEST_F(DefaultsTest, ofNumbers)
{
    const Row<double> doubles[] = {
        {scale, XmNxrtGaMin,         0                                 },
        {scale, XmNxrtGaMax,         1                                 },
        {tick,  XmNxrtGaOffset,      0                                 },
        {tick,  XmNxrtGaInnerExtent, 1                                 },
        {tick,  XmNxrtGaOuterExtent, 1                                 },
        {tick,  XmNxrtGaLabelExtent, 1                                 },
        {tick,  XmNxrtGaStopValue,   std::numeric_limits<double>::max()}
    };
    const Row<int> ints[] = {
        {gauge, XmNxrtGaBorder,              3  },
        {gauge, XmNxrtGaImageLayout,         0  },
        {scale, XmNxrtGaOrientation,         2  },
        {scale, XmNxrtGaDirection,           0  },
        {tick,  XmNxrtGaPrecision,           -15},
        {tick,  XmNxrtGaPrecisionUseDefault, 2  },
        {tick,  XmNxrtGaTickType,            0  }
    };
    const Row<int> sizes[] = {
        {scale, XmNx,                  0},
        {scale, XmNy,                  0},
        {scale, XmNwidth,              0},
        {scale, XmNheight,             0},
        {tick,  XmNwidth,              1},
        {gauge, XmNhighlightThickness, 0}
    };
    expectAll<double>(doubles);
    expectAll<int>(ints);
    expectAll<Dimension>(sizes);
}

TEST_F(DefaultsTest, ofFlagsAndPointers)
{
    const Row<bool> flags[] = {
        {gauge, XmNxrtGaDebug,          false},
        {gauge, XmNxrtGaDoubleBuffer,   true },
        {gauge, XmNxrtGaRepaint,        true },
        {gauge, XmNxrtGaUseRenderList,  false},
        {scale, XmNxrtGaDebug,          false},
        {scale, XmNxrtGaAllowTransform, true },
        {tick,  XmNxrtGaAutomatic,      true },
        {tick,  XmNxrtGaDrawLabels,     false},
        {tick,  XmNxrtGaIsShowing,      true },
        {gauge, XmNtraversalOn,         false}
    };
    const Row<XtPointer> pointers[] = {
        {gauge, XmNxrtGaIndicatorList,       nullptr},
        {gauge, XmNxrtGaRangeList,           nullptr},
        {gauge, XmNxrtGaTextList,            nullptr},
        {gauge, XmNxrtGaRenderList,          nullptr},
        {gauge, XmNxrtGaFrame,               nullptr},
        {gauge, XmNxrtGaImage,               nullptr},
        {gauge, XmNxrtGaUserInteractionData, nullptr},
        {tick,  XmNxrtGaScale,               nullptr},
        {tick,  XmNxrtGaLabelFunc,           nullptr}
    };
    expectAll<Boolean>(flags);
    expectAll<XtPointer>(pointers);
}

TEST_F(GaugeTest, givesBackEveryDouble)
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (double value : {-0.0, 5e-324, 3.4028235e38, -3.4028235e38, 1.0 / 3.0, infinity, std::nan("")}) {
        XtVaSetValues(intensity.scale, XmNxrtGaMin, asArg(value), XmNxrtGaMax, asArg(-value), nullptr);
        XtVaSetValues(intensity.ticks, XmNxrtGaOffset, asArg(value), nullptr);
        EXPECT_EQ(asArg(doubleOf(intensity.scale, XmNxrtGaMin)), asArg(value));
        EXPECT_EQ(asArg(doubleOf(intensity.scale, XmNxrtGaMax)), asArg(-value));
        EXPECT_EQ(asArg(doubleOf(intensity.ticks, XmNxrtGaOffset)), asArg(value));
    }
}

TEST_F(GaugeTest, keepsWhatItDoesNotUse)
{
    int mine = 0;
    WidgetList list = &board;
    XtVaSetValues(intensity.gauge, XmNxrtGaUserInteractionData, &mine, XmNxrtGaImageLayout, 3,
                  XmNxrtGaTextList, list, XmNxrtGaFrame, board, XmNxrtGaUseRenderList, True, nullptr);
    EXPECT_EQ(valueOf<XtPointer>(intensity.gauge, XmNxrtGaUserInteractionData), &mine);
    EXPECT_EQ(valueOf<int>(intensity.gauge, XmNxrtGaImageLayout), 3);
    EXPECT_EQ(valueOf<WidgetList>(intensity.gauge, XmNxrtGaTextList), list);
    EXPECT_EQ(valueOf<Widget>(intensity.gauge, XmNxrtGaFrame), board);
    EXPECT_TRUE(valueOf<Boolean>(intensity.gauge, XmNxrtGaUseRenderList));
    XtVaSetValues(intensity.scale, XmNxrtGaAllowTransform, False, XmNx, -3, nullptr);
    EXPECT_FALSE(valueOf<Boolean>(intensity.scale, XmNxrtGaAllowTransform));
    EXPECT_EQ(valueOf<Position>(intensity.scale, XmNx), -3);
}

TEST_F(GaugeTest, readsStrings)
{
    EXPECT_EQ(valueOf<Pixel>(intensity.ticks, XmNbackground), BlackPixelOfScreen(XtScreen(board)));
    auto setMax = [&](const char* text) {
        XtVaSetValues(intensity.scale, XtVaTypedArg, XmNxrtGaMax, XmRString, text,
                      static_cast<int>(std::string(text).size() + 1), nullptr);
        return doubleOf(intensity.scale, XmNxrtGaMax);
    };
    EXPECT_EQ(setMax("2.5"), 2.5);
    EXPECT_EQ(setMax(" -1e-3 "), -1e-3);
    for (const char* bad : {"abc", "", "1,5", "1.5 microns"}) {
        testing::internal::CaptureStderr();
        EXPECT_EQ(setMax(bad), -1e-3) << bad;
        EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("Double"));
    }
    XrmDatabase database = XtScreenDatabase(XtScreen(board));
    XrmPutStringResource(&database, "*filed.xrtGaMax", "4095.5");
    Widget scale = XtVaCreateWidget("filed", xmXrtGaLinearScaleObjectClass, intensity.gauge, nullptr);
    EXPECT_EQ(doubleOf(scale, XmNxrtGaMax), 4095.5);
}

TEST_F(GaugeTest, keepsItsListsOfChildren)
{
    Widget more = XtVaCreateWidget("more", xmXrtGaTickObjectClass, intensity.gauge, nullptr);
    EXPECT_THAT(listOf(intensity.gauge, XmNxrtGaLinearScaleList), ElementsAre(intensity.scale));
    EXPECT_THAT(listOf(intensity.gauge, XmNxrtGaTickList), ElementsAre(intensity.ticks, more));
    XtDestroyWidget(intensity.ticks);
    EXPECT_THAT(listOf(intensity.gauge, XmNxrtGaTickList), ElementsAre(more));
    XtDestroyWidget(more);
    EXPECT_EQ(valueOf<WidgetList>(intensity.gauge, XmNxrtGaTickList), nullptr);
}

TEST_F(GaugeTest, refusesToLoseItsLists)
{
    testing::internal::CaptureStderr();
    XtVaSetValues(intensity.gauge, XmNxrtGaTickList, nullptr, nullptr);
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("xrtGaTickList"));
    EXPECT_THAT(listOf(intensity.gauge, XmNxrtGaTickList), ElementsAre(intensity.ticks));
}

TEST_F(GaugeTest, warnsOfMisplacedObjects)
{
    testing::internal::CaptureStderr();
    Widget label = XtVaCreateManagedWidget("label", xmLabelWidgetClass, board, nullptr);
    Widget stray = XtVaCreateWidget("stray", xmXrtGaLinearScaleObjectClass, label, nullptr);
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("needs a linear gauge"));
    testing::internal::CaptureStderr();
    for (Widget wrong : {stray, board, distance.scale, distance.ticks}) {
        XtVaSetValues(intensity.ticks, XmNxrtGaScale, wrong, nullptr);
        EXPECT_EQ(valueOf<Widget>(intensity.ticks, XmNxrtGaScale), nullptr);
    }
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("xrtGaScale takes"));
    XtVaSetValues(stray, XmNxrtGaMax, asArg(3), nullptr);
    XtDestroyWidget(stray);
}

TEST_F(GaugeTest, destroysItsChildren)
{
    bool scaleGone = false, ticksGone = false;
    XtAddCallback(intensity.scale, XmNdestroyCallback, noteCall, &scaleGone);
    XtAddCallback(intensity.ticks, XmNdestroyCallback, noteCall, &ticksGone);
    show();
    XtDestroyWidget(shell);
    shell = nullptr;
    dispatchPending();
    EXPECT_TRUE(scaleGone);
    EXPECT_TRUE(ticksGone);
}

TEST_F(GaugeTest, livesOnWithoutItsScale)
{
    axes::setRange(intensity, 0, 255);
    show();
    XtDestroyWidget(intensity.scale);
    EXPECT_EQ(valueOf<Widget>(intensity.ticks, XmNxrtGaScale), nullptr);
    EXPECT_THAT(marksDown(imageOf(intensity.gauge), 55, ground(intensity)), ElementsAre());
    EXPECT_EQ(doubleOf(intensity.ticks, XmNxrtGaIncrementValue), std::numeric_limits<double>::max());
}

TEST_F(GaugeTest, drawsMarksBesideTheirValues)
{
    show();
    EXPECT_THAT(marksDown(imageOf(intensity.gauge), 55, ground(intensity)), ElementsAre());
    axes::setRange(intensity, 0, 250);
    // Row H - v * H / range and the one above, for 50 to 250.
    EXPECT_THAT(marksDown(imageOf(intensity.gauge), 55, ground(intensity)),
                ElementsAre(0, 1, 39, 40, 79, 80, 119, 120, 159, 160));
    EXPECT_EQ(doubleOf(intensity.ticks, XmNxrtGaIncrementValue), 50);
    EXPECT_EQ(doubleOf(intensity.ticks, XmNxrtGaStopValue), 250);
    axes::setSegmentLength(distance, 50.0f, width);
    EXPECT_THAT(marksRight(imageOf(distance.gauge), 2, ground(distance)),
                ElementsAre(60, 120, 180, 240, 299));
    XtVaSetValues(distance.scale, XmNxrtGaDirection, XRTGA_DESCENDING, nullptr);
    EXPECT_THAT(marksRight(imageOf(distance.gauge), 2, ground(distance)), ElementsAre(0, 60, 120, 180, 240));
}

TEST_F(GaugeTest, drawsLabelsClearOfMarksAndEdges)
{
    show();
    for (double max : {9.0, 255.0, 65535.0, 1e7, 3e-5, 3.3e9}) {
        axes::setRange(intensity, 0, max);
        Image image = imageOf(intensity.gauge);
        int ink = 0;
        for (int x = 0; x < 51; ++x)
            ink += static_cast<int>(marksDown(image, x, ground(intensity)).size());
        EXPECT_GT(ink, 20) << max;
        EXPECT_THAT(marksDown(image, 50, ground(intensity)), ElementsAre()) << max;
    }
}

TEST_F(GaugeTest, repaintsOncePerChange)
{
    XtVaSetValues(intensity.gauge, XmNxrtGaDebug, True, nullptr);
    show();
    testing::internal::CaptureStderr();
    XtVaSetValues(intensity.scale, XmNxrtGaMin, asArg(10), XmNxrtGaMax, asArg(90), XmNx, 1, nullptr);
    dispatchPending();
    std::string told = testing::internal::GetCapturedStderr();
    EXPECT_THAT(told, HasSubstr("ticks, increment 10 from 10"));
    EXPECT_EQ(std::count(told.begin(), told.end(), '\n'), 1) << told;
}

TEST_F(GaugeTest, doesNothingWithoutAChange)
{
    show();
    axes::setRange(intensity, 10, NAN);
    unsigned long next = NextRequest(toolkit().display);
    axes::setRange(intensity, 10, NAN);
    XtVaSetValues(intensity.ticks, XmNxrtGaOffset, asArg(0), XmNwidth, 2, nullptr);
    XtVaSetValues(intensity.gauge, XmNxrtGaRepaint, True, nullptr);
    EXPECT_EQ(NextRequest(toolkit().display), next);
}

TEST_F(GaugeTest, holdsChangesBack)
{
    show();
    Image before = imageOf(intensity.gauge);
    XtVaSetValues(intensity.gauge, XmNxrtGaRepaint, False, nullptr);
    axes::setRange(intensity, 0, 100);
    EXPECT_EQ(imageOf(intensity.gauge), before);
    XtVaSetValues(intensity.gauge, XmNxrtGaRepaint, True, nullptr);
    EXPECT_NE(imageOf(intensity.gauge), before);
}

TEST_F(GaugeTest, takesTheRangeOfItsFirstScale)
{
    XtVaSetValues(intensity.gauge, XmNxrtGaMin, asArg(-2), XmNxrtGaMax, asArg(7.5), nullptr);
    EXPECT_EQ(doubleOf(intensity.scale, XmNxrtGaMin), -2);
    EXPECT_EQ(doubleOf(intensity.scale, XmNxrtGaMax), 7.5);
    EXPECT_EQ(doubleOf(intensity.gauge, XmNxrtGaMax), 7.5);
}

TEST_F(GaugeTest, followsItsSize)
{
    axes::setSegmentLength(distance, 50.0f, width);
    show();
    XtResizeWidget(distance.gauge, 2 * width, 24, 0);
    dispatchPending();
    EXPECT_THAT(marksRight(imageOf(distance.gauge), 2, ground(distance)),
                ElementsAre(120, 240, 360, 480, 599));
    XtResizeWidget(distance.gauge, 1, 24, 0);
    dispatchPending();
    XtResizeWidget(distance.gauge, width, 24, 0);
    dispatchPending();
    EXPECT_THAT(marksRight(imageOf(distance.gauge), 2, ground(distance)),
                ElementsAre(60, 120, 180, 240, 299));
}

TEST_F(GaugeTest, callsBackWhenMappedAndResized)
{
    bool mapped = false, resized = false;
    XtAddCallback(distance.gauge, XmNxrtGaMapCallback, noteCall, &mapped);
    XtAddCallback(distance.gauge, XmNxrtGaResizeCallback, noteCall, &resized);
    show();
    EXPECT_TRUE(mapped);
    XtResizeWidget(distance.gauge, width + 1, 24, 0);
    EXPECT_TRUE(resized);
}

TEST_F(GaugeTest, looksTheSameWithoutABuffer)
{
    axes::setRange(intensity, 100, 65535);
    show();
    Image buffered = imageOf(intensity.gauge);
    XtVaSetValues(intensity.gauge, XmNxrtGaDoubleBuffer, False, nullptr);
    EXPECT_EQ(imageOf(intensity.gauge), buffered);
    XtVaSetValues(intensity.gauge, XmNxrtGaDoubleBuffer, True, nullptr);
    EXPECT_EQ(imageOf(intensity.gauge), buffered);
}

TEST_F(GaugeTest, drawsDirectlyWhenTheServerRefuses)
{
    axes::setRange(intensity, 100, 65535);
    show();
    Image buffered = imageOf(intensity.gauge);
    XtVaSetValues(intensity.gauge, XmNxrtGaDoubleBuffer, False, nullptr);
    refusePixmaps = true;
    testing::internal::CaptureStderr();
    XtVaSetValues(intensity.gauge, XmNxrtGaDoubleBuffer, True, nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Bad pixmap. Double buffering turned off!\n");
    EXPECT_FALSE(valueOf<Boolean>(intensity.gauge, XmNxrtGaDoubleBuffer));
    EXPECT_EQ(imageOf(intensity.gauge), buffered);
}

TEST_F(GaugeTest, staysReadableOnADarkGauge)
{
    axes::setRange(intensity, 0, 250);
    show();
    Pixel black = BlackPixelOfScreen(XtScreen(board));
    EXPECT_EQ(imageOf(intensity.gauge).at(55, 40), black);
    XtVaSetValues(intensity.gauge, XmNbackground, black, XmNforeground, black, nullptr);
    dispatchPending();
    Image image = imageOf(intensity.gauge);
    EXPECT_EQ(image.at(5, 5), black);
    EXPECT_EQ(image.at(55, 40), WhitePixelOfScreen(XtScreen(board)));
}

TEST_F(GaugeTest, drawsABorderOnRequest)
{
    show();
    Image plain = imageOf(intensity.gauge);
    for (int border :
         {XRTGA_BORDER_SHADOW_IN, XRTGA_BORDER_SHADOW_OUT, XRTGA_BORDER_ETCHED_IN, XRTGA_BORDER_ETCHED_OUT}) {
        XtVaSetValues(intensity.gauge, XmNxrtGaBorder, border, nullptr);
        EXPECT_NE(imageOf(intensity.gauge).at(0, 100), plain.at(0, 100)) << border;
    }
    for (int border : {int{XRTGA_BORDER_NONE}, -1, 99}) {
        XtVaSetValues(intensity.gauge, XmNxrtGaBorder, border, nullptr);
        EXPECT_EQ(imageOf(intensity.gauge), plain) << border;
    }
}

char* percent(Widget, double value)
{
    return value == 20 ? nullptr : XtNewString((std::to_string(static_cast<int>(value)) + " %").c_str());
}

TEST_F(GaugeTest, usesTheLabelFunction)
{
    axes::setRange(intensity, 0, 100);
    XtVaSetValues(intensity.ticks, XmNxrtGaIncrementValue, asArg(20), nullptr);
    show();
    Image numbers = imageOf(intensity.gauge);
    XtVaSetValues(intensity.ticks, XmNxrtGaLabelFunc, percent, nullptr);
    Image percents = imageOf(intensity.gauge);
    EXPECT_NE(percents, numbers);
    EXPECT_EQ(marksDown(percents, 55, ground(intensity)), marksDown(numbers, 55, ground(intensity)));
    XtVaSetValues(intensity.ticks, XmNxrtGaIsShowing, False, nullptr);
    EXPECT_THAT(marksDown(imageOf(intensity.gauge), 55, ground(intensity)), ElementsAre());
}

TEST_F(GaugeTest, takesAnotherFont)
{
    axes::setRange(intensity, 0, 255);
    show();
    Image before = imageOf(intensity.gauge);
    char name[] = "10x20", tag[] = "large";
    XmFontListEntry entry = XmFontListEntryLoad(toolkit().display, name, XmFONT_IS_FONT, tag);
    XmFontList list = XmFontListAppendEntry(nullptr, entry);
    XtVaSetValues(intensity.gauge, XmNfontList, list, nullptr);
    XmFontListEntryFree(&entry);
    XmFontListFree(list);
    EXPECT_NE(imageOf(intensity.gauge), before);
    axes::setRange(intensity, 0, 250);
}

// A drag sets the range hundreds of times a second. The bound is far above what it takes on an idle machine.
TEST_F(GaugeTest, isQuick)
{
    show();
    constexpr int changes = 500;
    auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < changes; ++i)
        axes::setRange(intensity, i, 1000 + 57 * i);
    XSync(toolkit().display, False);
    std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - start;
    RecordProperty("microsecondsPerChange", static_cast<int>(1000 * taken.count() / changes));
    EXPECT_LT(taken.count() / changes, 2.0);
}

} // namespace
