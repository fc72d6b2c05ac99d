// SPDX-License-Identifier: MIT
// A window comes back as it was closed, for the same file.
#include "tests/x/imagewindow/Viewer.h"

#include <X11/keysym.h>

#include <functional>
#include <string>
#include <tuple>

using namespace viewertest;
using protocol::DisplayRecord;

namespace {

void close(Viewer& viewer)
{
    viewer.screen.requestClose(viewer.screen.findTitle("Image window 1"));
    EXPECT_EQ(viewer.process.wait(), 0);
    EXPECT_EQ(viewer.process.errors(), "");
}

void pressUntil(Viewer& viewer, KeySym key, const std::function<bool(const DisplayRecord&)>& condition)
{
    viewer.focus();
    viewer.screen.key(key);
    EXPECT_TRUE(condition(viewer.waitForRecord(condition)));
}

} // namespace

TEST(Memory, AWindowComesBackAsItWasClosed)
{
    const fs::path image = scratchFolder() / "remembered.ome.tif";
    fs::copy_file(stackImage(), image);
    drive::Rect place;
    {
        Viewer viewer({"--geometry", "500x460+200+150", image});
        pressUntil(viewer, XK_Next, [](const auto& r) { return r.z == 2; });
        pressUntil(viewer, XK_equal, [](const auto& r) { return r.geometry.zoom == 1.5; });
        place = viewer.screen.frameGeometry(viewer.screen.findTitle("Image window 1"));
        close(viewer);
    }
    {
        Viewer viewer({"--section", "1", image}); // and the zoom of 1 that all tests ask for
        EXPECT_EQ(viewer.record()->z, 0);
        EXPECT_EQ(viewer.record()->geometry.zoom, 1);
        const drive::Rect now = viewer.screen.frameGeometry(viewer.screen.findTitle("Image window 1"));
        EXPECT_EQ(std::tie(now.x, now.y, now.width, now.height),
                  std::tie(place.x, place.y, place.width, place.height));
        close(viewer); // nothing was changed: what is kept stays
    }
    Viewer viewer({image});
    EXPECT_EQ(viewer.record()->z, 2);
    viewer.screen.click(viewer.screen.findTitle("Image window 1"), 85, 14);
    ASSERT_NE(viewer.waitForMenu(), Window{None});
    drive::waitUntilCalm(viewer.screen);
    viewer.screen.key(XK_h); // forgets
    EXPECT_EQ(viewer.waitForRecord([](const auto& r) { return r.z == 1; }).z, 1);
    close(viewer);
    Viewer again({image});
    EXPECT_EQ(again.record()->z, 1);
}
