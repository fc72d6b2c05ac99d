// SPDX-License-Identifier: MIT
// The next image of a folder, and windows that follow each other.
#include "platform/imagewindow/files/Neighbours.h"

#include "platform/imagewindow/state/Link.h"
#include "tests/unit/image/TempFolder.h"
#include "tests/unit/image/TestFiles.h"

#include <algorithm>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace viewer;
using testing::ElementsAre;

TEST(Neighbours, NamesAreOrderedAsPeopleReadThem)
{
    std::vector<std::string> names{"z10.tif",  "z2.tif", "Z3.tif",
                                   "z02b.tif", "z.tif",  "z1a10",
                                   "z1a9",     "",       "z99999999999999999999999.tif",
                                   "a"};
    std::sort(names.begin(), names.end(), naturallyBefore);
    EXPECT_THAT(names, ElementsAre("", "a", "z.tif", "z1a9", "z1a10", "z2.tif", "z02b.tif", "Z3.tif",
                                   "z10.tif", "z99999999999999999999999.tif"));
    EXPECT_NE(naturallyBefore("z02", "z2"),
              naturallyBefore("z2", "z02")); // they differ by a zero alone, and one still comes first
}

TEST(Neighbours, TheNearestFirst)
{
    const TempFolder folder;
    for (const char* name : {"1.tif", "2.tif", "10.tif", "11.tif", ".hidden", "20/x"})
        writeBytes(folder / name, "x");
    EXPECT_THAT(neighboursOf(folder / "10.tif", 1), ElementsAre(folder / "11.tif"));
    EXPECT_THAT(neighboursOf(folder / "10.tif", -1), ElementsAre(folder / "2.tif", folder / "1.tif"));
    EXPECT_THAT(neighboursOf("/nowhere/10.tif", 1), ElementsAre());
}

TEST(Link, AWindowFollowsAsFarAsItsImageHasIt)
{
    const TempFolder folder;
    TiffSpec spec;
    spec.width = spec.height = 200;
    spec.pages = 3;
    writeTiff(folder / "stack.tif", spec);
    Shown shown(openImage((folder / "stack.tif").string()));
    shown.area = {100, 100};
    shown.view.zoom = 1;
    shown.arrangeNow();
    const LinkState start = linkStateOf(shown);
    LinkState now = start;
    now.z = 7;
    follow(shown, {start, now});
    EXPECT_EQ(shown.view.z, 2);
    EXPECT_EQ(shown.view.zoom, 1); // nothing else has changed
    LinkState enlarged = now;
    enlarged.zoom = 2;
    enlarged.middleX = 100;
    enlarged.middleY = 1000; // beyond the edge
    follow(shown, {now, enlarged});
    const LinkState followed = linkStateOf(shown);
    EXPECT_EQ(followed.zoom, 2);
    EXPECT_NEAR(followed.middleX, 100, 1);
    EXPECT_LT(followed.middleY, 200);
    LinkState fitted = enlarged;
    fitted.fit = true;
    follow(shown, {enlarged, fitted});
    EXPECT_TRUE(shown.view.fit);
}
