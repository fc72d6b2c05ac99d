// SPDX-License-Identifier: MIT
#include "platform/imagewindow/view/TextFlow.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace viewer;
using Lines = std::vector<std::string>;

namespace {

// Every byte is one pixel wide.
int length(const std::string& text)
{
    return static_cast<int>(text.size());
}

} // namespace

TEST(TextFlow, CutsAtWholeCharactersAndSaysSo)
{
    const struct {
        std::string text;
        int width;
        std::string shown;
    } rows[] = {{"1450", 4, "1450"},        {"65535", 4, "6..."},
                {"1234.5678", 6, "123..."}, {"\u00b5\u00b5m\u00b5", 6, "\u00b5..."},
                {"anything", 2, "..."},     {"", 0, ""}};
    for (const auto& row : rows)
        EXPECT_EQ(fitted(row.text, row.width, length), row.shown) << row.text;
}

TEST(TextFlow, BreaksBetweenItemsAndNeverInsideANumber)
{
    const Lines values{"x 12  y 5", "DAPI 65535", "AF647 1450", "Brightfield lamp 30000"};
    const struct {
        const char* what;
        int width;
        std::size_t maxLines;
        Lines lines;
    } rows[] = {
        {"all in one", 100, 4, {"x 12  y 5   DAPI 65535   AF647 1450   Brightfield lamp 30000"}},
        {"two lines", 37, 4, {"x 12  y 5   DAPI 65535   AF647 1450", "Brightfield lamp 30000"}},
        {"an item wider than the line",
         12,
         9,
         {"x 12  y 5", "DAPI 65535", "AF647 1450", "Brightfield", "lamp 30000"}},
        {"what is left over", 22, 2, {"x 12  y 5   DAPI 65535", "AF647 1450 ..."}},
        {"whole words make room for the dots", 13, 2, {"x 12  y 5", "DAPI ..."}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(flow(values, "   ", row.width, row.maxLines, length), row.lines) << row.what;
    EXPECT_EQ(flow({}, " ", 10, 3, length), Lines{});
    const std::string huge(270000, 'x');
    EXPECT_EQ(flow({huge}, " ", 10, 3, length), Lines{"xxxxxxx..."});
}

TEST(TextFlow, BreaksSentencesAtBlanks)
{
    EXPECT_EQ(flow(wordsOf("Page 3 cannot  be read."), " ", 14, 4, length),
              (Lines{"Page 3 cannot", "be read."}));
}
