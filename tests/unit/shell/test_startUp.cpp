#include "tests/recording/RunningTool.h"

#include "profile/plot.h"
#include "profile/profile.h"
#include "saved/savedProfiles.h"
#include "segment/segment.h"
#include "shell/message.h"
#include "shell/shutdown.h"
#include "shell/toolWindow.h"

#include <Xm/Xm.h>

using recording::actions;
using recording::calls;
using recording::script;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

// Start-up happens once: its calls are kept before the first test clears them.
class StartUp : public RunningTool {
protected:
    static std::vector<std::string> startCalls;

    static void SetUpTestSuite()
    {
        recording::reset();
        script.config = {
            {"KV_APROF_SCALE_AUTO", "false"}
        };
        script.mainLoop = [] { startCalls = calls; };
        RunningTool::SetUpTestSuite();
    }
};
std::vector<std::string> StartUp::startCalls;

TEST_F(StartUp, GoesStepByStep)
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
        "WMAddOptionMenu(\"Autoscale|Constant Min/Max\", 1)",
        "WMSetOffset(10, 0, 0, 0)",
        "WMAddToggleButton(\"Show Peak FWHM\", 0)",
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
        "WMAddEventHandler(1, 4)",
        "WMAddEventHandler(1, 16)",
        "OrvelPositionNextToImage(3, frame)",
        "WMDisplay()",
        "WMAttachToImageWindow(0, 3)",
        "KVRunRegisterPgm(\"Arbitrary Profile\", 0)",
        "WMUpdateField(text)",
        "WMAppMainLoop()",
    };
    EXPECT_THAT(startCalls, ElementsAreArray(expected));
    EXPECT_STREQ(messageText, "Define a line segment in the image window");
    EXPECT_EQ(toolWindow.toolShell, recording::widgets.at("shell"));
}

TEST_F(StartUp, TheAxesHaveTheirResources)
{
    int orientation = 0;
    Dimension width = 0, height = 0;
    Widget scale = nullptr;
    Boolean automatic = False, labels = False;
    const ToolWindow& w = toolWindow;
    XtVaGetValues(w.intensityScale, "xrtGaOrientation", &orientation, nullptr);
    EXPECT_EQ(orientation, 1);
    XtVaGetValues(w.distanceScale, "xrtGaOrientation", &orientation, XmNheight, &height, nullptr);
    EXPECT_EQ(orientation, 2);
    EXPECT_EQ(height, 8);
    XtVaGetValues(w.intensityTicks, "xrtGaScale", &scale, XmNwidth, &width, "xrtGaAutomatic", &automatic,
                  "xrtGaDrawLabels", &labels, nullptr);
    EXPECT_EQ(scale, w.intensityScale);
    EXPECT_EQ(width, 2);
    EXPECT_TRUE(automatic && labels);
    XtVaGetValues(w.distanceTicks, "xrtGaScale", &scale, XmNwidth, &width, nullptr);
    EXPECT_EQ(scale, w.distanceScale);
    EXPECT_EQ(width, 1);
}

TEST_F(StartUp, TicksAndScalesHaveTheirExtents)
{
    const struct {
        Widget object;
        const char* resource;
        double expected;
    } cases[] = {
        {toolWindow.intensityScale, "xrtGaMin",         0   },
        {toolWindow.intensityTicks, "xrtGaLabelExtent", 0.4 },
        {toolWindow.intensityTicks, "xrtGaInnerExtent", 1.0 },
        {toolWindow.intensityTicks, "xrtGaOuterExtent", 0.85},
        {toolWindow.distanceScale,  "xrtGaMin",         0   },
        {toolWindow.distanceScale,  "xrtGaMax",         0   },
        {toolWindow.distanceTicks,  "xrtGaLabelExtent", 1.5 },
        {toolWindow.distanceTicks,  "xrtGaInnerExtent", 0   },
        {toolWindow.distanceTicks,  "xrtGaOuterExtent", 0.8 },
    };
    for (const auto& c : cases)
        EXPECT_EQ(doubleResource(c.object, c.resource), c.expected) << c.resource;
}

TEST_F(StartUp, TheAxesAreTiedToThePlot)
{
    const struct {
        Widget widget;
        const char *attachment, *toName;
        unsigned char kind;
        Widget to;
    } cases[] = {
        {toolWindow.distanceGauge,  XmNleftAttachment,   XmNleftWidget,   XmATTACH_WIDGET,
         toolWindow.intensityGauge                                                                                 },
        {toolWindow.distanceGauge,  XmNbottomAttachment, XmNbottomWidget, XmATTACH_FORM,   nullptr                 },
        {toolWindow.distanceGauge,  XmNtopAttachment,    XmNtopWidget,    XmATTACH_NONE,   nullptr                 },
        {toolWindow.intensityGauge, XmNbottomAttachment, XmNbottomWidget, XmATTACH_FORM,   nullptr                 },
        {plot.plotArea,             XmNbottomAttachment, XmNbottomWidget, XmATTACH_WIDGET, toolWindow.distanceGauge},
    };
    for (const auto& c : cases) {
        unsigned char kind = 99;
        Widget to = nullptr;
        XtVaGetValues(c.widget, c.attachment, &kind, c.toName, &to, nullptr);
        EXPECT_EQ(kind, c.kind) << c.attachment;
        EXPECT_EQ(to, c.to) << c.attachment;
    }
}

TEST_F(StartUp, ButtonsAreWired)
{
    EXPECT_EQ(actions.at("Done"), quitTool);
    EXPECT_EQ(actions.at("Save"), saveCurrentProfile);
    EXPECT_EQ(actions.at("Clear"), clearSavedProfiles);
    EXPECT_EQ(actions.at("Write To File..."), writeSavedProfiles);
}

TEST_F(StartUp, ADisplayChangeSamplesAgain)
{
    drag(10, 10, 20, 10);
    script.z = 4;
    calls.clear();
    WMDisplayChange change = {680, 1};
    ProcDisChange(1, &change, nullptr);
    EXPECT_THAT(calls, Contains("IMPosnZWTP(1, 4, 0, 0, 0)"));
    calls.clear();
    settings.scaleMode = 0;
    actions.at("menu")(nullptr, nullptr, nullptr);
    EXPECT_THAT(recording::callsOf({"IWS", "IMRdPas"}),
                ElementsAre("IWSetConfigBoolean(\"KV_APROF_SCALE_AUTO\", 1)", "IWSaveUserConfig()",
                            "IMRdPas(1, 11, 1, 10, 20, 10, 10)"));
}
