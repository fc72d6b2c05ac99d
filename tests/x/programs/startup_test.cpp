// From the command line to the tool window beside the image: arguments, display, lock, settings.
#include "tests/x/programs/Programs.h"

#include <X11/keysym.h>

#include <csignal>
#include <fstream>

using drive::Pair;
using drive::waitUntil;

namespace programs {

class StartUp : public ProgramsTest {
protected:
    bool onScreen(const drive::Rect& place)
    {
        const drive::Rect whole = screen.geometry(screen.root());
        return place.x >= 0 && place.y >= 0 && place.x + place.width <= whole.width &&
               place.y + place.height <= whole.height;
    }
    // The tool says why in a dialogue, and ends with 255 when it is confirmed.
    void expectRefusal(drive::Process& tool)
    {
        ASSERT_TRUE(confirm("Error")) << tool.errors();
        EXPECT_EQ(tool.wait(), 255) << tool.errors();
    }
};

TEST_F(StartUp, ThePairStandsSideBySide)
{
    Pair pair = open({ramp()});
    const drive::Rect image = screen.frameGeometry(pair.viewerWindow);
    const drive::Rect tool = screen.frameGeometry(pair.toolWindow);
    EXPECT_TRUE(onScreen(image));
    EXPECT_TRUE(onScreen(tool));
    EXPECT_TRUE(tool.x >= image.x + image.width || tool.x + tool.width <= image.x) << tool.x;
    const drive::Rect plot = screen.geometry(pair.plot);
    EXPECT_EQ(plot.width, 500);
    EXPECT_EQ(plot.height, 200);
    EXPECT_TRUE(blank(screen.capture(pair.plot)));
    EXPECT_EQ(pair.message(), "Define a line segment in the image window");
    EXPECT_EQ(pair.savedCount(), "0");
    expectDone(pair);
}

TEST_F(StartUp, WrongArgumentsAreRefused)
{
    for (const std::vector<std::string>& arguments : {
             std::vector<std::string>{  },
             {"1", "2"},
             {"99"  },
             {"abc"},
             {"0"  },
             {"-1"},
             {""  },
             {"99999999999999999999"}
    }) {
        SCOPED_TRACE(testing::PrintToString(arguments));
        const auto tool = startTool(arguments);
        expectRefusal(*tool);
    }
}

TEST_F(StartUp, WithoutADisplayOneSentenceSaysSo)
{
    for (const char* display : {"", ":4711"}) {
        environment["DISPLAY"] = display;
        const auto tool = startTool({"1"});
        EXPECT_EQ(tool->wait(), 255);
        const std::string said = tool->errors();
        EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1) << said;
        EXPECT_NE(said.find("display"), std::string::npos) << said;
    }
}

TEST_F(StartUp, ASecondToolOnTheWindowIsRefused)
{
    Pair pair = open({ramp()});
    const auto second = startTool({std::to_string(pair.number)});
    expectRefusal(*second);
    pair.dragSegment(20, 20, 220, 120);
    expectPlot(pair, rampCurves({20, 20}, {220, 120}, {0, 1, 2, 3}));
    expectDone(pair);
}

TEST_F(StartUp, ToolsOnTwoWindowsDoNotDisturbEachOther)
{
    const std::string image = ramp();
    Pair pair = open({image, image});
    const auto second = startTool({std::to_string(pair.number + 1)});
    Window secondWindow = None;
    EXPECT_TRUE(waitUntil([&] {
        const Window found = screen.findTitleNow("Arbitrary Line Profile");
        secondWindow = found == pair.toolWindow ? None : found;
        return secondWindow != None;
    }));
    EXPECT_TRUE(second->running());
    EXPECT_TRUE(pair.tool->running());
    pair.closeImageWindows();
    EXPECT_EQ(second->wait(), 0);
    EXPECT_EQ(pair.tool->wait(), 0);
}

// Whatever it is doing when the image window dies, the tool ends: with 0 when it was attached, else it says
// that it could not attach.
TEST_F(StartUp, TheImageWindowMayDieAtAnyMoment)
{
    const std::string image = ramp();
    for (int moment = 0; moment <= 140; moment += 20) {
        SCOPED_TRACE(moment);
        drive::Process viewer({std::string(BIN_DIR) + "/imagewindow", image}, environment);
        ASSERT_NE(screen.findImageWindow(1), None);
        const auto started = std::chrono::steady_clock::now();
        const auto tool = startTool({"1"});
        waitUntil([&] { return std::chrono::steady_clock::now() - started >= drive::Milliseconds{moment}; });
        viewer.signal(SIGKILL);
        EXPECT_TRUE(waitUntil([&] {
            if (screen.findTitleNow("Error") != None)
                screen.key(XK_Return);
            return !tool->running();
        }));
        const std::optional<int> status = tool->wait();
        EXPECT_TRUE(status == 0 || status == 255) << status.value_or(-1) << tool->errors();
        EXPECT_TRUE(waitUntil([&] { return screen.findImageWindow(1, {}) == None; }));
    }
}

