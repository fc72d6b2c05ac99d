// SPDX-License-Identifier: MIT
// The scale of an image whose file does not tell it: typed, found from a segment, kept, offered again,
// removed.
#include "drive/Pair.h"
#include "tests/x/imagewindow/Viewer.h"
#include "tests/x/iwl/Peers.h"

#include <X11/keysym.h>

#include <chrono>
#include <cmath>
#include <optional>
#include <string>

using namespace viewertest;
using protocol::DisplayRecord;
using protocol::Spacing;

namespace {

fs::path uncalibratedImage(const std::string& name)
{
    support::makeSample(scratchFolder() / name, "--pattern ramp --size 64x48 --z 3 --no-calibration");
    return scratchFolder() / name;
}

// Opens the dialogue by its key; the field of x has the keyboard.
Window openDialogue(Viewer& viewer)
{
    viewer.focus();
    viewer.screen.key(XK_u);
    const Window dialogue = viewer.screen.findTitle("Scale of image window");
    EXPECT_TRUE(support::waitForFocus(viewer.screen, dialogue));
    drive::waitUntilCalm(viewer.screen);
    return dialogue;
}

// Puts text into the field with the keyboard and sets the scale.
void enter(Viewer& viewer, const std::string& text)
{
    viewer.screen.replaceText(text);
    viewer.screen.key(XK_Return);
}

std::optional<Spacing> waitForSpacing(Viewer& viewer, bool set)
{
    return viewer.waitForRecord([&](const DisplayRecord& r) { return r.spacing.has_value() == set; }).spacing;
}

bool gone(Viewer& viewer, Window dialogue)
{
    return drive::waitUntil([&] { return !viewer.screen.viewable(dialogue); });
}

} // namespace

TEST(Scale, IsTypedKeptAndRemoved)
{
    const fs::path image = uncalibratedImage("typed.ome.tif");
    {
        Viewer viewer({image});
        EXPECT_FALSE(viewer.record()->spacing);
        const Window dialogue = openDialogue(viewer);
        for (const std::string bad : {"abc", "0", "3 pixel", ""}) {
            viewer.screen.replaceText(bad);
            EXPECT_TRUE(drive::waitUntilCalm(viewer.screen));
            const drive::Picture typed = viewer.screen.capture(dialogue);
            viewer.screen.key(XK_Return); // each is answered by a sentence of its own
            EXPECT_TRUE(drive::waitUntil([&] {
                return viewer.screen.capture(dialogue).pixels != typed.pixels;
            })) << bad;
            EXPECT_TRUE(viewer.screen.viewable(dialogue)) << bad;
            EXPECT_FALSE(viewer.record()->spacing) << bad;
        }
        enter(viewer, "107.5 nm");
        EXPECT_EQ(waitForSpacing(viewer, true), (Spacing{0.1075F, 0.1075F, 1}));
        EXPECT_TRUE(gone(viewer, dialogue));
    }
    Viewer again({image});
    EXPECT_EQ(again.record()->spacing, (Spacing{0.1075F, 0.1075F, 1}));
    openDialogue(again);
    for (const KeySym key : {XK_Tab, XK_Tab, XK_Tab, XK_Right, XK_space}) { // Remove, beside Set
        again.screen.key(key);
        drive::waitUntilCalm(again.screen);
    }
    EXPECT_FALSE(waitForSpacing(again, false));
    EXPECT_FALSE(Viewer({image}).record()->spacing);
}

TEST(Scale, OfAnotherVersionOfTheFileIsOfferedOnly)
{
    const fs::path image = uncalibratedImage("version.ome.tif");
    {
        Viewer viewer({image});
        openDialogue(viewer);
        enter(viewer, "0.5");
        ASSERT_TRUE(waitForSpacing(viewer, true));
    }
    fs::last_write_time(image, fs::last_write_time(image) + std::chrono::seconds(2));
    Viewer viewer({image});
    EXPECT_FALSE(viewer.record()->spacing);
    openDialogue(viewer);
    viewer.screen.key(XK_Return); // takes what is offered
    EXPECT_EQ(waitForSpacing(viewer, true), (Spacing{0.5F, 0.5F, 1}));
}

TEST(Scale, FollowsFromTheSegmentsKnownLength)
{
    Viewer viewer({uncalibratedImage("segment.ome.tif")});
    const peers::Connection tool;
    protocol::OverlayCommand line{.kind = protocol::OverlayKind::AddLine,
                                  .client = static_cast<std::uint32_t>(tool.makeWindow()),
                                  .id = 1,
                                  .width = 2,
                                  .x0 = 4,
                                  .y0 = 5,
                                  .x1 = 34,
                                  .y1 = 45}; // 50 pixels
    protocol::appendOverlay(tool, viewer.canvas, line);
    line.kind = protocol::OverlayKind::Redraw;
    protocol::appendOverlay(tool, viewer.canvas, line);
    XSync(tool, False);
    EXPECT_TRUE(viewer.waitForPixel(19, 25, {255, 184, 28}));
    openDialogue(viewer);
    for (int field = 0; field < 3; ++field) { // to the known length
        viewer.screen.key(XK_Tab);
        drive::waitUntilCalm(viewer.screen);
    }
    enter(viewer, "0.01 mm");
    EXPECT_EQ(waitForSpacing(viewer, true), (Spacing{0.2F, 0.2F, 1}));
}
