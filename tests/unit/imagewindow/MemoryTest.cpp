// SPDX-License-Identifier: MIT
// How an image was seen is kept for its file and comes back, but only what fits it.
#include "platform/imagewindow/state/Memory.h"

#include "platform/imagewindow/Start.h"
#include "platform/imagewindow/files/ImageNotes.h"
#include "platform/imagewindow/state/Actions.h"
#include "tests/unit/image/TempFolder.h"
#include "tests/unit/image/TestFiles.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <utility>
#include <vector>

using namespace viewer;
namespace fs = std::filesystem;

namespace {

class MemoryTest : public testing::Test {
protected:
    MemoryTest()
    {
        setenv("XDG_DATA_HOME", (folder / "data").c_str(), 1);
        setenv("XDG_CACHE_HOME", (folder / "cache").c_str(), 1);
        TiffSpec spec;
        spec.pages = 4;
        spec.samples = 3;
        writeTiff(image, spec);
    }
    Memory chosen()
    {
        Shown shown(openImage(image.string()));
        shown.view.z = 2;
        shown.view.displayed = {true, false, true};
        shown.view.colors = {5, 6, 3};
        shown.renderer.setLimits(1, {0.1F, 1234.5F});
        shown.view.zoom = 2.0 / 3;
        shown.view.originX = 7.25;
        shown.scaleBar = false;
        shown.view.grey = shown.view.labels = true;
        shown.renderer.setGamma(0, 0.45F);
        shown.renderer.setGamma(2, 2.5F);
        shown.view.projection = Projection::Sum;
        shown.renderer.setLimits(2, {10, 9e5F}, Projection::Sum);
        shown.view.grid = {2, 3};
        shown.view.merge = true;
        shown.play = {PlayAxis::Time, PlayEnd::Bounce, 12.5};
        Memory memory = memoryOf(shown);
        memory.place = base::Rectangle{-20, 30, 640, 480};
        return memory;
    }

    const TempFolder folder;
    const fs::path image = folder / "cells.tif";
};

} // namespace

TEST_F(MemoryTest, ComesBackForTheSameFileUntilItIsForgotten)
{
    const Memory memory = chosen();
    EXPECT_FALSE(loadMemory(image));
    EXPECT_EQ(keepMemory(image, memory), "");
    const auto kept = loadMemory(image);
    ASSERT_TRUE(kept);
    EXPECT_EQ(*kept, memory);
    Shown shown(openImage(image.string()));
    EXPECT_TRUE(recall(*kept, shown));
    EXPECT_EQ(memoryOf(shown).view, memory.view);
    EXPECT_EQ(shown.renderer.limitsByHand(1), (ContrastLimits{0.1F, 1234.5F}));
    EXPECT_FALSE(shown.renderer.limitsByHand(0));
    EXPECT_TRUE(shown.view.grey && shown.view.labels);
    for (const auto& [wavelength, gamma] : {std::pair(0, 0.45F), std::pair(1, 1.0F), std::pair(2, 2.5F)})
        EXPECT_EQ(shown.renderer.gamma(wavelength), gamma) << wavelength;
    Actions(shown).resetView();
    EXPECT_FALSE(loadMemory(image));
    EXPECT_FALSE(shown.renderer.limitsByHand(1));
    EXPECT_EQ(shown.view.z, initialView(shown.info()).z);
}

TEST_F(MemoryTest, AnotherVersionOfTheFileIsSeenAnew)
{
    keepMemory(image, chosen());
    fs::last_write_time(image, fs::last_write_time(image) + std::chrono::seconds(2));
    EXPECT_FALSE(loadMemory(image));
}

TEST_F(MemoryTest, OptionsGoBeforeIt)
{
    Options options;
    options.z = 0;
    options.zoom = 4;
    options.colors = {1};
    options.geometry = "300x200";
    Shown shown(openImage(image.string()));
    const Memory memory = chosen();
    const bool zoomed = applyOptions(shown, options, memory);
    chooseZoom(shown, options, {1600, 1200}, zoomed);
    EXPECT_EQ(shown.view.z, 0);
    EXPECT_EQ(shown.view.zoom, 4);
    EXPECT_EQ(shown.view.colors, (std::vector{1, 6, 3}));
    EXPECT_EQ(geometryOf(options, memory, {1600, 1200}), "300x200");
    EXPECT_EQ(geometryOf({}, memory, {600, 400}), "640x480+0+0"); // on the screen that there is
}

