// SPDX-License-Identifier: MIT
// The three classes as widgets: resources and children.
#include "tests/x/gauge/GaugeTest.h"

#include <Xm/Label.h>

#include <cmath>
#include <limits>

namespace {

using axes::asArg;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr double unset = std::numeric_limits<double>::max();

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

TEST_F(GaugeTest, hasItsDefaults)
{
    Widget gauge = XtVaCreateWidget("g", xmXrtGaLinearGaugeWidgetClass, board, nullptr);
    Widget scale = XtVaCreateWidget("s", xmXrtGaLinearScaleObjectClass, gauge, nullptr);
    Widget tick = XtVaCreateWidget("t", xmXrtGaTickObjectClass, gauge, nullptr);
    const Row<double> doubles[] = {{scale, XmNxrtGaMin, 0},        {scale, XmNxrtGaMax, 1},
                                   {tick, XmNxrtGaInnerExtent, 1}, {tick, XmNxrtGaOuterExtent, 1},
                                   {tick, XmNxrtGaLabelExtent, 1}, {tick, XmNxrtGaStopValue, unset}};
    const Row<int> ints[] = {
        {gauge, XmNxrtGaBorder, 3},     {scale, XmNxrtGaOrientation, 2},        {scale, XmNxrtGaDirection, 0},
        {tick, XmNxrtGaPrecision, -15}, {tick, XmNxrtGaPrecisionUseDefault, 2}, {tick, XmNxrtGaTickType, 0}};
    const Row<bool> flags[] = {{gauge, XmNxrtGaDoubleBuffer, true}, {gauge, XmNxrtGaRepaint, true},
                               {gauge, XmNtraversalOn, false},      {tick, XmNxrtGaAutomatic, true},
                               {tick, XmNxrtGaDrawLabels, false},   {tick, XmNxrtGaIsShowing, true}};
    expectAll<double>(doubles);
    expectAll<int>(ints);
    expectAll<Boolean>(flags);
}

TEST_F(GaugeTest, givesBackEveryDouble)
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (double value : {-0.0, 5e-324, 3.4028235e38, -3.4028235e38, 1.0 / 3.0, infinity, std::nan("")}) {
        axes::setRange(intensity, value, -value);
        XtVaSetValues(intensity.ticks, XmNxrtGaOffset, asArg(value), nullptr);
        EXPECT_EQ(asArg(valueOf<double>(intensity.scale, XmNxrtGaMin)), asArg(value));
        EXPECT_EQ(asArg(valueOf<double>(intensity.scale, XmNxrtGaMax)), asArg(-value));
        EXPECT_EQ(asArg(valueOf<double>(intensity.ticks, XmNxrtGaOffset)), asArg(value));
    }
}

TEST_F(GaugeTest, readsStrings)
{
    EXPECT_EQ(valueOf<Pixel>(intensity.ticks, XmNbackground), BlackPixelOfScreen(XtScreen(board)));
    auto setMax = [&](const std::string& text) {
        XtVaSetValues(intensity.scale, XtVaTypedArg, XmNxrtGaMax, XmRString, text.c_str(),
                      static_cast<int>(text.size() + 1), nullptr);
        return valueOf<double>(intensity.scale, XmNxrtGaMax);
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
    EXPECT_EQ(valueOf<double>(scale, XmNxrtGaMax), 4095.5);
}

template<class Stored> Stored afterString(Widget object, const char* name, const std::string& text)
{
    XtVaSetValues(object, XtVaTypedArg, name, XmRString, text.c_str(), static_cast<int>(text.size() + 1),
                  nullptr);
    return valueOf<Stored>(object, name);
}

TEST_F(GaugeTest, readsNamesOfEnumerations)
{
    const struct {
        Widget object;
        const char* resource;
        const char* text;
        int value;
    } rows[] = {
        {intensity.gauge, XmNxrtGaBorder, "XRTGA_BORDER_ETCHED_IN", XRTGA_BORDER_ETCHED_IN},
        {intensity.gauge, XmNxrtGaBorder, " shadow_out ", XRTGA_BORDER_SHADOW_OUT},
        {intensity.gauge, XmNxrtGaBorder, "3", XRTGA_BORDER_NONE},
        {distance.scale, XmNxrtGaOrientation, "vertical", XRTGA_VERTICAL},
        {distance.scale, XmNxrtGaOrientation, "Horizontal", XRTGA_HORIZONTAL},
        {distance.scale, XmNxrtGaDirection, "xrtga_descending", XRTGA_DESCENDING},
        {distance.ticks, XmNxrtGaPrecisionUseDefault, "BY_RANGE", XRTGA_PRECISION_BY_RANGE},
        {distance.ticks, XmNxrtGaPrecision, "-2", -2},
        {distance.ticks, XmNxrtGaTickType, "1", 1},
    };
    for (const auto& row : rows)
        EXPECT_EQ(afterString<int>(row.object, row.resource, row.text), row.value) << row.text;
    for (const char* bad : {"", "etched", "etched_inward", "XRTGA_BORDER_"}) {
        testing::internal::CaptureStderr();
        EXPECT_EQ(afterString<int>(intensity.gauge, XmNxrtGaBorder, bad), XRTGA_BORDER_NONE) << bad;
        EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("XrtGaBorder"));
    }
}

