// SPDX-License-Identifier: MIT
#include "widgets/KvOutlinerP.h"

#include "widgets/ClassRecord.h"
#include "widgets/Painter.h"
#include "widgets/Scale.h"

#include <algorithm>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace {

using widgets::asOutliner;
using widgets::OutlinerState;
using widgets::stateOf;

#define OUTLINER_FIELD(name) XtOffsetOf(KvOutlinerRec, kv.name)

XtResource resources[] = {
    widgets::textRow(XmNkvHeadings, "KvHeadings", OUTLINER_FIELD(headings)),
    widgets::textRow(XmNkvSearch, "KvSearch", OUTLINER_FIELD(search)),
    intRow(XmNkvSortColumn, "KvSortColumn", OUTLINER_FIELD(sortColumn), -1),
    flagRow(XmNkvSortDescending, "KvSortDescending", OUTLINER_FIELD(sortDescending), false),
    intRow(XmNkvSelectedRow, "KvSelectedRow", OUTLINER_FIELD(selectedRow), -1),
    flagRow(XmNkvMultiple, "KvMultiple", OUTLINER_FIELD(multiple), false),
    intRow(XmNkvVisibleRows, "KvVisibleRows", OUTLINER_FIELD(visibleRows), 10),
    computedRow(XmNkvSelectColor, "KvSelectColor", XmRPixel, sizeof(Pixel), OUTLINER_FIELD(selectColor),
                widgets::highlightColor),
    pointerRow(XmNrenderTable, XmCRenderTable, XmRRenderTable, OUTLINER_FIELD(renderTable)),
    callbackRow(XmNkvSelectCallback, OUTLINER_FIELD(selectCallback)),
    callbackRow(XmNdefaultActionCallback, OUTLINER_FIELD(defaultActionCallback)),
    callbackRow(XmNkvSortCallback, OUTLINER_FIELD(sortCallback)),
};

// New columns get a width by their headings; the user's widths of the others stay.
void takeHeadings(Widget widget)
{
    constexpr int firstWidth = 200, otherWidth = 120;
    OutlinerState& state = stateOf(widget);
    state.headings.clear();
    const char* given = asOutliner(widget)->kv.headings;
    std::istringstream list(given ? given : "");
    for (std::string heading; std::getline(list, heading, '|');)
        state.headings.push_back(heading);
    const widgets::TextFont font(widget, asOutliner(widget)->kv.renderTable);
    for (std::size_t i = state.columnWidths.size(); i < state.headings.size(); ++i)
        state.columnWidths.push_back(std::max(widgets::scaled(widget, i == 0 ? firstWidth : otherWidth),
                                              font.width(state.headings[i]) + widgets::scaled(widget, 30)));
    state.columnWidths.resize(state.headings.size());
}

void takeSearch(Widget widget)
{
    const char* text = asOutliner(widget)->kv.search;
    stateOf(widget).rows.search(text ? text : "");
}

void takeSize(Widget widget, Widget request)
{
    const widgets::OutlinerLayout layout = widgets::outlinerLayout(widget);
    int width = 2 * layout.edge + layout.thumbWidth;
    for (const int column : stateOf(widget).columnWidths)
        width += column;
    if (request->core.width == 0)
        widget->core.width = static_cast<Dimension>(std::max(width, widgets::scaled(widget, 200)));
    if (request->core.height == 0)
        widget->core.height = static_cast<Dimension>(
            layout.top + layout.edge + std::max(1, asOutliner(widget)->kv.visibleRows) * layout.lineHeight);
}

void initialize(Widget request, Widget created, ArgList, Cardinal*)
{
    KvOutlinerPart& part = asOutliner(created)->kv;
    part.state = std::make_unique<OutlinerState>().release();
    widgets::keepCopy(part.headings);
    widgets::keepCopy(part.search);
    part.renderTable = widgets::ownRenderTable(created, part.renderTable);
    takeHeadings(created);
    takeSearch(created);
    part.state->rows.sort(part.sortColumn, part.sortDescending);
    takeSize(created, request);
    widgets::overrideTranslations(created, widgets::outlinerKeyTranslations);
}

void destroy(Widget widget)
{
    KvOutlinerPart& part = asOutliner(widget)->kv;
    const std::unique_ptr<OutlinerState> state(part.state);
    XtFree(part.headings);
    XtFree(part.search);
    XmRenderTableFree(part.renderTable);
}

void expose(Widget widget, XEvent* event, Region region)
{
    widgets::keepInSight(widget);
    widgets::drawOutliner(widget);
    widgets::drawFocus(widget, event, region);
}

void resize(Widget widget)
{
    widgets::scrollTo(widget, stateOf(widget).first);
}

Boolean setValues(Widget oldWidget, Widget, Widget widget, ArgList, Cardinal*)
{
    KvOutlinerPart &now = asOutliner(widget)->kv, &old = asOutliner(oldWidget)->kv;
    widgets::takeRenderTable(widget, now.renderTable, old.renderTable);
    if (widgets::takeText(now.headings, old.headings))
        takeHeadings(widget);
    if (widgets::takeText(now.search, old.search))
        takeSearch(widget);
    if (now.sortColumn != old.sortColumn || now.sortDescending != old.sortDescending)
        now.state->rows.sort(now.sortColumn, now.sortDescending);
    if (now.selectedRow != old.selectedRow) {
        if (!now.state->rows.has(now.selectedRow))
            now.selectedRow = widgets::noRow;
        now.state->selected.clear();
        now.state->anchor = now.selectedRow;
    }
    widgets::scrollTo(widget, now.state->first);
    return True;
}

