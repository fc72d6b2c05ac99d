// The three classes as widgets: resources and children.
#include "tests/x/gauge/GaugeTest.h"

#include <Xm/Label.h>

#include <cmath>
#include <limits>

namespace {

using axes::asArg;
using axes::doubleOf;
using testing::ElementsAre;
using testing::HasSubstr;

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

} // namespace
