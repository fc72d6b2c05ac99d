// SPDX-License-Identifier: MIT
#include "widgets/KvAlignerP.h"

#include "widgets/ClassRecord.h"
#include "widgets/Layout.h"

#include <algorithm>
#include <cstring>
#include <numeric>
#include <optional>
#include <vector>

namespace {

using widgets::Size;

KvAlignerRec* asAligner(Widget widget)
{
    return reinterpret_cast<KvAlignerRec*>(widget);
}

KvAlignerConstraintPart& constraintsOf(Widget child)
{
    return reinterpret_cast<KvAlignerConstraintRec*>(child->core.constraints)->kv;
}

#define ALIGNER_FIELD(name) XtOffsetOf(KvAlignerRec, kv.name)
#define CHILD_FIELD(name) XtOffsetOf(KvAlignerConstraintRec, kv.name)

XtResource resources[] = {
    intRow(XmNkvColumns, "KvColumns", ALIGNER_FIELD(columns), 2),
    computedRow(XmNmarginWidth, XmCMarginWidth, XmRHorizontalDimension, sizeof(Dimension),
                ALIGNER_FIELD(marginWidth), widgets::scaledDimension<4>),
    computedRow(XmNmarginHeight, XmCMarginHeight, XmRVerticalDimension, sizeof(Dimension),
                ALIGNER_FIELD(marginHeight), widgets::scaledDimension<4>),
    computedRow(XmNhorizontalSpacing, XmCSpacing, XmRHorizontalDimension, sizeof(Dimension),
                ALIGNER_FIELD(horizontalSpacing), widgets::scaledDimension<8>),
    computedRow(XmNverticalSpacing, XmCSpacing, XmRVerticalDimension, sizeof(Dimension),
                ALIGNER_FIELD(verticalSpacing), widgets::scaledDimension<4>),
    dimensionRow(XmNshadowThickness, XmCShadowThickness, XmRHorizontalDimension,
                 XtOffsetOf(KvAlignerRec, manager.shadow_thickness), 0),
};

XtResource constraints[] = {
    flagRow(XmNkvFill, "KvFill", CHILD_FIELD(fill), false),
    intRow(XmNkvSpan, "KvSpan", CHILD_FIELD(span), 1),
    immediateRow(XmNkvAlignment, XmCAlignment, XmRAlignment, sizeof(unsigned char), CHILD_FIELD(alignment),
                 XmALIGNMENT_BEGINNING),
};

struct Cell {
    Widget child;
    int row, column, span;
    Size size;                   // that the child wants
    std::optional<int> baseline; // from its top, none for what has no text
};

// Motif computes a baseline from the present size, so the child gets the wanted height first.
std::optional<int> baselineOf(Widget child, Size size, Widget asking)
{
    widgets::configure(child, child->core.x, child->core.y, {child->core.width, size.height}, asking);
    Dimension* lines = nullptr;
    int count = 0;
    if (!XmWidgetGetBaselines(child, &lines, &count) || count == 0)
        return std::nullopt;
    const int first = lines[0];
    XtFree(reinterpret_cast<char*>(lines));
    return first;
}

std::vector<Cell> cellsOf(Widget aligner, Widget asking)
{
    const int columns = std::max(1, asAligner(aligner)->kv.columns);
    std::vector<Cell> cells;
    int row = 0, column = 0;
    for (const Widget child : widgets::managedChildren(aligner)) {
        const int span = std::clamp(constraintsOf(child).span, 1, columns);
        if (column + span > columns) {
            ++row;
            column = 0;
        }
        const Size size = widgets::preferredSizeOf(child);
        cells.push_back({child, row, column, span, size, baselineOf(child, size, asking)});
        column += span;
    }
    return cells;
}

// Each column is as wide as its widest child. A child over several columns widens the last of them where it
// needs more.
std::vector<int> columnWidths(const KvAlignerRec* aligner, const std::vector<Cell>& cells)
{
    std::vector<int> widths(static_cast<std::size_t>(std::max(1, aligner->kv.columns)));
    for (const Cell& cell : cells)
        if (cell.span == 1)
            widths[static_cast<std::size_t>(cell.column)] =
                std::max(widths[static_cast<std::size_t>(cell.column)], cell.size.width);
    for (const Cell& cell : cells) {
        const auto first = widths.begin() + cell.column, end = first + cell.span;
        const int have = std::accumulate(first, end, (cell.span - 1) * aligner->kv.horizontalSpacing);
        *(end - 1) += std::max(0, cell.size.width - have);
    }
    return widths;
}

// Space above and below the baseline of each row.
struct RowHeight {
    int above = 0, below = 0;
    int height() const { return above + below; }
};

std::vector<RowHeight> rowHeights(const std::vector<Cell>& cells)
{
    std::vector<RowHeight> rows(cells.empty() ? 0 : static_cast<std::size_t>(cells.back().row + 1));
    for (const Cell& cell : cells) {
        RowHeight& row = rows[static_cast<std::size_t>(cell.row)];
        row.above = std::max(row.above, cell.baseline.value_or(0));
        row.below = std::max(row.below, cell.baseline ? cell.size.height - *cell.baseline : 0);
    }
    for (const Cell& cell : cells) {
        RowHeight& row = rows[static_cast<std::size_t>(cell.row)];
        row.below += std::max(0, cell.size.height - row.height());
    }
    return rows;
}

int sumOf(const std::vector<int>& widths, int spacing)
{
    return std::accumulate(widths.begin(), widths.end(), spacing * (static_cast<int>(widths.size()) - 1));
}

Size preferredSize(Widget widget, Widget asking)
{
    const KvAlignerRec* aligner = asAligner(widget);
    const std::vector<Cell> cells = cellsOf(widget, asking);
    Size size{2 * aligner->kv.marginWidth +
                  sumOf(columnWidths(aligner, cells), aligner->kv.horizontalSpacing),
              2 * aligner->kv.marginHeight};
    const std::vector<RowHeight> rows = rowHeights(cells);
    for (const RowHeight& row : rows)
        size.height += row.height();
    size.height += aligner->kv.verticalSpacing * std::max(0, static_cast<int>(rows.size()) - 1);
    return size;
}

// Shares the width that is left evenly among the columns that may grow; what does not divide goes to the
// last.
void grow(const KvAlignerRec* aligner, const std::vector<Cell>& cells, std::vector<int>& widths)
{
    std::vector<int> growing;
    for (const Cell& cell : cells)
        if (constraintsOf(cell.child).fill)
            growing.push_back(cell.column + cell.span - 1);
    std::sort(growing.begin(), growing.end());
    growing.erase(std::unique(growing.begin(), growing.end()), growing.end());
    int spare =
        aligner->core.width - 2 * aligner->kv.marginWidth - sumOf(widths, aligner->kv.horizontalSpacing);
    for (std::size_t i = 0; i < growing.size() && spare > 0; ++i) {
        const int share = spare / static_cast<int>(growing.size() - i);
        widths[static_cast<std::size_t>(growing[i])] += share;
        spare -= share;
    }
}

void put(const KvAlignerRec* aligner, const Cell& cell, const std::vector<int>& widths, int top,
         const RowHeight& row, Widget asking)
{
    const int spacing = aligner->kv.horizontalSpacing;
    const auto first = widths.begin() + cell.column;
    const int left = std::accumulate(widths.begin(), first, cell.column * spacing) + aligner->kv.marginWidth;
    const int room = std::accumulate(first, first + cell.span, (cell.span - 1) * spacing);
    const KvAlignerConstraintPart& wish = constraintsOf(cell.child);
    const int width = wish.fill ? room : std::min(room, cell.size.width);
    const int spare = room - width;
    const int shift = wish.alignment == XmALIGNMENT_END      ? spare
                      : wish.alignment == XmALIGNMENT_CENTER ? spare / 2
                                                             : 0;
    const int down = cell.baseline ? row.above - *cell.baseline : (row.height() - cell.size.height) / 2;
    widgets::configure(cell.child, left + shift, top + down, {width, cell.size.height}, asking);
}

void layOut(Widget widget, Widget asking)
{
    const KvAlignerRec* aligner = asAligner(widget);
    const std::vector<Cell> cells = cellsOf(widget, asking);
    std::vector<int> widths = columnWidths(aligner, cells);
    grow(aligner, cells, widths);
    const std::vector<RowHeight> rows = rowHeights(cells);
    int top = aligner->kv.marginHeight;
    for (std::size_t i = 0, next = 0; i < rows.size(); ++i) {
        for (; next < cells.size() && cells[next].row == static_cast<int>(i); ++next)
            put(aligner, cells[next], widths, top, rows[i], asking);
        top += rows[i].height() + aligner->kv.verticalSpacing;
    }
}

using Arrangement = widgets::Arrangement<preferredSize, layOut>;

void expose(Widget widget, XEvent* event, Region region)
{
    XmeRedisplayGadgets(widget, event, region);
}

Boolean setValues(Widget old, Widget, Widget widget, ArgList, Cardinal*)
{
    if (std::memcmp(&asAligner(old)->kv, &asAligner(widget)->kv, sizeof(KvAlignerPart)) != 0)
        layOut(widget, nullptr);
    return False;
}

Boolean setChildValues(Widget oldChild, Widget, Widget child, ArgList, Cardinal*)
{
    const KvAlignerConstraintPart &old = constraintsOf(oldChild), &now = constraintsOf(child);
    if (XtIsManaged(child) &&
        (old.fill != now.fill || old.span != now.span || old.alignment != now.alignment))
        layOut(XtParent(child), child);
    return False;
}

} // namespace

KvManagerClassRec kvAlignerClassRec = widgets::managerClass(
    "XmKvAligner", sizeof(KvAlignerRec), resources,
    {.resize = Arrangement::resize,
     .expose = expose,
     .setValues = setValues,
     .queryGeometry = Arrangement::queryGeometry},
    Arrangement::composite(),
    {.resources = constraints, .recordSize = sizeof(KvAlignerConstraintRec), .setValues = setChildValues});

WidgetClass xmKvAlignerWidgetClass = reinterpret_cast<WidgetClass>(&kvAlignerClassRec);

Widget XmCreateKvAligner(Widget parent, const char* name, ArgList args, Cardinal count)
{
    return XtCreateWidget(name, xmKvAlignerWidgetClass, parent, args, count);
}