TEST_F(GaugeTest, findsScalesByName)
{
    Widget second = XtVaCreateWidget("second", xmXrtGaLinearScaleObjectClass, intensity.gauge, nullptr);
    EXPECT_EQ(afterString<Widget>(intensity.ticks, XmNxrtGaScale, "second"), second);
    testing::internal::CaptureStderr();
    EXPECT_EQ(afterString<Widget>(intensity.ticks, XmNxrtGaScale, "third"), second);
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("third"));
    XrmDatabase database = XtScreenDatabase(XtScreen(board));
    XrmPutStringResource(&database, "*named.xrtGaScale", "second");
    Widget named = XtVaCreateWidget("named", xmXrtGaTickObjectClass, intensity.gauge, nullptr);
    EXPECT_EQ(valueOf<Widget>(named, XmNxrtGaScale), second);
}

TEST_F(GaugeTest, hasASizeOfItsOwn)
{
    const struct {
        const char* asked;
        Dimension width, height, expectedWidth, expectedHeight;
    } rows[] = {
        {"nothing", 0, 0, 60, 24}, {"width", 100, 0, 100, 24}, {"height", 0, 7, 60, 7}, {"both", 1, 1, 1, 1}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.asked);
        Widget gauge = XtVaCreateWidget("g", xmXrtGaLinearGaugeWidgetClass, board, XmNwidth, row.width,
                                        XmNheight, row.height, nullptr);
        EXPECT_EQ(valueOf<Dimension>(gauge, XmNwidth), row.expectedWidth);
        EXPECT_EQ(valueOf<Dimension>(gauge, XmNheight), row.expectedHeight);
    }
}

TEST_F(GaugeTest, keepsItsListsOfChildren)
{
    Widget more = XtVaCreateWidget("more", xmXrtGaTickObjectClass, intensity.gauge, nullptr);
    EXPECT_THAT(listOf(intensity.gauge, XmNxrtGaLinearScaleList), ElementsAre(intensity.scale));
    testing::internal::CaptureStderr();
    XtVaSetValues(intensity.gauge, XmNxrtGaTickList, nullptr, nullptr);
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("xrtGaTickList"));
    EXPECT_THAT(listOf(intensity.gauge, XmNxrtGaTickList), ElementsAre(intensity.ticks, more));
    XtDestroyWidget(intensity.ticks);
    EXPECT_THAT(listOf(intensity.gauge, XmNxrtGaTickList), ElementsAre(more));
    XtDestroyWidget(more);
    EXPECT_EQ(valueOf<WidgetList>(intensity.gauge, XmNxrtGaTickList), nullptr);
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
    EXPECT_THAT(rowsMarked(), IsEmpty());
    EXPECT_EQ(valueOf<double>(intensity.ticks, XmNxrtGaIncrementValue), unset);
}

} // namespace
