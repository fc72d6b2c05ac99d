// SPDX-License-Identifier: MIT
// What the gauge shows on a real server.
#include "tests/x/gauge/GaugeTest.h"

#include "gauge/Labels.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

using axes::asArg;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST_F(GaugeTest, drawsMarksBesideTheirValues)
{
    show();
    EXPECT_THAT(rowsMarked(), IsEmpty());
    axes::setRange(intensity, 0, 250);
    // Row H - v * H / range and the one above, for 50 to 250.
    EXPECT_THAT(rowsMarked(), ElementsAre(0, 1, 39, 40, 79, 80, 119, 120, 159, 160));
    EXPECT_EQ(valueOf<double>(intensity.ticks, XmNxrtGaIncrementValue), 50);
    EXPECT_EQ(valueOf<double>(intensity.ticks, XmNxrtGaStopValue), 250);
    axes::setSegmentLength(distance, 50.0f, gaugeWidth);
    EXPECT_THAT(columnsMarked(), ElementsAre(60, 120, 180, 240, 299));
    XtVaSetValues(distance.scale, XmNxrtGaDirection, XRTGA_DESCENDING, nullptr);
    EXPECT_THAT(columnsMarked(), ElementsAre(0, 60, 120, 180, 240));
    XtVaSetValues(distance.scale, XmNx, gaugeWidth / 2, nullptr);
    EXPECT_THAT(columnsMarked(), ElementsAre(150, 180, 210, 240, 270));
}

TEST_F(GaugeTest, drawsLabelsClearOfMarksAndEdges)
{
    show();
    for (double max : {9.0, 255.0, 65535.0, 1e7, 3e-5, 3.3e9}) {
        axes::setRange(intensity, 0, max);
        std::size_t ink = 0;
        for (int x = 0; x < 51; ++x)
            ink += rowsMarked(x).size();
        EXPECT_GT(ink, 20U) << max;
        EXPECT_THAT(rowsMarked(50), IsEmpty()) << max;
    }
}

