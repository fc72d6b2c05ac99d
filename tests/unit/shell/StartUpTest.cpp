// SPDX-License-Identifier: MIT
#include "tests/recording/RunningTool.h"

#include "profile/Plot.h"
#include "profile/Profile.h"
#include "segment/Segment.h"
#include "shell/Message.h"
#include "shell/ToolWindow.h"

#include <Xm/Xm.h>

#include <functional>
#include <string>
#include <vector>

using recording::actions;
using recording::calls;
using recording::script;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

// Start-up happens once: what it has done is kept before the first test clears it.
class StartUp : public RunningTool {
protected:
    static std::vector<std::string> startCalls, fontCalls;
    static float startPixelSize;

    static void SetUpTestSuite()
    {
        recording::reset();
        script.spacing[0] = 0.125f;
        script.config = {
            {"KV_APROF_FWHM", "true"}, {"KV_APROF_SCALE_AUTO", "false"}, {"TS_GRAPHICS_FONT", "10x20"}};
        script.mainLoop = [] {
            startCalls = calls;
            startPixelSize = settings.pixelSize;
        };
        RunningTool::SetUpTestSuite();
        fontCalls = recording::callsOf({"IWGetConfig("});
    }
};
std::vector<std::string> StartUp::startCalls, StartUp::fontCalls;
float StartUp::startPixelSize;

TEST_F(StartUp, CallsThePlatformInItsFixedOrder)
{
    const char* expected[] = {
        "IWAttach(2, \"lineprofile\")",
        "IWGetConfigBoolean(\"KV_APROF_FWHM\")",
        "IWGetConfigBoolean(\"KV_APROF_SCALE_AUTO\")",
        "IWAttachWin(1, 3, \"ro\")",
        "IWRtWID(1)",
        "WMRequestMonitorLock(\"Arbitray Line Profile\", 291, 12)",
        "IMRtDel(1)",
        "WMSetShellResize(1)",
        "WMInitMainWindow(\"Arbitrary Line Profile\")",
        "WMAdjustToFixedFont(0)",
        "WMAddInfoButton(\"Intensity Scaling\", 0)",
        "WMAddOptionMenu(\"Autoscale\", \"Constant Min/Max\", 1)",
        "WMSetOffset(10, 0, 0, 0)",
        "WMAddToggleButton(\"Show Peak FWHM\", 1)",
        "WMAddToolTip(\"Show the Full-Width Half-Max of the\nlargest peak in the view (microns)\")",
        "WMSetOffset(0, 0, 0, 0)",
        "WMNewRow()",
        "WMAddCustom(\"tick_gauge\", 0)",
        "WMAddDrawingArea(500, 200)",
        "WMAttachRightSide()",
        "WMNewRow()",
        "WMAddCustom(\"tick_gauge\", 0)",
        "WMStartMainWindowMessageAreaForm(frame)",
        "WMAddText(\"\", 50)",
        "WMAttachRightSide()",
        "WMNewRow()",
        "WMAddDoneButton(\"Done\")",
        "WMAddToolTip(\"Close this tool\")",
        "WMAddFuncButton(\"Save\")",
        "WMAddToolTip(\"Save the current profile data in memory\")",
        "WMAddInfoButton(\"Saved:\", 0)",
        "WMAddIntField(0, 1, 4, 20)",
        "WMAddFuncButton(\"Clear\")",
        "WMAddToolTip(\"Forget saved profiles\")",
        "WMAddFuncButton(\"Write To File...\")",
        "WMAddToolTip(\"Write saved profiles to\na spreadsheet-compatible file\")",
        "WMAddHelpButton(\"LineProfile\")",
        "WMEndMainWindowMessageAreaForm()",
        "WMDisableField(Clear)",
        "WMDisableField(Write To File...)",
        "WMEnableIWLEvent()",
        "WMProcDisplayChange(1, \"ProcDisChange\")",
        "WMAddEventHandler(1, ButtonPressMask)",
        "WMAddEventHandler(1, EnterWindowMask)",
        "OrvelPositionNextToImage(3, frame)",
        "WMDisplay()",
        "WMAttachToImageWindow(0, 3)",
        "KVRunRegisterPgm(\"Arbitrary Profile\", 0)",
        "WMUpdateField(text)",
        "WMAppMainLoop()",
    };
    EXPECT_THAT(startCalls, ElementsAreArray(expected));
    EXPECT_STREQ(messageText, "Define a line segment in the image window");
    EXPECT_EQ(startPixelSize, 0.125f);
    EXPECT_EQ(toolWindow.toolShell, recording::widgets.at("shell"));
}

