// SPDX-License-Identifier: MIT
// An image whose file changes while it is shown: what is taken over, what is refused, what is said.
#include "platform/imagewindow/files/ImageLife.h"

#include "platform/imagewindow/files/ScaleStore.h"
#include "tests/Rows.h"
#include "tests/unit/image/TempFolder.h"
#include "tests/unit/image/TestFiles.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <thread>

using namespace viewer;
namespace fs = std::filesystem;

namespace {

constexpr const char* anotherImage = "The file now holds another image: open it again to see it.";

class FileOnDisk {
public:
    FileOnDisk()
    {
        setenv("XDG_DATA_HOME", (folder / "data").c_str(), 1);
        setenv("XDG_CACHE_HOME", (folder / "cache").c_str(), 1);
    }

    // A hyperstack; firstPage: so that its values are others.
    void write(int sections, int timePoints = 1, int width = 8, int firstPage = 0) const
    {
        TiffSpec spec;
        spec.width = width;
        spec.height = 6;
        spec.pages = sections * timePoints;
        spec.firstPage = firstPage;
        spec.description = "ImageJ=1.53\nimages=" + std::to_string(spec.pages) +
                           "\nslices=" + std::to_string(sections) + "\nframes=" + std::to_string(timePoints) +
                           "\nhyperstack=true\n";
        writeTiff(path, spec);
    }
    ImageLife open(bool growing) const
    {
        return ImageLife(growing ? openGrowing(path.string()) : openImage(path.string()));
    }

    const TempFolder folder;
    const fs::path path = folder / "cells.tif";
};

image::ValueRange rangeOf(ImageLife& life)
{
    while (life.gatherRanges())
        std::this_thread::yield();
    return life.range(0);
}

struct Change {
    const char* name;
    bool growing;
    int sections, timePoints, width; // of the file that had 1 section, 3 time points and a width of 8
    bool taken;
    const char* problem;
};

class ChangedOnDisk : public testing::TestWithParam<Change> {};

} // namespace

TEST_P(ChangedOnDisk, IsTakenWhenTheWindowHasRowsForIt)
{
    const Change& change = GetParam();
    const FileOnDisk file;
    file.write(1, 3);
    ImageLife life = file.open(change.growing);
    const FileNews calm = life.poll();
    EXPECT_FALSE(calm.told || calm.replaced);
    file.write(change.sections, change.timePoints, change.width);
    const FileNews news = life.poll();
    EXPECT_TRUE(news.told);
    EXPECT_EQ(news.replaced.has_value(), change.taken);
    EXPECT_EQ(life.problem(), change.problem);
    EXPECT_EQ(life.version(), change.taken ? 1 : 0);
    EXPECT_EQ(life.info().sizeZ, change.taken ? change.sections : 1);
    if (news.replaced) {
        EXPECT_EQ(news.replaced->t, 2); // the newest before
    }
}

INSTANTIATE_TEST_SUITE_P(Changes, ChangedOnDisk,
                         testing::Values(Change{"MoreTimePoints", false, 1, 5, 8, true, ""},
                                         Change{"FewerTimePoints", false, 1, 1, 8, true, ""},
                                         Change{"NewDimension", false, 2, 3, 8, false, anotherImage},
                                         Change{"FirstStepInZWhileGrowing", true, 2, 3, 8, true, ""},
                                         Change{"OtherSize", true, 1, 3, 9, false, anotherImage}),
                         RowName{});

TEST(ImageLife, AFileThatCannotBeReadIsNoNewsWhileItGrows)
{
    for (const bool growing : {false, true}) {
        SCOPED_TRACE(growing ? "growing" : "finished");
        const FileOnDisk file;
        file.write(2);
        ImageLife life = file.open(growing);
        writeBytes(file.path, "half a head");
        EXPECT_FALSE(life.poll().replaced);
        EXPECT_EQ(life.problem().empty(), growing);
        file.write(3);
        EXPECT_TRUE(life.poll().replaced);
        EXPECT_EQ(life.problem(), "");
        EXPECT_EQ(life.info().sizeZ, 3);
    }
}

TEST(ImageLife, RangesOfAGrowingFileWidenAndThoseOfAReplacedOneBeginAgain)
{
    for (const bool growing : {false, true}) {
        SCOPED_TRACE(growing ? "growing" : "replaced");
        const FileOnDisk file;
        file.write(2, 1, 8, 40);
        ImageLife life = file.open(growing);
        const image::ValueRange before = rangeOf(life);
        ASSERT_TRUE(before.known);
        EXPECT_EQ(life.activity(), "");
        file.write(2, 1, 8, 0);
        ASSERT_TRUE(life.poll().replaced);
        const image::ValueRange after = rangeOf(life);
        EXPECT_LT(after.min, before.min);
        EXPECT_EQ(after.max == before.max, growing);
    }
    const FileOnDisk file;
    file.write(1);
    EXPECT_FALSE(file.open(false).range(1).known);
}

TEST(ImageLife, KeepsTheScaleOfAGrowingFileForWhatItHasBecome)
{
    for (const bool growing : {false, true}) {
        SCOPED_TRACE(growing ? "growing" : "replaced");
        const FileOnDisk file;
        file.write(2);
        ImageLife life = file.open(growing);
        EXPECT_EQ(life.chosen().choose({0.5F, 0.5F, {}}), "");
        file.write(3);
        ASSERT_TRUE(life.poll().replaced);
        EXPECT_TRUE(life.scale().known);
        EXPECT_EQ(loadScale(file.path)->current, growing);
        const ImageLife next = file.open(false);
        EXPECT_EQ(next.chosen().set().has_value(), growing);
        EXPECT_EQ(next.chosen().former().has_value(), !growing);
    }
}