// Start: the window with its frame, and the tool's beside it.
TEST_F(MemoryTest, AToolHasRoomBesideALargeImage)
{
    const struct {
        const char* name;
        Size screen;
        double scale;
        Size tool; // with its frame, as measured
    } rows[] = {
        {"small", {1024, 768}, 1, {594, 399}},
        {"usual", {1600, 1200}, 1, {594, 399}},
        {"fine", {1600, 1200}, 2, {803, 459}},
        {"small and fine", {2048, 1536}, 2, {803, 459}},
    };
    const fs::path large = folder / "large.tif";
    writeTiff(large, {.width = 2000, .height = 2000});
    for (const auto& row : rows) {
        constexpr int frames = 36; // of the window manager, and between them
        Shown shown(openImage(large.string()));
        shown.barThickness = static_cast<int>(scrollBarThickness * row.scale);
        const Size area = chooseZoom(shown, {}, row.screen, false);
        EXPECT_LE(area.width + row.tool.width + frames, row.screen.width) << row.name;
        EXPECT_LE(area.height + 135 * row.scale + 60, row.screen.height) << row.name;
        EXPECT_GE(area.width, 320) << row.name;
    }
}

TEST_F(MemoryTest, WhatDoesNotFitIsLeftOut)
{
    for (const char* text :
         {"section 99 -5 7",  "wavelengths 7 -1", "wavelengths",      "colors 99 -1 7", "limits 9 0 1",
          "limits -1 0 1",    "limits 0 5 1",     "limits 0 nan inf", "panels 7 0 0",   "panels -1 99 99",
          "zoom 0 1e300 0 0", "zoom 0 -1 0 0",    "zoom 0 1 nan 0",   "zoom",           "grid 0 0",
          "grid 11 10",       "grid -1 -1",       "grid 99999 99999", "projection 9",   "projection -1",
          "merge x",          "limits 0 1 2 9",   "nonsense 1",       "\n\n",           "scaleBar x",
          "gamma 9 1",        "gamma 0 nan",      "gamma 0",          "grey",           "labels"}) {
        Shown shown(openImage(image.string()));
        recall({text, std::nullopt}, shown);
        const View& view = shown.view;
        EXPECT_TRUE(view.z >= 0 && view.z < 4 && view.t == 0 && view.p == 0) << text;
        EXPECT_FALSE(displayedWavelengths(view).empty()) << text;
        EXPECT_TRUE(view.zoom >= minZoom && view.zoom <= maxZoom) << text;
        EXPECT_EQ(view.style, protocol::SinglePanel) << text;
        EXPECT_FALSE(view.grid.chosen() || view.merge) << text;
        EXPECT_EQ(view.projection, Projection::Section) << text;
        EXPECT_FALSE(shown.renderer.limitsByHand(0)) << text;
        EXPECT_EQ(shown.renderer.gamma(0), 1) << text;
        shown.area = {300, 300};
        shown.arrangeNow();
    }
}

TEST_F(MemoryTest, TheOldestNotesGo)
{
    constexpr NoteKind few{"few", "test 1", 3};
    for (const char* name : {"a", "b", "c", "d"}) {
        writeBytes(folder / name, name);
        EXPECT_EQ(keepNote(few, folder / name, "x"), 0);
        for (const auto& entry : fs::directory_iterator(folder / "data/kelvora/few"))
            fs::last_write_time(entry, fs::last_write_time(entry) - std::chrono::seconds(2));
    }
    EXPECT_FALSE(loadNote(few, folder / "a"));
    EXPECT_TRUE(loadNote(few, folder / "b"));
    EXPECT_TRUE(loadNote(few, folder / "d"));
}
