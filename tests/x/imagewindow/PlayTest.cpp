// SPDX-License-Identifier: MIT
// Playing by key and menu: the display record follows, a step by hand ends it, what is chosen is kept.
#include "tests/x/imagewindow/Viewer.h"

#include "drive/Pair.h"

#include <X11/keysym.h>

#include <fstream>
#include <set>
#include <sstream>
#include <string>

using namespace viewertest;

namespace {

// Waits until the record has told so many sections.
bool seesSections(Viewer& viewer, std::size_t count)
{
    std::set<int> seen;
    viewer.waitForRecord([&](const auto& record) {
        seen.insert(record.z);
        return seen.size() >= count;
    });
    return seen.size() >= count;
}

std::string settings()
{
    std::ifstream file(scratchFolder() / "config/kelvora/imagewindow");
    std::ostringstream text;
    text << file.rdbuf();
    return std::move(text).str();
}

} // namespace

TEST(Play, GoesThroughTheSectionsUntilAStepByHand)
{
    Viewer viewer({stackImage()});
    viewer.focus();
    viewer.screen.key(XK_p);
    EXPECT_TRUE(seesSections(viewer, 4));
    viewer.screen.key(XK_Page_Down);
    drive::waitUntilCalm(viewer.screen);
    const int z = viewer.record()->z;
    drive::waitUntilCalm(viewer.screen);
    EXPECT_EQ(viewer.record()->z, z);
    viewer.screen.key(XK_p);
    EXPECT_TRUE(seesSections(viewer, 2));
    viewer.screen.key(XK_p);
    EXPECT_TRUE(drive::waitUntilCalm(viewer.screen));
}

TEST(Play, TheRateIsChosenAndKept)
{
    Viewer viewer({stackImage()});
    viewer.screen.click(viewer.screen.findTitle("Image window"), 105, 14);
    ASSERT_NE(viewer.waitForMenu(), Window{None});
    drive::waitUntilCalm(viewer.screen);
    viewer.screen.key(XK_w);
    const Window dialogue = viewer.screen.findTitle("Playing in image window");
    ASSERT_TRUE(support::waitForFocus(viewer.screen, dialogue));
    for (const char* impossible : {"0", "x", "1000"}) {
        viewer.screen.replaceText(impossible);
        viewer.screen.key(XK_Return);
        drive::waitUntilCalm(viewer.screen);
        EXPECT_EQ(settings().find("play:"), std::string::npos) << impossible;
    }
    viewer.screen.replaceText("25");
    viewer.screen.key(XK_Return);
    EXPECT_TRUE(drive::waitUntil([] { return settings().find("play: z 25 loop\n") != std::string::npos; }));
}
