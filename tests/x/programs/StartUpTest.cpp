// SPDX-License-Identifier: MIT
// From the command line to the tool window beside the image: arguments, display, lock, memory, settings.
#include "tests/Folders.h"
#include "tests/x/programs/Programs.h"

#include <X11/keysym.h>

#include <csignal>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

using drive::Pair;
using drive::waitUntil;

namespace programs {

// The sanitizers keep a shadow of all memory, and freed blocks for a while.
#ifdef __SANITIZE_ADDRESS__
constexpr double largestTool = 400;
#else
constexpr double largestTool = 40;
#endif

class StartUp : public ProgramsTest {
protected:
    bool onScreen(const drive::Rect& place)
    {
        const drive::Rect whole = screen.geometry(screen.root());
        return place.x >= 0 && place.y >= 0 && place.x + place.width <= whole.width &&
               place.y + place.height <= whole.height;
    }
    // The tool says why in a dialogue, and ends with 255 when it is confirmed.
    void expectRefusal(const std::vector<std::string>& arguments)
    {
        const auto tool = startTool(arguments);
        ASSERT_TRUE(confirm("Error")) << tool->errors();
        EXPECT_EQ(tool->wait(), 255) << tool->errors();
    }
    // Resident memory in MB, from the kernel's account of the process.
    static double residentMegabytes(pid_t pid)
    {
        const std::string status = readBytes("/proc/" + std::to_string(pid) + "/status");
        long kilobytes = 0;
        if (const size_t line = status.find("VmRSS:"); line != std::string::npos)
            kilobytes = std::strtol(status.c_str() + line + 6, nullptr, 10);
        return static_cast<double>(kilobytes) / 1024;
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
    // Tools of several windows have one title.
    EXPECT_EQ(screen.property(pair.toolWindow, "WM_ICON_NAME"), "Arbitrary Line Profile (1)");
    expectDone(pair);
}

TEST_F(StartUp, WrongArgumentsAreRefused)
{
    // How a number is read is tested without the platform; these meet the real one.
    const std::vector<std::string> rows[] = {{}, {"99"}, {"-1"}, {"--helpful"}, {"1", "--help"}};
    for (const auto& arguments : rows) {
        SCOPED_TRACE(testing::PrintToString(arguments));
        expectRefusal(arguments);
    }
}

TEST_F(StartUp, WithoutADisplayOneSentenceSaysSo)
{
    for (const char* display : {"", ":4711"}) {
        environment["DISPLAY"] = display;
        const auto tool = startTool({"1"});
        EXPECT_EQ(tool->wait(), 255);
        const std::string said = tool->errors();
        EXPECT_EQ(support::lineCount(said), 1) << said;
        EXPECT_NE(said.find("display"), std::string::npos) << said;
    }
}

TEST_F(StartUp, HelpAndVersionNeedNoDisplay)
{
    environment["DISPLAY"] = "";
    const std::pair<const char*, const char*> rows[] = {
        {"--help", "Usage: lineprofile window_number\n"},
        {"--version", "lineprofile 0."},
    };
    for (const auto& [option, begin] : rows) {
        const auto tool = startTool({option});
        EXPECT_EQ(tool->wait(), 0) << option;
        EXPECT_EQ(tool->output().substr(0, std::string(begin).size()), begin);
        EXPECT_EQ(tool->errors(), "");
    }
}

TEST_F(StartUp, ARefusalEndsWithTheImageWindow)
{
    for (const bool killed : {false, true}) {
        SCOPED_TRACE(killed ? "killed" : "closed");
        Pair pair = open({ramp()});
        const auto second = startTool({std::to_string(pair.number)});
        ASSERT_NE(screen.findTitle("Error"), None);
        EXPECT_TRUE(second->running());
        if (killed)
            pair.viewer.signal(SIGKILL);
        else
            pair.closeImageWindows();
        EXPECT_EQ(second->wait(), 255);
        EXPECT_EQ(pair.tool->wait(), 0);
    }
}

TEST_F(StartUp, ASecondToolOnTheWindowIsRefused)
{
    Pair pair = open({ramp()});
    expectRefusal({std::to_string(pair.number)});
    drawSegment(pair, {20, 20}, {220, 120});
    expectDone(pair);
}

TEST_F(StartUp, ToolsOnTwoWindowsDoNotDisturbEachOther)
{
    const std::string image = ramp();
    Pair pair = open({image, image});
    const auto second = startTool({std::to_string(pair.number + 1)});
    EXPECT_TRUE(waitUntil([&] {
        const Window found = screen.findTitleNow("Arbitrary Line Profile");
        return found != None && found != pair.toolWindow;
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
        drive::Process viewer({BIN_DIR "/imagewindow", image}, environment);
        ASSERT_NE(screen.findImageWindow(1), None);
        const auto tool = startTool({"1"});
        waitUntil([] { return false; }, drive::Milliseconds{moment});
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

TEST_F(StartUp, TheToolStaysSmallBesideLargeImages)
{
    for (const char* size : {"--size 2048x2048 --z 1 --time 1 --channels 5",
                             "--size 64x64 --z 500 --time 20 --channels 2 --pixel-type uint8"}) {
        SCOPED_TRACE(size);
        Pair pair = open({sample("large.ome.tif", std::string("--pattern ramp --compression none ") + size)});
        const double megabytes = residentMegabytes(pair.tool->pid());
        EXPECT_GT(megabytes, 1);
        EXPECT_LT(megabytes, largestTool);
        const protocol::Geometry geometry = pair.display().geometry;
        pair.dragSegment(geometry.originX + 5, geometry.originY + 5, geometry.originX + 60,
                         geometry.originY + 50);
        EXPECT_TRUE(waitUntil([&] { return !blank(screen.capture(pair.plot)); }));
        expectDone(pair);
    }
}

class Settings : public ProgramsTest {
protected:
    const Point from{20, 20}, to{300, 200};
    // The file's range over all sections and wavelengths.
    const std::pair<float, float> constant{0, rampValue({399, 299}, 3, {2, 1})};

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
    void toggleFwhm(Pair& pair, const std::string& configured)
    {
        screen.clickCentre(pair.setting(Pair::FwhmToggle));
        expectConfig("KV_APROF_FWHM:\t" + configured);
    }
    void expectConfig(const std::string& line)
    {
        EXPECT_TRUE(waitUntil([&] { return readBytes(configFile()).find(line) != std::string::npos; }))
            << readBytes(configFile());
    }
};

TEST_F(Settings, LastToTheNextStart)
{
    Pair pair = open({ramp()});
    const drive::Picture autoscaleShown = menuFace(pair);
    drawSegment(pair, from, to);
    chooseConstant(pair);
    expectConfig("KV_APROF_SCALE_AUTO:\tfalse");
    expectPlot(pair, rampCurves(from, to), constant);
    toggleFwhm(pair, "true");
    const drive::Picture constantShown = menuFace(pair);
    screen.clickCentre(pair.button(Pair::Done));
    EXPECT_EQ(pair.tool->wait(), 0);

    pair.restartTool();
    EXPECT_FALSE(menuFace(pair).pixels == autoscaleShown.pixels);
    EXPECT_TRUE(menuFace(pair).pixels == constantShown.pixels);
    pair.dragSegment(from.x, from.y, to.x, to.y);
    expectPlot(pair, rampCurves(from, to), constant);
    toggleFwhm(pair, "false");
    expectDone(pair);
}

TEST_F(Settings, AnUnwritableConfigurationStopsNothing)
{
    writeBytes(folder / "file", "no folder");
    environment["XDG_CONFIG_HOME"] = folder / "file" / "config";
    Pair pair = open({ramp()});
    drawSegment(pair, from, to);
    screen.clickCentre(pair.setting(Pair::FwhmToggle));
    chooseConstant(pair);
    expectPlot(pair, rampCurves(from, to), constant);
    EXPECT_NE(pair.tool->errors(), "");
    expectDone(pair);
}

TEST_F(Settings, AHostileConfigurationStopsNothing)
{
    writeConfig("KV_APROF_FWHM: maybe\nKV_APROF_SCALE_AUTO\n\x01\xff*: ?\n" + std::string(100000, 'x'));
    Pair pair = open({ramp()});
    drawSegment(pair, from, to);
    expectDone(pair);
}

} // namespace programs
