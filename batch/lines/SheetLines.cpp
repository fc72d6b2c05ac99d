// SPDX-License-Identifier: MIT
// The lines of a spreadsheet that the tool has written, to be measured again: the image, the section, and the
// pixels of the first and the last sample of each block.
#include "batch/lines/LineFile.h"

#include <charconv>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace batch {

namespace {

// The records of one row of cells, by column.
using Cells = std::map<int, std::string>;

// "C;X1;Y2;K"text"" of a text that goes on behind it; nothing for other records.
struct Cell {
    int column, row;
    std::string text;
};

std::optional<int> indexAfter(std::string_view& record, std::string_view mark)
{
    int value = 0;
    if (!record.starts_with(mark))
        return std::nullopt;
    record.remove_prefix(mark.size());
    const auto [end, error] = std::from_chars(record.data(), record.data() + record.size(), value);
    if (error != std::errc() || value < 1)
        return std::nullopt;
    record.remove_prefix(static_cast<std::size_t>(end - record.data()));
    return value;
}

std::optional<Cell> cellOf(std::string_view record)
{
    const std::optional<int> column = indexAfter(record, "C;X");
    const std::optional<int> row = column ? indexAfter(record, ";Y") : std::nullopt;
    if (!row || !record.starts_with(";K\"") || record.size() < 4 || record.back() != '"')
        return std::nullopt;
    return Cell{*column, *row, std::string(record.substr(3, record.size() - 4))};
}

std::optional<double> numberIn(const Cells& cells, int column)
{
    const auto found = cells.find(column);
    double value = 0;
    if (found == cells.end())
        return std::nullopt;
    const std::string& text = found->second;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(value) : std::nullopt;
}

// Takes row after row. A block is name, time, headers, values, an empty row, the headers of its samples and
// the samples up to the next empty row.
class BlockReader {
public:
    BlockReader(const std::string& source, LineList& list) : source(source), list(list) {}

    void takeRow(const Cells& cells, int row)
    {
        if (row > last + 1 && state == Samples)
            finish();
        last = row;
        if (cells.contains(1) && cells.at(1) == "Segment") {
            state = Values;
        } else if (state == Values) {
            takeValues(cells);
            state = SampleHeaders;
        } else if (state == SampleHeaders) {
            takeHeaders(cells);
        } else if (state == Samples) {
            takeSample(cells);
        } else if (cells.contains(1)) {
            name = std::exchange(time, cells.at(1)); // the row before the last
        }
    }
    void finish()
    {
        if (state == Samples)
            list.add(line, points);
        else if (state != Between)
            list.problems.push_back({source, "A block of the spreadsheet has no samples."});
        state = Between;
        points.clear();
    }
    std::size_t found() const { return blocks; }

private:
    enum State { Between, Values, SampleHeaders, Samples };

    void takeValues(const Cells& cells)
    {
        line = {};
        const auto index = [&](int column) { return static_cast<int>(numberIn(cells, column).value_or(-1)); };
        line.name = source + ":" + std::to_string(++blocks);
        line.image = list.imageNumber(name == "unknown" ? "" : name);
        line.section = {index(2), index(3), 0};
    }
    void takeHeaders(const Cells& cells)
    {
        for (const auto& [column, text] : cells)
            if (text == "X (pixel)")
                xColumn = column;
        state = Samples;
    }
    // Only the ends are kept.
    void takeSample(const Cells& cells)
    {
        const std::optional<double> x = numberIn(cells, xColumn), y = numberIn(cells, xColumn + 1);
        if (!x || !y)
            return;
        if (points.size() == 2)
            points.pop_back();
        points.push_back({*x, *y});
    }

    const std::string& source;
    LineList& list;
    State state = Between;
    int last = 0, xColumn = 1;
    std::string name, time;
    Line line;
    std::vector<Point> points;
    std::size_t blocks = 0;
};

} // namespace

void readSheetLines(std::string_view text, const std::string& source, LineList& list)
{
    BlockReader reader(source, list);
    Cells cells;
    int row = 0;
    while (!text.empty()) {
        std::string_view record = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(text.size(), record.size() + 1));
        if (record.ends_with('\r'))
            record.remove_suffix(1);
        const std::optional<Cell> cell = cellOf(record);
        if (!cell)
            continue;
        if (cell->row != row && !cells.empty())
            reader.takeRow(std::exchange(cells, {}), row);
        row = cell->row;
        cells[cell->column] = cell->text;
    }
    if (!cells.empty())
        reader.takeRow(cells, row);
    reader.finish();
    if (reader.found() == 0)
        throw std::runtime_error("holds no profile of the tool");
}

} // namespace batch
