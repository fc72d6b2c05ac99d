// What the gauge shows on a real server.
#include "tests/x/gauge/GaugeTest.h"

#include "gauge/Labels.h"

#include <algorithm>
#include <utility>

namespace {

using axes::asArg;
using axes::doubleOf;
using testing::ElementsAre;
using testing::HasSubstr;

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
    axes::setSegmentLength(distance, 50.0f, gaugeWidth);
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
    axes::setSegmentLength(distance, 50.0f, gaugeWidth);
    show();
    XtResizeWidget(distance.gauge, 2 * gaugeWidth, 24, 0);
    dispatchPending();
    EXPECT_THAT(marksRight(imageOf(distance.gauge), 2, ground(distance)),
                ElementsAre(120, 240, 360, 480, 599));
    XtResizeWidget(distance.gauge, 1, 24, 0);
    dispatchPending();
    XtResizeWidget(distance.gauge, gaugeWidth, 24, 0);
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
    XtResizeWidget(distance.gauge, gaugeWidth + 1, 24, 0);
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
    servercalls::refusePixmaps = true;
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

class Fonts {
public:
    Fonts(Widget widget, const char* name, XmFontType type)
    {
        char tag[] = "labels";
        Arg args[] = {
            {const_cast<char*>(XmNfontName), reinterpret_cast<XtArgVal>(name)},
            {const_cast<char*>(XmNfontType), type                            }
        };
        XmRendition rendition = XmRenditionCreate(widget, tag, args, XtNumber(args));
        list = XmRenderTableAddRenditions(nullptr, &rendition, 1, XmMERGE_NEW);
        XmRenditionFree(rendition);
    }
    ~Fonts() { XmRenderTableFree(list); }
    Fonts(const Fonts&) = delete;
    Fonts& operator=(const Fonts&) = delete;

    XmRenderTable table() const { return list; }

private:
    XmRenderTable list;
};

constexpr std::pair<const char*, XmFontType> labelFonts[] = {
    {"10x20",   XmFONT_IS_FONT},
    {"Sans-14", XmFONT_IS_XFT },
};

TEST_F(GaugeTest, takesAnotherFont)
{
    axes::setRange(intensity, 0, 255);
    show();
    Image before = imageOf(intensity.gauge);
    for (auto [name, type] : labelFonts) {
        SCOPED_TRACE(name);
        Fonts fonts(shell, name, type);
        XtVaSetValues(intensity.gauge, XmNrenderTable, fonts.table(), nullptr);
        Image after = imageOf(intensity.gauge);
        EXPECT_NE(after, before);
        before = after;
    }
    axes::setRange(intensity, 0, 250);
}

// Numbers do not go through Motif where their font is scalable, but are to look as if they did.
TEST_F(GaugeTest, drawsNumbersLikeOtherText)
{
    show();
    Widget gauge = intensity.gauge;
    Display* display = toolkit().display;
    GC gc = XCreateGC(display, XtWindow(gauge), 0, nullptr);
    XColor colour{};
    ASSERT_TRUE(XParseColor(display, gauge->core.colormap, "#C04020", &colour));
    ASSERT_TRUE(XAllocColor(display, gauge->core.colormap, &colour));
    for (auto [name, type] : labelFonts) {
        SCOPED_TRACE(name);
        Fonts fonts(shell, name, type);
        LabelFont font = labelFontOf(fonts.table());
        auto drawn = [&](bool number) {
            XClearWindow(display, XtWindow(gauge));
            XSetForeground(display, gc, colour.pixel);
            LabelPainter painter(XtScreen(gauge), XtWindow(gauge), gauge->core.depth, gc, colour, font);
            if (number)
                painter.drawNumber("-1.5e+07", 2, 40, labelWidth(font, "-1.5e+07"));
            else
                painter.drawText("-1.5e+07", 2, 40 + font.digitHeight - font.digitBaseline,
                                 labelWidth(font, "-1.5e+07"));
            return imageOf(gauge);
        };
        Image number = drawn(true);
        EXPECT_EQ(number, drawn(false));
        EXPECT_THAT(number.pixels, testing::Contains(colour.pixel));
    }
    XFreeGC(display, gc);
}

// A drag sets the range hundreds of times a second; each wait for the server would delay the plot.
TEST_F(GaugeTest, waitsForNoAnswerOfTheServer)
{
    show();
    for (auto [name, type] : labelFonts) {
        SCOPED_TRACE(name);
        Fonts fonts(shell, name, type);
        XtVaSetValues(intensity.gauge, XmNrenderTable, fonts.table(), nullptr);
        axes::setRange(intensity, 0, 1000);
        const int before = servercalls::answersAwaited;
        for (int i = 1; i <= 20; ++i) {
            axes::setRange(intensity, i, 1000 + 57 * i);
            XtVaSetValues(intensity.ticks, XmNxrtGaOffset, asArg(0.5 * i), nullptr);
        }
        EXPECT_EQ(servercalls::answersAwaited, before);
        XSync(toolkit().display, False);
        EXPECT_GT(servercalls::answersAwaited, before); // waits are seen at all
    }
}

} // namespace
