// SPDX-License-Identifier: MIT
// The icons of the commands: each is drawn, inside its square, at any scale, and no two are alike.
#include <gtest/gtest.h>

#include "platform/imagewindow/controls/Commands.h"
#include "platform/imagewindow/controls/Icons.h"

#include <set>
#include <string>
#include <vector>

using namespace viewer;

namespace {

// Pixels that can be seen well.
int inked(const picture::Picture& icon)
{
    int count = 0;
    for (std::size_t i = 3; i < icon.rgba.size(); i += 4)
        count += icon.rgba[i] > 128;
    return count;
}

bool edgeIsFree(const picture::Picture& icon)
{
    for (int i = 0; i < icon.width; ++i)
        for (const std::uint8_t* pixel :
             {icon.at(i, 0), icon.at(i, icon.height - 1), icon.at(0, i), icon.at(icon.width - 1, i)})
            if (pixel[3] > 128)
                return false;
    return true;
}

} // namespace

TEST(Icons, EachCommandOfTheToolBarHasOneOfItsOwn)
{
    std::set<std::string> names;
    std::set<std::vector<std::uint8_t>> drawn;
    for (const Command& command : commands()) {
        SCOPED_TRACE(command.name);
        if (!*command.icon)
            continue;
        ASSERT_TRUE(hasIcon(command.icon));
        EXPECT_TRUE(names.insert(command.icon).second);
        EXPECT_TRUE(drawn.insert(iconPicture(command.icon, {255, 255, 255}, 1).rgba).second);
    }
    EXPECT_GE(names.size(), 12U);
    EXPECT_FALSE(hasIcon("no such icon"));
}

TEST(Icons, AreDrawnInTheirSquareAtEachScale)
{
    for (const Command& command : commands())
        for (const double scale : {1.0, 1.25, 2.0}) {
            if (!*command.icon)
                continue;
            SCOPED_TRACE(std::string(command.icon) + " " + std::to_string(scale));
            const picture::Picture icon = iconPicture(command.icon, {255, 255, 255}, scale);
            EXPECT_EQ(icon.width, static_cast<int>(iconSide * scale));
            EXPECT_EQ(icon.height, icon.width);
            EXPECT_GT(inked(icon), 40 * scale * scale);
            EXPECT_TRUE(edgeIsFree(icon));
        }
}