class Settings : public ProgramsTest {
protected:
    // The menu appears with the present item, the first one, under the pointer.
    void chooseConstant(Pair& pair)
    {
        const Window menu = pair.setting(Pair::ScalingMenu);
        const drive::Rect place = screen.geometry(menu);
        screen.moveTo(menu, place.width / 2, place.height / 2);
        screen.press();
        drive::waitUntilCalm(screen);
        screen.moveTo(menu, place.width / 2, place.height * 3 / 2);
        drive::waitUntilCalm(screen);
        screen.release();
    }
    // Without the border, which shows the focus.
    drive::Picture menuFace(Pair& pair)
    {
        constexpr int border = 5;
        const drive::Rect place = screen.geometry(pair.setting(Pair::ScalingMenu));
        return screen.capture(drive::Rect{place.x + border, place.y + border, place.width - 2 * border,
                                          place.height - 2 * border});
    }
    bool configHolds(const std::string& line)
    {
        return waitUntil([&] { return readText(configFile()).find(line) != std::string::npos; });
    }
};

TEST_F(Settings, LastToTheNextStart)
{
    const Point from{20, 20}, to{300, 200};
    const std::vector<Curve> curves = rampCurves(from, to, {0, 1, 2, 3});
    // The file's range over all sections and wavelengths.
    const std::pair<float, float> constant{0, rampValue({399, 299}, 3, {2, 1})};
    Pair pair = open({ramp()});
    const drive::Picture autoscaleShown = menuFace(pair);
    pair.dragSegment(from.x, from.y, to.x, to.y);
    expectPlot(pair, curves);
    chooseConstant(pair);
    EXPECT_TRUE(configHolds("KV_APROF_SCALE_AUTO:\tfalse")) << readText(configFile());
    expectPlot(pair, curves, constant);
    screen.clickCentre(pair.setting(Pair::FwhmToggle));
    EXPECT_TRUE(configHolds("KV_APROF_FWHM:\ttrue")) << readText(configFile());
    const drive::Picture constantShown = menuFace(pair);
    screen.clickCentre(pair.button(Pair::Done));
    EXPECT_EQ(pair.tool->wait(), 0);

    pair.restartTool();
    EXPECT_FALSE(menuFace(pair).pixels == autoscaleShown.pixels);
    EXPECT_TRUE(menuFace(pair).pixels == constantShown.pixels);
    pair.dragSegment(from.x, from.y, to.x, to.y);
    expectPlot(pair, curves, constant);
    screen.clickCentre(pair.setting(Pair::FwhmToggle));
    EXPECT_TRUE(configHolds("KV_APROF_FWHM:\tfalse")) << readText(configFile());
    expectDone(pair);
}

TEST_F(Settings, AnUnwritableConfigurationStopsNothing)
{
    std::ofstream(folder / "file") << "no folder";
    environment["XDG_CONFIG_HOME"] = folder / "file" / "config";
    const Point from{20, 20}, to{300, 200};
    Pair pair = open({ramp()});
    pair.dragSegment(from.x, from.y, to.x, to.y);
    screen.clickCentre(pair.setting(Pair::FwhmToggle));
    chooseConstant(pair);
    expectPlot(pair, rampCurves(from, to, {0, 1, 2, 3}), {0, rampValue({399, 299}, 3, {2, 1})});
    EXPECT_NE(pair.tool->errors(), "");
    expectDone(pair);
}

TEST_F(Settings, AHostileConfigurationStopsNothing)
{
    fs::create_directories(configFile().parent_path());
    std::ofstream(configFile()) << "KV_APROF_FWHM: maybe\nKV_APROF_SCALE_AUTO\n\x01\xff*: ?\n"
                                << std::string(100000, 'x');
    Pair pair = open({ramp()});
    pair.dragSegment(20, 20, 300, 200);
    expectPlot(pair, rampCurves({20, 20}, {300, 200}, {0, 1, 2, 3}));
    expectDone(pair);
}

} // namespace programs
