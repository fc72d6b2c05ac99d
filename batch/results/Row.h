// SPDX-License-Identifier: MIT
// A row of a table of comma-separated values, field by field.
#pragma once

#include "batch/lines/Csv.h"

#include <charconv>
#include <cmath>
#include <string>
#include <string_view>

namespace batch {

class Row {
public:
    // Appends to the table.
    explicit Row(std::string& table) : out(table) {}

    Row& text(std::string_view field)
    {
        separate();
        appendField(out, field);
        return *this;
    }
    // Fields that are joined already.
    Row& fields(std::string_view joined)
    {
        separate();
        out += joined;
        return *this;
    }
    // The shortest text that reads back as the same number; nothing for what is no number.
    template<class Number> Row& number(Number value)
    {
        separate();
        if constexpr (std::is_floating_point_v<Number>)
            if (!std::isfinite(value))
                return *this;
        char digits[32];
        out.append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
        return *this;
    }
    void end() { out += '\n'; }

private:
    void separate()
    {
        if (!first)
            out += ',';
        first = false;
    }

    std::string& out;
    bool first = true;
};

} // namespace batch
