// SPDX-License-Identifier: MIT
#include "batch/run/Settings.h"
#include "tests/Rows.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace {

using batch::IndexList;

struct Case {
    const char* name;
    std::string text;
    std::vector<int> indices; // of four; empty: refused
};
class Lists : public testing::TestWithParam<Case> {};

TEST_P(Lists, nameIndices)
{
    if (GetParam().indices.empty()) {
        EXPECT_THROW(IndexList::parse(GetParam().text), std::invalid_argument);
        return;
    }
    const IndexList list = IndexList::parse(GetParam().text);
    EXPECT_EQ(list.indices(4), GetParam().indices);
    EXPECT_EQ(IndexList::parse(list.text()).indices(4), GetParam().indices);
}

INSTANTIATE_TEST_SUITE_P(Rows, Lists,
                         testing::Values(Case{"all", "all", {0, 1, 2, 3}}, Case{"one", "3", {2}},
                                         Case{"listInAnyOrder", "4,1,4", {0, 3}},
                                         Case{"range", "2-4", {1, 2, 3}},
                                         Case{"beyondTheImageIsKept", "1,9", {0, 8}}, Case{"zero", "0", {}},
                                         Case{"backwards", "3-2", {}}, Case{"empty", "", {}},
                                         Case{"word", "first", {}}, Case{"negative", "-2", {}},
                                         Case{"huge", "1-99999999999", {}}),
                         RowName());

TEST(Shards, holdEachSectionOnce)
{
    for (int count : {1, 2, 3, 7})
        for (std::size_t image = 0; image < 5; ++image)
            for (std::size_t section = 0; section < 9; ++section) {
                int holders = 0;
                for (int number = 1; number <= count; ++number)
                    holders += batch::Shard{number, count}.holds(image, section);
                EXPECT_EQ(holders, 1) << image << ' ' << section << " of " << count;
            }
}

} // namespace
