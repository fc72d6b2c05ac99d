// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "widgets/OutlineRows.h"

#include <string>
#include <vector>

namespace {

using testing::ElementsAre;
using widgets::noRow;
using widgets::OutlineRows;

class OutlineRowsTest : public testing::Test {
protected:
    OutlineRowsTest()
    {
        const int fruit = rows.add(noRow, {"Fruit", ""});
        const int tools = rows.add(noRow, {"Tools", ""});
        rows.add(fruit, {"pear", "10"});
        rows.add(fruit, {"Apple", "9"});
        rows.add(tools, {"saw", "x"});
        rows.add(tools, {"awl", "-1.5"});
    }
    // First cells as they stand on the screen, "-" before each depth.
    std::vector<std::string> shown()
    {
        std::vector<std::string> texts;
        for (const auto& row : rows.shown())
            texts.push_back(std::string(static_cast<std::size_t>(row.depth), '-') +
                            std::string(rows.cell(row.row, 0)));
        return texts;
    }
    OutlineRows rows;
};

TEST_F(OutlineRowsTest, sortsSiblingsByTextOrNumber)
{
    rows.sort(0, false);
    EXPECT_THAT(shown(), ElementsAre("Fruit", "-Apple", "-pear", "Tools", "-awl", "-saw"));
    rows.sort(1, false);
    EXPECT_THAT(shown(), ElementsAre("Fruit", "-Apple", "-pear", "Tools", "-awl", "-saw"));
    rows.sort(1, true);
    EXPECT_THAT(shown(), ElementsAre("Fruit", "-pear", "-Apple", "Tools", "-saw", "-awl"));
    rows.sort(-1, false);
    EXPECT_THAT(shown(), ElementsAre("Fruit", "-pear", "-Apple", "Tools", "-saw", "-awl"));
}

TEST_F(OutlineRowsTest, searchShowsMatchesBelowTheirParentsEvenInClosedOnes)
{
    rows.setOpen(0, false);
    rows.search("APP");
    EXPECT_THAT(shown(), ElementsAre("Fruit", "-Apple"));
    rows.search("zebra");
    EXPECT_THAT(shown(), ElementsAre());
    rows.search("");
    EXPECT_THAT(shown(), ElementsAre("Fruit", "Tools", "-saw", "-awl"));
}

TEST_F(OutlineRowsTest, refusesWhatIsNoRow)
{
    EXPECT_EQ(rows.add(6, {"lost"}), noRow);
    EXPECT_EQ(rows.add(-2, {"lost"}), noRow);
    rows.setCell(99, 0, "lost");
    rows.setOpen(99, true);
    EXPECT_EQ(rows.cell(99, 0), "");
    EXPECT_EQ(rows.placeOf(99), -1);
    rows.clear();
    EXPECT_THAT(shown(), ElementsAre());
    EXPECT_EQ(rows.add(noRow, {"new"}), 0);
}

TEST_F(OutlineRowsTest, sortsTextsThatAreNoOrderedNumbers)
{
    rows.clear();
    for (const char* text : {"nan", "2", "inf", "1e3", "nan", "-inf", "b"})
        rows.add(noRow, {text});
    rows.sort(0, false);
    EXPECT_THAT(shown(), ElementsAre("-inf", "2", "1e3", "inf", "b", "nan", "nan"));
}

TEST(OutlineRows, chainOfTenThousandIsShown)
{
    OutlineRows rows;
    int last = noRow;
    for (int i = 0; i < 10000; ++i)
        last = rows.add(last, {"deeper"});
    EXPECT_EQ(rows.shown().size(), 10000u);
    EXPECT_EQ(rows.placeOf(last), 9999);
}

} // namespace
