// SPDX-License-Identifier: MIT
// Dialogues beside their window stay on the screen.
#include <gtest/gtest.h>

#include "platform/imagewindow/view/Placement.h"

using namespace viewer;

TEST(Placement, ADialogueStandsWholeOnTheScreen)
{
    const struct {
        const char* name;
        Place window;
        Size windowSize, dialogue;
    } cases[] = {
        {"room on the right", {10, 20}, {400, 400}, {700, 200}},
        {"room on the left", {1000, 20}, {500, 400}, {700, 200}},
        {"room below", {300, 20}, {1000, 400}, {700, 200}},
        {"no room beside", {100, 100}, {1400, 1000}, {700, 200}},
        {"window near the lower edge", {10, 1100}, {400, 400}, {700, 300}},
        {"window beyond the right edge", {1500, 20}, {1600, 1100}, {700, 300}},
        {"window above the screen", {-50, -300}, {400, 400}, {700, 300}},
        {"tall dialogue", {10, 700}, {400, 400}, {700, 1000}},
    };
    constexpr Size screen{1600, 1200};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const Place place = placeBeside(c.window, c.windowSize, c.dialogue, screen);
        EXPECT_GE(place.left, 0);
        EXPECT_GE(place.top, 0);
        EXPECT_LE(place.left + c.dialogue.width, screen.width);
        EXPECT_LE(place.top + c.dialogue.height, screen.height);
    }
    EXPECT_EQ(placeBeside({10, 20}, {400, 400}, {700, 2000}, screen).top, 0); // its title bar at least
}

TEST(Placement, ADialogueThatHasGrownMovesNoFurtherThanItMust)
{
    constexpr Size screen{1600, 1200}, size{700, 300};
    EXPECT_EQ(placeWithin({300, 40}, size, screen), (Place{300, 40}));
    const Place moved = placeWithin({300, 1000}, size, screen);
    EXPECT_EQ(moved.left, 300);
    EXPECT_LE(moved.top + size.height, screen.height);
    EXPECT_GT(moved.top + size.height, screen.height - 100);
}
