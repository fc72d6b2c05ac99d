// SPDX-License-Identifier: MIT
#include "platform/text/Utf8.h"
#include "tests/Rows.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

namespace {

struct CutCase {
    const char* name;
    std::string whole;
    std::size_t limit;
    std::string kept;
};

class Shortened : public testing::TestWithParam<CutCase> {};

TEST_P(Shortened, countsWholeCharacters)
{
    EXPECT_EQ(text::shortened(GetParam().whole, GetParam().limit), GetParam().kept);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, Shortened,
    testing::Values(CutCase{"fits", "actin", 5, "actin"}, CutCase{"oneTooLong", "actins", 5, "ac..."},
                    CutCase{"wideCharacters", "\u00e9\u00e9\u00e9\u00e9\u00e9", 4, "\u00e9..."},
                    CutCase{"straysCountAsOne", "\xE9\xE9\xE9\xE9", 4, "\xE9\xE9\xE9\xE9"},
                    CutCase{"empty", "", 3, ""}),
    RowName{});

class CutToBytes : public testing::TestWithParam<CutCase> {};

TEST_P(CutToBytes, splitsNoCharacter)
{
    EXPECT_EQ(text::cutToBytes(GetParam().whole, GetParam().limit), GetParam().kept);
}

INSTANTIATE_TEST_SUITE_P(Texts, CutToBytes,
                         testing::Values(CutCase{"fits", "a\u00e9", 3, "a\u00e9"},
                                         CutCase{"insideASequence", "a\u00e9", 2, "a"},
                                         CutCase{"betweenSequences", "\u00e9\u00e9", 2, "\u00e9"},
                                         CutCase{"firstDoesNotFit", "\u00b5m", 1, ""},
                                         CutCase{"straysAreCut", "\x80\x80\x80", 2, "\x80\x80"}),
                         RowName{});

} // namespace