const std::string translations =
    std::string(widgets::outlinerPointerTranslations) + widgets::primitiveTranslations;

// One drawing for any number of changes before the next event.
void showChange(Widget widget)
{
    if (XtIsRealized(widget))
        XClearArea(XtDisplay(widget), XtWindow(widget), 0, 0, 1, 1, True);
}

} // namespace

namespace widgets {

void keepInSight(Widget widget)
{
    OutlinerState& state = stateOf(widget);
    const int count = static_cast<int>(state.rows.shown().size());
    state.first = std::clamp(state.first, 0, std::max(0, count - outlinerLayout(widget).rowsInSight));
}

void scrollTo(Widget widget, int first)
{
    stateOf(widget).first = first;
    keepInSight(widget);
    redraw(widget);
}

namespace {

// The row that was chosen last, in sight and told.
void choose(Widget widget, int row, XEvent* event)
{
    KvOutlinerPart& part = asOutliner(widget)->kv;
    part.selectedRow = row;
    const int place = part.state->rows.placeOf(row), last = outlinerLayout(widget).rowsInSight - 1;
    scrollTo(widget, std::clamp(part.state->first, place - last, std::max(place, 0)));
    callBack(widget, part.selectCallback, XmKvOutlinerCallbackStruct{XmCR_SINGLE_SELECT, event, row});
}

} // namespace

void selectRow(Widget widget, int row, XEvent* event)
{
    stateOf(widget).selected = {row};
    stateOf(widget).anchor = row;
    choose(widget, row, event);
}

void toggleSelected(Widget widget, int row, XEvent* event)
{
    OutlinerState& state = stateOf(widget);
    state.anchor = row;
    if (state.selected.erase(row) == 0)
        state.selected.insert(row);
    else
        row = state.selected.empty() ? noRow : *state.selected.rbegin();
    choose(widget, row, event);
}

void selectRange(Widget widget, int row, XEvent* event)
{
    OutlinerState& state = stateOf(widget);
    const auto [first, last] = std::minmax({state.rows.placeOf(state.anchor), state.rows.placeOf(row)});
    if (first < 0)
        return selectRow(widget, row, event);
    state.selected.clear();
    for (int place = first; place <= last; ++place)
        state.selected.insert(state.rows.shown()[static_cast<std::size_t>(place)].row);
    choose(widget, row, event);
}

bool isSelected(Widget widget, int row)
{
    return row == asOutliner(widget)->kv.selectedRow || stateOf(widget).selected.contains(row);
}

void takeSorting(Widget widget)
{
    stateOf(widget).rows.sort(asOutliner(widget)->kv.sortColumn, asOutliner(widget)->kv.sortDescending);
    redraw(widget);
}

} // namespace widgets

KvPrimitiveClassRec kvOutlinerClassRec =
    widgets::primitiveClass("XmKvOutliner", sizeof(KvOutlinerRec), resources,
                            {.initialize = initialize,
                             .destroy = destroy,
                             .resize = resize,
                             .expose = expose,
                             .setValues = setValues,
                             .actions = {widgets::outlinerActions, widgets::outlinerActionCount},
                             .translations = translations.c_str()});

WidgetClass xmKvOutlinerWidgetClass = reinterpret_cast<WidgetClass>(&kvOutlinerClassRec);

Widget XmCreateKvOutliner(Widget parent, const char* name, ArgList args, Cardinal count)
{
    return XtCreateWidget(name, xmKvOutlinerWidgetClass, parent, args, count);
}

int XmKvOutlinerAdd(Widget outliner, int parent, const char* const* cells, int count)
{
    std::vector<std::string> texts;
    for (int i = 0; i < count; ++i)
        texts.emplace_back(cells[i] ? cells[i] : "");
    showChange(outliner);
    return stateOf(outliner).rows.add(parent, std::move(texts));
}

void XmKvOutlinerClear(Widget outliner)
{
    stateOf(outliner).rows.clear();
    stateOf(outliner).first = 0;
    stateOf(outliner).selected.clear();
    stateOf(outliner).anchor = widgets::noRow;
    asOutliner(outliner)->kv.selectedRow = widgets::noRow;
    showChange(outliner);
}

void XmKvOutlinerSetCell(Widget outliner, int row, int column, const char* text)
{
    stateOf(outliner).rows.setCell(row, column, text ? text : "");
    showChange(outliner);
}

void XmKvOutlinerSetOpen(Widget outliner, int row, Boolean open)
{
    stateOf(outliner).rows.setOpen(row, open);
    showChange(outliner);
}

char* XmKvOutlinerCell(Widget outliner, int row, int column)
{
    if (!stateOf(outliner).rows.has(row))
        return nullptr;
    return XtNewString(std::string(stateOf(outliner).rows.cell(row, column)).c_str());
}

Boolean XmKvOutlinerIsSelected(Widget outliner, int row)
{
    return widgets::isSelected(outliner, row) ? True : False;
}

int XmKvOutlinerShownCount(Widget outliner)
{
    return static_cast<int>(stateOf(outliner).rows.shown().size());
}
