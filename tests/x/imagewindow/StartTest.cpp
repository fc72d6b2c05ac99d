// Starting, numbering, refusing and ending.
// The test library comes before X, whose macros clash with it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/x/imagewindow/Viewer.h"

#include <X11/keysym.h>

#include <algorithm>
#include <fstream>

using namespace viewertest;
using testing::HasSubstr;
using testing::Not;

namespace {

int lines(const std::string& text)
{
    return static_cast<int>(std::count(text.begin(), text.end(), '\n'));
}

// What a window manager's close button sends.
void askToClose(drive::Screen& screen, Window window)
{
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = XInternAtom(screen.x(), "WM_PROTOCOLS", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] = static_cast<long>(XInternAtom(screen.x(), "WM_DELETE_WINDOW", False));
    XSendEvent(screen.x(), window, False, NoEventMask, &event);
    XFlush(screen.x());
}

} // namespace

TEST(Start, EveryFileGetsAWindowAndANumber)
{
    Viewer viewer({rgbImage(), stackImage()});
    ASSERT_EQ(viewer.number, 1);
    EXPECT_TRUE(drive::waitUntil([&] { return lines(viewer.process.output()) == 2; }));
    EXPECT_EQ(viewer.process.output(), "window 1: " + rgbImage() + "\nwindow 2: " + stackImage() + "\n");
    const auto record = protocol::readDisplay(viewer.screen.x(), viewer.screen.findImageWindow(2));
    ASSERT_TRUE(record);
    EXPECT_EQ(record->windowNumber, 2);
    EXPECT_EQ(record->path, stackImage());
    EXPECT_EQ(record->geometry.imageWidth, 64);
    EXPECT_EQ(record->geometry.panelHeight, 48);
    EXPECT_EQ(record->wavelengths.size(), 3U);
}

TEST(Start, NumbersAreTheLowestFreeOnesAndComeBack)
{
    auto first = std::make_unique<Viewer>(std::vector{rgbImage()});
    Viewer second({rgbImage()});
    EXPECT_EQ(first->number, 1);
    EXPECT_EQ(second.number, 2);
    first.reset();
    Viewer third({rgbImage()});
    EXPECT_EQ(third.number, 1);
}

TEST(Start, OptionsDecideWhatIsShown)
{
    Viewer viewer(
        {"--zoom", "3", "--section", "2,2", "--wavelengths", "1,3", "--geometry", "+40+50", stackImage()});
    const auto record = viewer.record();
    ASSERT_TRUE(record);
    EXPECT_EQ(record->geometry.zoom, 3);
    EXPECT_EQ(record->geometry.panelWidth, 192);
    EXPECT_EQ(record->z, 1);
    EXPECT_EQ(record->t, 1);
    EXPECT_TRUE(record->wavelengths[0].displayed && record->wavelengths[2].displayed);
    EXPECT_FALSE(record->wavelengths[1].displayed);
}

TEST(Start, WhatTheImageDoesNotHaveIsToldAndClamped)
{
    Viewer viewer({"--section", "9", "--wavelengths", "2,9", stackImage()});
    const auto record = viewer.record();
    ASSERT_TRUE(record);
    EXPECT_EQ(record->z, 3);
    EXPECT_EQ(record->w, 1);
    EXPECT_EQ(lines(viewer.process.errors()), 2) << viewer.process.errors();
}

TEST(Start, FilesThatCannotBeOpenedGetOneSentenceEach)
{
    const auto folder = std::filesystem::path(rgbImage()).parent_path();
    std::ofstream(folder / "notes.tif") << "These are notes.";
    const std::string missing = folder / "missing.tif", notes = folder / "notes.tif";
    Viewer none({missing, notes});
    EXPECT_EQ(none.number, 0);
    EXPECT_EQ(none.process.wait(), 1);
    EXPECT_EQ(lines(none.process.errors()), 2) << none.process.errors();
    EXPECT_THAT(none.process.errors(), testing::AllOf(HasSubstr(missing), HasSubstr(notes)));
    Viewer one({missing, rgbImage(), folder});
    EXPECT_EQ(one.number, 1);
    EXPECT_EQ(lines(one.process.errors()), 2) << one.process.errors();
}

TEST(Start, WithoutADisplayItSaysSo)
{
    for (const std::string display : {"", ":987"}) {
        drive::Process process(
            {
                BIN_DIR "/imagewindow", "a.tif"
        },
            {{"DISPLAY", display}});
        EXPECT_EQ(process.wait(), 255);
        EXPECT_EQ(lines(process.errors()), 1) << process.errors();
        EXPECT_THAT(process.errors(), HasSubstr("display"));
    }
}

TEST(Start, ClosingTheLastWindowEndsTheProcess)
{
    Viewer viewer({rgbImage(), stackImage()});
    drive::Screen& screen = viewer.screen;
    XSelectInput(screen.x(), viewer.canvas, StructureNotifyMask);
    askToClose(screen, screen.findTitle("Image window 1"));
    EXPECT_TRUE(drive::waitUntil([&] {
        XEvent event;
        return XCheckTypedWindowEvent(screen.x(), viewer.canvas, DestroyNotify, &event) != 0;
    }));
    EXPECT_TRUE(viewer.process.running());
    EXPECT_EQ(protocol::findImageWindow(screen.x(), 1), static_cast<Window>(None));
    askToClose(screen, screen.findTitle("Image window 2"));
    EXPECT_EQ(viewer.process.wait(), 0);
    EXPECT_EQ(viewer.process.errors(), "");
}

// The sections that are gone turn black, the window stays.
TEST(Start, AnImageMayBeTruncatedWhileItIsShown)
{
    const std::string whole =
        sampleImage("whole.ome.tif", {"--compression", "none", "--pattern", "ramp", "--size", "64x48", "--z",
                                      "4", "--channels", "1", "--time", "1"});
    const std::string path = std::filesystem::path(whole).replace_filename("cut.ome.tif");
    std::filesystem::copy_file(whole, path, std::filesystem::copy_options::overwrite_existing);
    Viewer viewer({path});
    EXPECT_FALSE(viewer.pixelAt(60, 40) == drive::Pixel{});
    std::filesystem::resize_file(path, std::filesystem::file_size(path) / 2);
    viewer.focus();
    for (int z = 1; z < 4; ++z) {
        viewer.screen.key(XK_Next);
        EXPECT_EQ(viewer.waitForRecord([&](const auto& record) { return record.z == z; }).z, z);
    }
    EXPECT_TRUE(viewer.waitForPixel(60, 40, {}));
    EXPECT_TRUE(viewer.process.running());
    EXPECT_EQ(viewer.process.errors(), "");
}
