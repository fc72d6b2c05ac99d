// SPDX-License-Identifier: MIT
// Tables of comma-separated values (RFC 4180), read and written.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace batch {

// Goes through a text record by record. Knows quotes, LF and CR LF, a byte order mark; the separator is the
// comma, semicolon or tab that comes first in the first record. Empty lines are left out.
class CsvReader {
public:
    explicit CsvReader(std::string_view text);

    // The next record's fields, without their quotes; false at the end.
    bool next(std::vector<std::string>& fields);
    // The line of the text at which the last record began, from 1 on.
    std::size_t line() const { return recordLine; }
    // Whether the last record ended inside quotes: the text is cut off or a quote was forgotten.
    bool openQuote() const { return unclosed; }

private:
    bool readField(std::string& field);
    void endLine();

    std::string_view text;
    std::size_t at = 0, present = 1, recordLine = 1;
    char separator = ',';
    bool unclosed = false;
};

// The text as a field: in quotes where it holds a comma, a quote or a line's end.
void appendField(std::string& row, std::string_view text);

} // namespace batch
