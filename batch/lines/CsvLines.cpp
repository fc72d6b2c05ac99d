// SPDX-License-Identifier: MIT
// Lines as a table: a row each, by columns that the first record names.
#include "batch/lines/Csv.h"
#include "batch/lines/LineFile.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace batch {

namespace {

enum Column { Name, X0, Y0, X1, Y1, X0um, Y0um, X1um, Y1um, Image, Z, T, P, Width, columnCount };
constexpr std::array<std::string_view, columnCount> columnNames = {
    "name",  "x0_px", "y0_px", "x1_px", "y1_px", "x0_um", "y0_um",
    "x1_um", "y1_um", "image", "z",     "t",     "p",     "width_px"};

// Where each known column stands in the records; -1: nowhere.
using Columns = std::array<int, columnCount>;

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view blanks = " \t";
    const std::size_t first = text.find_first_not_of(blanks);
    return first == std::string_view::npos ? std::string_view()
                                           : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

Columns columnsOf(const std::vector<std::string>& header)
{
    Columns columns;
    for (std::size_t c = 0; c < columns.size(); ++c) {
        const auto found =
            std::ranges::find(header, columnNames[c], [](const auto& h) { return trimmed(h); });
        columns[c] = found == header.end() ? -1 : static_cast<int>(found - header.begin());
    }
    return columns;
}

// The first of the four columns of end points that the table has all of; pixels come first.
Column coordinatesOf(const Columns& columns)
{
    for (const Column first : {X0, X0um})
        if (std::all_of(&columns[first], &columns[first] + 4, [](int at) { return at >= 0; }))
            return first;
    throw std::runtime_error("has neither the columns x0_px, y0_px, x1_px and y1_px nor the same in _um");
}

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

// The whole field as a number; NaN when it is none.
double numberIn(std::string_view field)
{
    field = trimmed(field);
    double value = 0;
    const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), value);
    return error == std::errc() && end == field.data() + field.size() ? value : notANumber;
}

// A record with its columns.
struct Row {
    const std::vector<std::string>& fields;
    const Columns& columns;

    std::string_view at(Column column) const
    {
        const auto place = static_cast<std::size_t>(columns[column]);
        return columns[column] >= 0 && place < fields.size() ? std::string_view(fields[place]) : "";
    }
    double number(Column column) const { return numberIn(at(column)); }
    // An index from 1 on; 0 where the field is empty, -1 where it is no index.
    int index(Column column) const
    {
        if (trimmed(at(column)).empty())
            return 0;
        const double value = number(column);
        return value >= 1 && value <= 1e9 && value == std::floor(value) ? static_cast<int>(value) : -1;
    }
};

void addRow(const Row& row, Column first, const std::string& where, LineList& list)
{
    Line line;
    line.name = trimmed(row.at(Name)).empty() ? where : std::string(row.at(Name));
    line.image = list.imageNumber(std::string(row.at(Image)));
    line.section = {row.index(Z), row.index(T), row.index(P)};
    line.microns = first == X0um;
    if (!trimmed(row.at(Width)).empty())
        line.width = static_cast<float>(row.number(Width));
    const auto at = [&](int i) { return row.number(static_cast<Column>(first + i)); };
    list.add(std::move(line), std::array{Point{at(0), at(1)}, Point{at(2), at(3)}});
}

} // namespace

void readCsvLines(std::string_view text, const std::string& source, LineList& list)
{
    CsvReader reader(text);
    std::vector<std::string> fields;
    if (!reader.next(fields))
        throw std::runtime_error("is empty");
    const Columns columns = columnsOf(fields);
    const Column first = coordinatesOf(columns);
    while (reader.next(fields)) {
        const std::string where = source + ":" + std::to_string(reader.line());
        if (reader.openQuote())
            list.problems.push_back({where, "A quote is opened in this row and never closed."});
        else
            addRow({fields, columns}, first, where, list);
    }
}

} // namespace batch
