// SPDX-License-Identifier: MIT
#include "widgets/OutlineRows.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <optional>

namespace widgets {

namespace {

char lowered(char c)
{
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

std::string lowered(std::string_view text)
{
    std::string out(text);
    for (char& c : out)
        c = lowered(c);
    return out;
}

std::optional<double> numberIn(std::string_view text)
{
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool whole = error == std::errc() && end == text.data() + text.size();
    return whole && value == value ? std::optional(value) : std::nullopt;
}

// Negative, 0 or positive; numbers come before texts.
int compare(std::string_view a, std::string_view b)
{
    const std::optional<double> x = numberIn(a), y = numberIn(b);
    if (x && y)
        return *x < *y ? -1 : *x > *y;
    if (x || y)
        return x ? -1 : 1;
    return lowered(a).compare(lowered(b));
}

} // namespace

int OutlineRows::add(int parent, std::vector<std::string> cells)
{
    if (parent != noRow && !has(parent))
        return noRow;
    const int row = static_cast<int>(all.size());
    all.push_back({parent, std::move(cells), {}, true});
    (parent == noRow ? top : all[static_cast<std::size_t>(parent)].children).push_back(row);
    current = false;
    return row;
}

void OutlineRows::clear()
{
    all.clear();
    top.clear();
    current = false;
}

void OutlineRows::setCell(int row, int column, std::string text)
{
    if (!has(row) || column < 0)
        return;
    std::vector<std::string>& cells = all[static_cast<std::size_t>(row)].cells;
    cells.resize(std::max(cells.size(), static_cast<std::size_t>(column) + 1));
    cells[static_cast<std::size_t>(column)] = std::move(text);
    current = false;
}

void OutlineRows::setOpen(int row, bool open)
{
    if (!has(row))
        return;
    all[static_cast<std::size_t>(row)].open = open;
    current = false;
}

std::string_view OutlineRows::cell(int row, int column) const
{
    if (!has(row) || column < 0 || column >= static_cast<int>(at(row).cells.size()))
        return {};
    return at(row).cells[static_cast<std::size_t>(column)];
}

void OutlineRows::sort(int column, bool descending)
{
    sortColumn = column;
    sortDescending = descending;
    current = false;
}

void OutlineRows::search(std::string text)
{
    wanted = lowered(text);
    current = false;
}

bool OutlineRows::before(int first, int second) const
{
    const int order = compare(cell(first, sortColumn), cell(second, sortColumn));
    return sortDescending ? order > 0 : order < 0;
}

// From the last row to the first: parents have smaller numbers than their children.
void OutlineRows::markMatches()
{
    matches.assign(all.size(), 0);
    for (std::size_t row = all.size(); row-- > 0;) {
        const auto& cells = all[row].cells;
        matches[row] |= std::any_of(cells.begin(), cells.end(), [&](const std::string& text) {
            return lowered(text).find(wanted) != std::string::npos;
        });
        if (matches[row] && all[row].parent != noRow)
            matches[static_cast<std::size_t>(all[row].parent)] = 1;
    }
}

// A chain of parents may be as long as there are rows, so that this keeps its own stack.
void OutlineRows::append(const std::vector<int>& siblings, int firstDepth)
{
    std::vector<ShownRow> pending;
    const auto push = [&](const std::vector<int>& rows, int depth) {
        std::vector<int> sorted = rows;
        if (sortColumn >= 0)
            std::stable_sort(sorted.begin(), sorted.end(), [&](int a, int b) { return before(a, b); });
        for (auto row = sorted.rbegin(); row != sorted.rend(); ++row)
            if (wanted.empty() || matches[static_cast<std::size_t>(*row)])
                pending.push_back({*row, depth});
    };
    push(siblings, firstDepth);
    while (!pending.empty()) {
        const ShownRow next = pending.back();
        pending.pop_back();
        visible.push_back(next);
        if (at(next.row).open || !wanted.empty())
            push(at(next.row).children, next.depth + 1);
    }
}

const std::vector<ShownRow>& OutlineRows::shown()
{
    if (current)
        return visible;
    visible.clear();
    if (!wanted.empty())
        markMatches();
    append(top, 0);
    current = true;
    return visible;
}

int OutlineRows::placeOf(int row)
{
    const auto found =
        std::find_if(shown().begin(), shown().end(), [&](const ShownRow& r) { return r.row == row; });
    return found == shown().end() ? -1 : static_cast<int>(found - shown().begin());
}

} // namespace widgets