TEST_F(StartUp, TheFirstExposeLoadsTheConfiguredFont)
{
    EXPECT_THAT(fontCalls,
                ElementsAre("IWGetConfig(\"KV_GRAPHICS_FONT\")", "IWGetConfig(\"TS_GRAPHICS_FONT\")"));
    EXPECT_EQ(plot.lineHeight, 20);
}

TEST_F(StartUp, ScalesAndTicksHaveTheirGeometry)
{
    const ToolWindow& w = toolWindow;
    const struct {
        Widget object;
        const char* resource;
        double expected;
    } cases[] = {{w.intensityTicks, "xrtGaLabelExtent", 0.4},
                 {w.distanceTicks, "xrtGaLabelExtent", 1.5},
                 {w.intensityTicks, "xrtGaInnerExtent", 1.0},
                 {w.distanceTicks, "xrtGaInnerExtent", 0},
                 {w.intensityTicks, "xrtGaOuterExtent", 0.85},
                 {w.distanceTicks, "xrtGaOuterExtent", 0.8},
                 {w.intensityScale, "xrtGaMax", 0},
                 {w.distanceScale, "xrtGaMax", 0}};
    for (const auto& c : cases)
        EXPECT_EQ(valueOf<double>(c.object, c.resource), c.expected) << c.resource;
    EXPECT_EQ(valueOf<int>(w.intensityScale, "xrtGaOrientation"), 1);
    EXPECT_EQ(valueOf<Dimension>(w.intensityTicks, XmNwidth), 2);
    EXPECT_EQ(valueOf<Dimension>(w.distanceScale, XmNheight), 8);
}

TEST_F(StartUp, TheAxesAreTiedToThePlot)
{
    const ToolWindow& w = toolWindow;
    const struct {
        Widget widget;
        const char* side;
        unsigned char attachment;
    } cases[] = {
        {w.distanceGauge, XmNleftAttachment, XmATTACH_WIDGET},
        {w.distanceGauge, XmNbottomAttachment, XmATTACH_FORM},
        {w.distanceGauge, XmNtopAttachment, XmATTACH_NONE},
        {w.intensityGauge, XmNbottomAttachment, XmATTACH_FORM},
        {plot.plotArea, XmNbottomAttachment, XmATTACH_WIDGET},
    };
    for (const auto& c : cases)
        EXPECT_EQ(valueOf<unsigned char>(c.widget, c.side), c.attachment) << c.side;
    EXPECT_EQ(valueOf<Widget>(w.distanceGauge, XmNleftWidget), w.intensityGauge);
    EXPECT_EQ(valueOf<int>(w.intensityGauge, XmNbottomOffset), 24);
    EXPECT_EQ(valueOf<Widget>(plot.plotArea, XmNbottomWidget), w.distanceGauge);
}

TEST_F(StartUp, ChangesOfDisplayAndSettingsSampleAgain)
{
    drag(10, 10, 20, 10);
    script.z = 4;
    const std::function<void()> changes[] = {
        [] {
            WMDisplayChange change = {WM_DISPLAY_CHANGED, 1};
            ProcDisChange(1, &change, nullptr);
        },
        [] { actions.at("menu")(nullptr, nullptr, nullptr); },
        [] { actions.at("Show Peak FWHM")(nullptr, nullptr, nullptr); },
    };
    for (const auto& change : changes) {
        calls.clear();
        change();
        EXPECT_THAT(calls, Contains("IMPosnZWTP(1, 4, 0, 0, 0)"));
        EXPECT_EQ(calls.back(), "IMRdPas(1, 11, 1, 10, 20, 10, 10)");
    }
}
