// SPDX-License-Identifier: MIT
// Next and previous images of a folder, and linked windows.
#include "tests/Folders.h"
#include "tests/x/imagewindow/Viewer.h"

#include <X11/keysym.h>

#include <string>
#include <tuple>

using namespace viewertest;
using testing::HasSubstr;

namespace {

bool hasShown(Viewer& viewer, const std::string& line)
{
    return drive::waitUntil([&] { return viewer.process.output().find(line + "\n") != std::string::npos; });
}

struct Folder {
    Folder()
    {
        for (const char* name : {"z2.tif", "z10.tif"})
            fs::copy_file(rgbImage(), folder / name);
        writeBytes(folder / "z3.txt", "notes"); // no image
        writeBytes(folder / "z4.tif", std::string("II*\0broken", 10));
    }
    const TempFolder folder;
};

} // namespace

TEST(SeveralWindows, TheNextImageTakesThePlaceOfThisOne)
{
    const Folder files;
    Viewer viewer({"--geometry", "500x400+120+90", files.folder / "z2.tif"});
    const drive::Rect place = viewer.screen.frameGeometry(viewer.screen.findTitle("Image window 1"));
    viewer.control(XK_Right);
    ASSERT_TRUE(hasShown(viewer, "window 1: " + (files.folder / "z10.tif").string()))
        << viewer.process.output();
    const Window window = viewer.screen.findTitle("Image window 1: z10.tif");
    const drive::Rect now = viewer.screen.frameGeometry(window);
    EXPECT_EQ(std::tie(now.x, now.y, now.width, now.height),
              std::tie(place.x, place.y, place.width, place.height));
    viewer.control(XK_Right); // the last one
    viewer.control(XK_Left);
    ASSERT_NE(viewer.screen.findTitle("Image window 1: z2.tif"), Window{None});
    EXPECT_EQ(viewer.process.errors(), "");
}

TEST(SeveralWindows, WithAToolTheNextImageGetsAWindowOfItsOwn)
{
    const Folder files;
    Viewer viewer({files.folder / "z2.tif"});
    drive::Process tool({BIN_DIR "/lineprofile", "1"});
    ASSERT_TRUE(drive::waitUntil(
        [&] { return !protocol::announcedTools(viewer.screen.x(), viewer.canvas).empty(); }));
    viewer.control(XK_Right);
    EXPECT_TRUE(hasShown(viewer, "window 2: " + (files.folder / "z10.tif").string()))
        << viewer.process.output();
    EXPECT_TRUE(tool.running());
}

TEST(SeveralWindows, LinkedOnesFollowEachOtherAndOthersDoNot)
{
    Viewer viewer({stackImage(), stackImage(), stackImage()});
    drive::Screen& screen = viewer.screen;
    const Window second = screen.findImageWindow(2), third = screen.findImageWindow(3);
    for (const int number : {1, 2}) {
        const Window window = screen.findTitle("Image window " + std::to_string(number));
        screen.click(window, 10, screen.geometry(window).height - 10); // in front, too
        ASSERT_TRUE(support::waitForFocus(screen, window));
        screen.key(XK_k);
        drive::waitUntilCalm(screen);
    }
    viewer.focus();
    screen.key(XK_Next);
    screen.key(XK_equal);
    const auto follows = [](const protocol::DisplayRecord& r) { return r.z == 2 && r.geometry.zoom == 1.5; };
    EXPECT_TRUE(follows(viewer.waitForRecord(follows)));
    EXPECT_TRUE(drive::waitUntil([&] {
        const auto record = protocol::readDisplay(screen.x(), second);
        return record && follows(*record);
    }));
    const auto other = protocol::readDisplay(screen.x(), third);
    ASSERT_TRUE(other);
    EXPECT_EQ(other->z, 1);
    EXPECT_EQ(other->geometry.zoom, 1);
}
