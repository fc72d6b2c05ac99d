// SPDX-License-Identifier: MIT
// Tests over the rows of a table, each named by the member `name` of its row: letters and digits.
#pragma once

#include <gtest/gtest.h>

#include <string>

struct RowName {
    template<class Row> std::string operator()(const ::testing::TestParamInfo<Row>& row) const
    {
        return row.param.name;
    }
};