TEST_F(GaugeTest, drawsWithAnyDouble)
{
    show();
    constexpr double largest = std::numeric_limits<double>::max();
    const char* const ofTicks[] = {XmNxrtGaIncrementValue, XmNxrtGaStartValue,  XmNxrtGaStopValue,
                                   XmNxrtGaOffset,         XmNxrtGaInnerExtent, XmNxrtGaOuterExtent,
                                   XmNxrtGaLabelExtent};
    for (double value :
         {largest, -largest, 1e300, 5e-324, double{INFINITY}, double{-INFINITY}, double{NAN}}) {
        axes::setRange(intensity, 0, value);
        axes::setRange(intensity, value, 0);
        axes::setRange(intensity, 0, 1);
        for (Boolean automatic : {True, False})
            for (const char* resource : ofTicks) {
                XtVaSetValues(intensity.ticks, XmNxrtGaAutomatic, automatic, XmNxrtGaIncrementValue,
                              asArg(0.25), XmNxrtGaStartValue, asArg(0), XmNxrtGaStopValue, asArg(1),
                              nullptr);
                const double before = valueOf<double>(intensity.ticks, resource);
                XtVaSetValues(intensity.ticks, resource, asArg(value), nullptr);
                XtVaSetValues(intensity.ticks, resource, asArg(before), nullptr);
            }
        EXPECT_THAT(rowsMarked(), Not(IsEmpty())) << value;
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
    XtVaSetValues(intensity.gauge, XmNxrtGaRepaint, False, nullptr);
    axes::setRange(intensity, 0, 100);
    EXPECT_THAT(rowsMarked(), IsEmpty());
    XtVaSetValues(intensity.gauge, XmNxrtGaRepaint, True, nullptr);
    EXPECT_THAT(rowsMarked(), Not(IsEmpty()));
}

TEST_F(GaugeTest, takesTheRangeOfItsFirstScale)
{
    XtVaSetValues(intensity.gauge, XmNxrtGaMin, asArg(-2), XmNxrtGaMax, asArg(7.5), nullptr);
    EXPECT_EQ(valueOf<double>(intensity.scale, XmNxrtGaMin), -2);
    EXPECT_EQ(valueOf<double>(intensity.scale, XmNxrtGaMax), 7.5);
    EXPECT_EQ(valueOf<double>(intensity.gauge, XmNxrtGaMax), 7.5);
}

TEST_F(GaugeTest, followsItsSize)
{
    axes::setSegmentLength(distance, 50.0f, gaugeWidth);
    show();
    resizeDistance(2 * gaugeWidth);
    EXPECT_THAT(columnsMarked(), ElementsAre(120, 240, 360, 480, 599));
    resizeDistance(1);
    resizeDistance(gaugeWidth);
    EXPECT_THAT(columnsMarked(), ElementsAre(60, 120, 180, 240, 299));
}

TEST_F(GaugeTest, looksTheSameWithoutABuffer)
{
    axes::setRange(intensity, 100, 65535);
    show();
    const Image buffered = imageOf(intensity.gauge);
    XtVaSetValues(intensity.gauge, XmNxrtGaDoubleBuffer, False, nullptr);
    EXPECT_EQ(imageOf(intensity.gauge), buffered);
    servercalls::refusePixmaps = true;
    testing::internal::CaptureStderr();
    XtVaSetValues(intensity.gauge, XmNxrtGaDoubleBuffer, True, nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Bad pixmap. Double buffering turned off!\n");
    EXPECT_FALSE(valueOf<Boolean>(intensity.gauge, XmNxrtGaDoubleBuffer));
    EXPECT_EQ(imageOf(intensity.gauge), buffered);
    servercalls::refusePixmaps = false;
    XtVaSetValues(intensity.gauge, XmNxrtGaDoubleBuffer, True, nullptr);
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
    XtVaSetValues(intensity.ticks, XmNxrtGaAutomatic, False, XmNxrtGaIncrementValue, asArg(20),
                  XmNxrtGaStartValue, asArg(0), XmNxrtGaStopValue, asArg(100), nullptr);
    show();
    const Image numbers = imageOf(intensity.gauge);
    const std::vector<int> marks = rowsMarked();
    XtVaSetValues(intensity.ticks, XmNxrtGaLabelFunc, percent, nullptr);
    EXPECT_NE(imageOf(intensity.gauge), numbers);
    EXPECT_EQ(rowsMarked(), marks);
    XtVaSetValues(intensity.ticks, XmNxrtGaIsShowing, False, nullptr);
    EXPECT_THAT(rowsMarked(), IsEmpty());
}

struct RenderTableEnd {
    void operator()(XmRenderTable table) const { XmRenderTableFree(table); }
};
using RenderTable = std::unique_ptr<std::remove_pointer_t<XmRenderTable>, RenderTableEnd>;

RenderTable renderTable(Widget widget, const char* font, XmFontType type)
{
    char tag[] = "labels";
    Arg args[] = {{const_cast<char*>(XmNfontName), reinterpret_cast<XtArgVal>(font)},
                  {const_cast<char*>(XmNfontType), type}};
    XmRendition rendition = XmRenditionCreate(widget, tag, args, XtNumber(args));
    RenderTable table(XmRenderTableAddRenditions(nullptr, &rendition, 1, XmMERGE_NEW));
    XmRenditionFree(rendition);
    return table;
}

constexpr std::pair<const char*, XmFontType> labelFonts[] = {
    {"10x20", XmFONT_IS_FONT},
    {"Sans-14", XmFONT_IS_XFT},
};

TEST_F(GaugeTest, takesAnotherFont)
{
    axes::setRange(intensity, 0, 255);
    show();
    for (auto [name, type] : labelFonts) {
        const Image before = imageOf(intensity.gauge);
        XtVaSetValues(intensity.gauge, XmNrenderTable, renderTable(shell, name, type).get(), nullptr);
        EXPECT_NE(imageOf(intensity.gauge), before) << name;
    }
    axes::setRange(intensity, 0, 250); // the gauge has a table of its own
}

// Numbers do not go through Motif where their font is scalable, but are to look as if they did.
TEST_F(GaugeTest, drawsNumbersLikeOtherText)
{
    show();
    Widget gauge = intensity.gauge;
    Display* display = toolkit().display;
    GC gc = XCreateGC(display, XtWindow(gauge), 0, nullptr);
    XColor color{};
    ASSERT_TRUE(XParseColor(display, gauge->core.colormap, "#C04020", &color));
    ASSERT_TRUE(XAllocColor(display, gauge->core.colormap, &color));
    XSetForeground(display, gc, color.pixel);
    for (auto [name, type] : labelFonts) {
        const RenderTable table = renderTable(shell, name, type);
        const LabelFont font = labelFontOf(display, table.get());
        const int width = labelWidth(font, "-1.5e+07");
        LabelPainter painter(XtScreen(gauge), XtWindow(gauge), gauge->core.depth, gc, color, font);
        XClearWindow(display, XtWindow(gauge));
        painter.drawNumber("-1.5e+07", 2, 40, width);
        const Image number = imageOf(gauge);
        XClearWindow(display, XtWindow(gauge));
        painter.drawText("-1.5e+07", 2, 40 + font.digitHeight - font.digitBaseline, width);
        EXPECT_EQ(imageOf(gauge), number) << name;
        EXPECT_THAT(number.pixels, testing::Contains(color.pixel)) << name;
    }
    XFreeGC(display, gc);
}

// A drag sets the range hundreds of times a second; each wait for the server would delay the plot.
TEST_F(GaugeTest, waitsForNoAnswerOfTheServer)
{
    show();
    for (auto [name, type] : labelFonts) {
        XtVaSetValues(intensity.gauge, XmNrenderTable, renderTable(shell, name, type).get(), nullptr);
        axes::setRange(intensity, 0, 1000);
        const int before = servercalls::answersAwaited;
        for (int i = 1; i <= 20; ++i) {
            axes::setRange(intensity, i, 1000 + 57 * i);
            axes::setRange(intensity, 1e6, 1e6 + i); // labels with a base
            XtVaSetValues(intensity.ticks, XmNxrtGaOffset, asArg(0.5 * i), nullptr);
        }
        EXPECT_EQ(servercalls::answersAwaited, before) << name;
        XSync(toolkit().display, False);
        EXPECT_GT(servercalls::answersAwaited, before); // waits are seen at all
    }
}

} // namespace
