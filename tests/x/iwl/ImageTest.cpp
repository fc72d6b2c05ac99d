// SPDX-License-Identifier: MIT
// The image-file functions: facts and pixels of the file behind the window, which may change.
#include "tests/x/iwl/IwlTest.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace fs = std::filesystem;
using peers::errorsOf;
using testing::ElementsAre;
using testing::HasSubstr;

TEST_F(Iwl, ImageFacts)
{
    auto viewer = show(usualImage + " --no-offset");
    int z, w, t, p, total, nx, ny, count;
    float spacing[3], waves[IW_MAX_WAVES];
    double value = 0;
    char name[IW_FILENAME_SIZE];
    EXPECT_EQ(IMAlCon(slot, 1), 0);
    EXPECT_EQ(IMRtZWTP(slot, &z, &w, &t, &p, &total), 0);
    EXPECT_THAT(std::vector({z, w, t, p, total}), ElementsAre(3, 2, 2, 1, 12));
    EXPECT_EQ(IMRtXY(slot, &nx, &ny), 0);
    EXPECT_THAT(std::vector({nx, ny}), ElementsAre(20, 10));
    EXPECT_EQ(IMRtDel(slot, spacing), 0);
    EXPECT_THAT(spacing, ElementsAre(0.5F, 0.25F, 0.5F));
    EXPECT_EQ(IMRtWav(slot, &count, waves), 0);
    EXPECT_THAT(std::vector(waves, waves + count), ElementsAre(461, 525));
    EXPECT_EQ(IMRtExHdrValueZWTP(slot, 1, 1, 1, 0, 1, &value), 0);
    EXPECT_EQ(value, 30.75);
    EXPECT_EQ(IMRtExHdrValueZWTP(slot, 1, 1, 1, 0, 14, &value), -1) << "the file gives no bias";
    EXPECT_EQ(IMRtExHdrValueZWTP(slot, 3, 1, 1, 0, 1, &value), -1) << "no such section";
    EXPECT_EQ(value, 30.75);
    EXPECT_EQ(IWRtFilename(slot, 0, name), 1);
    EXPECT_EQ(name, file.string());
}

TEST_F(Iwl, AFileNameThatDoesNotFitIsRefused)
{
    file = folder / std::string(120, 'a') / std::string(120, 'b') / "cells.ome.tif";
    fs::create_directories(file.parent_path());
    auto viewer = show();
    char name[IW_FILENAME_SIZE] = "before";
    EXPECT_EQ(IWRtFilename(slot, 0, name), 0);
    EXPECT_STREQ(name, "");
}

TEST_F(Iwl, RectanglesAreReadRowByRowAndBadOnesRefused)
{
    auto viewer = show();
    float buffer[6];
    EXPECT_NE(IMRdPas(slot, buffer, 1, 1, 0, 0, 0, 0), 0) << "no section chosen yet";
    ASSERT_EQ(IMPosnZWTP(slot, 2, 1, 1, 0), 0);
    ASSERT_EQ(IMRdPas(slot, buffer, 3, 2, 17, 19, 8, 9), 0);
    EXPECT_THAT(buffer, ElementsAre(11323, 11324, 11325, 11334, 11335, 11336));
    const int bad[][6] = {
        {3, 2, 18, 20, 8, 9}, {3, 2, 17, 19, 9, 10}, {1, 1, -1, -1, 0, 0}, {1, 1, 0, 0, -1, -1},
        {0, 0, 1, 0, 1, 0},   {2, 2, 17, 19, 8, 9},  {3, 1, 17, 19, 8, 9}, {-3, 2, 19, 17, 8, 9},
    };
    for (const auto& r : bad)
        EXPECT_EQ(IMRdPas(slot, buffer, r[0], r[1], r[2], r[3], r[4], r[5]), -1) << r[2] << ' ' << r[4];
    const int missing[][4] = {{3, 0, 0, 0}, {0, 2, 0, 0}, {0, 0, 2, 0}, {0, 0, 0, 1}, {-1, 0, 0, 0}};
    for (const auto& s : missing)
        EXPECT_EQ(IMPosnZWTP(slot, s[0], s[1], s[2], s[3]), -1) << testing::PrintToString(s);
    EXPECT_EQ(IMRdPas(slot, buffer, 1, 1, 0, 0, 0, 0), -1) << "a refused section is not the one before";
}

TEST_F(Iwl, AFileThatIsReplacedIsReadAnewWhenItFits)
{
    auto viewer = show();
    EXPECT_EQ(pixel(0, 0, 0, 3, 2), 25);
    const auto replace = [&](const std::string& options) {
        writeImage(folder / "next", options);
        fs::rename(folder / "next", file);
    };
    replace("--pattern planes --size 20x10 --channels 2");
    EXPECT_EQ(pixel(1, 0, 0, 3, 2), 101);
    replace("--pattern ramp --size 30x10 --channels 2");
    const std::string said = errorsOf([] {
        EXPECT_EQ(pixel(0, 0, 0, 3, 2), -1);
        EXPECT_EQ(pixel(0, 0, 0, 3, 2), -1);
    });
    EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1) << "told once: " << said;
    int nx = 0, ny = 0;
    EXPECT_EQ(IMRtXY(slot, &nx, &ny), 0);
    EXPECT_EQ(nx, 20) << "still what the window shows";
    replace(usualImage);
    EXPECT_EQ(pixel(0, 0, 0, 3, 2), 25);
    fs::remove(file);
    EXPECT_EQ(pixel(1, 0, 0, 3, 2), 126) << "the open file is still there";
}

TEST_F(Iwl, TheWindowMayShowAnotherFile)
{
    auto viewer = show();
    writeImage(folder / "other.tif", "--pattern ramp --size 8x10 --channels 1");
    viewer->record.path = folder / "other.tif";
    viewer->record.geometry.imageWidth = 8;
    viewer->record.wavelengths.resize(1);
    viewer->publish();
    EXPECT_EQ(handleEvents(), iwl::Change::Display);
    int nx = 0, ny = 0;
    EXPECT_EQ(IMRtXY(slot, &nx, &ny), 0);
    EXPECT_EQ(nx, 8);
    EXPECT_EQ(pixel(0, 0, 1, 7, 2), 10036);
    viewer->record.path = folder / "missing.tif";
    viewer->publish();
    EXPECT_THAT(errorsOf([] { EXPECT_EQ(handleEvents(), iwl::Change::Display); }), HasSubstr("missing.tif"));
    EXPECT_EQ(pixel(0, 0, 0, 0, 0), -1);
}
