// SPDX-License-Identifier: MIT
// The rows of an outliner without its window: a forest of rows with cells, sorted and searched.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace widgets {

constexpr int noRow = -1; // also: the parent of the topmost rows

struct OutlineRow {
    int parent = noRow;
    std::vector<std::string> cells;
    std::vector<int> children; // in the order of their addition
    bool open = true;          // shows its children
};

// A row as it stands on the screen.
struct ShownRow {
    int row;
    int depth; // 0: topmost
};

class OutlineRows {
public:
    // The number of the new row, which it keeps; noRow where the parent is none.
    int add(int parent, std::vector<std::string> cells);
    void clear();
    bool has(int row) const { return row >= 0 && row < static_cast<int>(all.size()); }
    const OutlineRow& at(int row) const { return all.at(static_cast<std::size_t>(row)); }
    void setCell(int row, int column, std::string text);
    void setOpen(int row, bool open);
    // Empty where the row has no such cell.
    std::string_view cell(int row, int column) const;

    // By a column, -1: in the order of addition. Two numbers compare as numbers, else texts without regard to
    // upper and lower case; equal ones stay in order.
    void sort(int column, bool descending);
    // Shows only rows with a cell that holds the text, in either case, and what leads to them, opened. Empty:
    // all.
    void search(std::string text);

    // Top to bottom.
    const std::vector<ShownRow>& shown();
    // The place of a row among those shown, -1: it is not shown.
    int placeOf(int row);

private:
    void append(const std::vector<int>& siblings, int depth);
    void markMatches();
    bool before(int first, int second) const;

    std::vector<OutlineRow> all;
    std::vector<int> top;
    std::vector<char> matches; // of each row, itself or below it, while something is searched
    std::vector<ShownRow> visible;
    bool current = false; // visible is up to date
    int sortColumn = -1;
    bool sortDescending = false;
    std::string wanted; // lower case
};

} // namespace widgets
