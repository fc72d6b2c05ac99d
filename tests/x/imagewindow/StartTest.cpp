// SPDX-License-Identifier: MIT
// Starting, refusing and ending.
#include "tests/Folders.h"
#include "tests/x/imagewindow/Viewer.h"

#include <string>

using namespace viewertest;
using support::lineCount;
using testing::HasSubstr;

TEST(Start, EveryFileGetsAWindowAndANumber)
{
    Viewer viewer({rgbImage(), stackImage()});
    ASSERT_EQ(viewer.number, 1);
    EXPECT_TRUE(drive::waitUntil([&] { return lineCount(viewer.process.output()) == 2; }));
    EXPECT_EQ(viewer.process.output(), "window 1: " + rgbImage() + "\nwindow 2: " + stackImage() + "\n");
    const auto record = protocol::readDisplay(viewer.screen.x(), viewer.screen.findImageWindow(2));
    ASSERT_TRUE(record);
    EXPECT_EQ(record->windowNumber, 2);
    EXPECT_EQ(record->path, stackImage());
    EXPECT_EQ(record->geometry.imageWidth, 64);
    EXPECT_EQ(record->geometry.panelHeight, 48);
    EXPECT_EQ(record->wavelengths.size(), 3U);
    EXPECT_EQ(record->z, 1); // the middle of four
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
    EXPECT_EQ(lineCount(viewer.process.errors()), 2) << viewer.process.errors();
}

TEST(Start, FilesThatCannotBeOpenedGetOneSentenceEach)
{
    const std::string missing = scratchFolder() / "missing.tif", notes = scratchFolder() / "notes.tif";
    writeBytes(notes, "These are notes.");
    Viewer none({missing, notes});
    EXPECT_EQ(none.number, 0);
    EXPECT_EQ(none.process.wait(), 1);
    EXPECT_EQ(lineCount(none.process.errors()), 2) << none.process.errors();
    EXPECT_THAT(none.process.errors(), testing::AllOf(HasSubstr(missing), HasSubstr(notes)));
    Viewer one({missing, rgbImage(), scratchFolder().path});
    EXPECT_EQ(one.number, 1);
    EXPECT_EQ(lineCount(one.process.errors()), 2) << one.process.errors();
}

TEST(Start, WithoutADisplayItSaysSo)
{
    for (const std::string display : {"", ":987"}) {
        drive::Process process({BIN_DIR "/imagewindow", "a.tif"}, {{"DISPLAY", display}});
        EXPECT_EQ(process.wait(), 255);
        EXPECT_EQ(lineCount(process.errors()), 1) << process.errors();
        EXPECT_THAT(process.errors(), HasSubstr("display"));
    }
}

TEST(Start, ClosingTheLastWindowEndsTheProcess)
{
    Viewer viewer({rgbImage(), stackImage()});
    drive::Screen& screen = viewer.screen;
    screen.requestClose(screen.findTitle("Image window 1"));
    EXPECT_TRUE(drive::waitUntil([&] { return protocol::findImageWindow(screen.x(), 1) == None; }));
    EXPECT_TRUE(viewer.process.running());
    screen.requestClose(screen.findTitle("Image window 2"));
    EXPECT_EQ(viewer.process.wait(), 0);
    EXPECT_EQ(viewer.process.errors(), "");
}
