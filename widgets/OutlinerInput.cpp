// SPDX-License-Identifier: MIT
// What the user does with an outliner: pointer and keys.
#include "widgets/ClassRecord.h"
#include "widgets/KvOutlinerP.h"
#include "widgets/Scale.h"

#include <X11/Xutil.h>

#include <algorithm>
#include <cctype>
#include <string_view>

namespace widgets {

namespace {

int shownCount(Widget widget)
{
    return static_cast<int>(stateOf(widget).rows.shown().size());
}

// The place of the row at a height; -1 beside the rows.
int placeAt(Widget widget, const OutlinerLayout& layout, int y)
{
    if (y < layout.top)
        return -1;
    const int place = stateOf(widget).first + (y - layout.top) / layout.lineHeight;
    return place < shownCount(widget) ? place : -1;
}

// The column whose right edge is near x and can be dragged; -1: none.
int edgeAt(Widget widget, const OutlinerLayout& layout, int x)
{
    const int reach = scaled(widget, 4);
    for (int column = 0; column + 1 < static_cast<int>(stateOf(widget).headings.size()); ++column)
        if (std::abs(columnLeft(widget, layout, column + 1) - x) <= reach)
            return column;
    return -1;
}

void call(Widget widget, XtCallbackList list, int reason, XEvent* event, int row)
{
    callBack(widget, list, XmKvOutlinerCallbackStruct{reason, event, row});
}

void sortBy(Widget widget, int x, const OutlinerLayout& layout, XEvent* event)
{
    KvOutlinerPart& part = asOutliner(widget)->kv;
    int column = 0;
    while (column + 1 < static_cast<int>(stateOf(widget).headings.size()) &&
           x >= columnLeft(widget, layout, column + 1))
        ++column;
    part.sortDescending = part.sortColumn == column && !part.sortDescending;
    part.sortColumn = column;
    takeSorting(widget);
    call(widget, part.sortCallback, XmCR_VALUE_CHANGED, event, column);
}

void pressHeading(Widget widget, const OutlinerLayout& layout, XEvent* event)
{
    OutlinerState& state = stateOf(widget);
    const int x = event->xbutton.x;
    const int column = edgeAt(widget, layout, x);
    if (column < 0)
        return sortBy(widget, x, layout, event);
    state.grip = Grip::ColumnEdge;
    state.gripColumn = column;
    state.gripOffset = x - columnLeft(widget, layout, column + 1);
}

void pressBar(Widget widget, const OutlinerLayout& layout, int y)
{
    OutlinerState& state = stateOf(widget);
    const ThumbBox thumb = thumbOf(widget, layout);
    if (y < thumb.top)
        return scrollTo(widget, state.first - layout.rowsInSight);
    if (y >= thumb.top + thumb.height)
        return scrollTo(widget, state.first + layout.rowsInSight);
    state.grip = Grip::Thumb;
    state.gripOffset = y - thumb.top;
}

void toggle(Widget widget, int row)
{
    OutlineRows& rows = stateOf(widget).rows;
    rows.setOpen(row, !rows.at(row).open);
    scrollTo(widget, stateOf(widget).first);
}

void pressRow(Widget widget, const OutlinerLayout& layout, XEvent* event)
{
    OutlinerState& state = stateOf(widget);
    const int place = placeAt(widget, layout, event->xbutton.y);
    if (place < 0)
        return;
    const ShownRow shown = state.rows.shown()[static_cast<std::size_t>(place)];
    const int node = layout.edge + layout.margin / 2 + shown.depth * layout.indent;
    const bool onNode = event->xbutton.x >= node && event->xbutton.x < node + layout.indent;
    if (onNode && !state.rows.at(shown.row).children.empty())
        return toggle(widget, shown.row);
    const Time between = event->xbutton.time - state.pressedAt;
    const bool twice =
        state.pressedRow == shown.row && between < static_cast<Time>(XtGetMultiClickTime(XtDisplay(widget)));
    state.pressedRow = shown.row;
    state.pressedAt = event->xbutton.time;
    if (asOutliner(widget)->kv.multiple && event->xbutton.state & ControlMask)
        return toggleSelected(widget, shown.row, event);
    if (asOutliner(widget)->kv.multiple && event->xbutton.state & ShiftMask)
        return selectRange(widget, shown.row, event);
    selectRow(widget, shown.row, event);
    if (twice)
        call(widget, asOutliner(widget)->kv.defaultActionCallback, XmCR_DEFAULT_ACTION, event, shown.row);
}

void press(Widget widget, XEvent* event, String*, Cardinal*)
{
    XmProcessTraversal(widget, XmTRAVERSE_CURRENT);
    const OutlinerLayout layout = outlinerLayout(widget);
    if (event->xbutton.y < layout.top)
        pressHeading(widget, layout, event);
    else if (event->xbutton.x >= layout.right)
        pressBar(widget, layout, event->xbutton.y);
    else
        pressRow(widget, layout, event);
    redraw(widget);
}

void drag(Widget widget, XEvent* event, String*, Cardinal*)
{
    OutlinerState& state = stateOf(widget);
    const OutlinerLayout layout = outlinerLayout(widget);
    if (state.grip == Grip::ColumnEdge) {
        const int left = columnLeft(widget, layout, state.gripColumn);
        const int wanted = event->xmotion.x - state.gripOffset - left;
        state.columnWidths[static_cast<std::size_t>(state.gripColumn)] = std::clamp(
            wanted, 2 * layout.indent, std::max(2 * layout.indent, layout.right - left - layout.indent));
        redraw(widget);
    } else if (state.grip == Grip::Thumb) {
        const ThumbBox thumb = thumbOf(widget, layout);
        const long hidden = shownCount(widget) - layout.rowsInSight;
        const int wanted = event->xmotion.y - state.gripOffset - layout.top;
        if (thumb.room > 0)
            scrollTo(widget, static_cast<int>(std::max(0, wanted) * hidden / thumb.room));
    }
}

void release(Widget widget, XEvent*, String*, Cardinal*)
{
    stateOf(widget).grip = Grip::Nothing;
    redraw(widget);
}

int numberIn(String* words, const Cardinal* count)
{
    return *count > 0 ? std::atoi(words[0]) : 0;
}

void wheel(Widget widget, XEvent*, String* words, Cardinal* count)
{
    scrollTo(widget, stateOf(widget).first + numberIn(words, count));
}

// A place beyond the ends is the end.
void selectPlace(Widget widget, int place, XEvent* event)
{
    OutlinerState& state = stateOf(widget);
    if (shownCount(widget) == 0)
        return;
    const int kept = std::clamp(place, 0, shownCount(widget) - 1);
    const int row = state.rows.shown()[static_cast<std::size_t>(kept)].row;
    if (asOutliner(widget)->kv.multiple && event->xkey.state & ShiftMask)
        selectRange(widget, row, event);
    else
        selectRow(widget, row, event);
}

int selectedPlace(Widget widget)
{
    return stateOf(widget).rows.placeOf(asOutliner(widget)->kv.selectedRow);
}

void step(Widget widget, XEvent* event, String* words, Cardinal* count)
{
    selectPlace(widget, selectedPlace(widget) + numberIn(words, count), event);
}

void page(Widget widget, XEvent* event, String* words, Cardinal* count)
{
    const int rows = std::max(1, outlinerLayout(widget).rowsInSight - 1);
    selectPlace(widget, selectedPlace(widget) + rows * numberIn(words, count), event);
}

void end(Widget widget, XEvent* event, String* words, Cardinal* count)
{
    selectPlace(widget, numberIn(words, count) < 0 ? 0 : shownCount(widget), event);
}

void openRow(Widget widget, XEvent*, String*, Cardinal*)
{
    const int row = asOutliner(widget)->kv.selectedRow;
    if (stateOf(widget).rows.has(row) && !stateOf(widget).rows.at(row).open)
        toggle(widget, row);
}

void closeRow(Widget widget, XEvent* event, String*, Cardinal*)
{
    const int row = asOutliner(widget)->kv.selectedRow;
    if (!stateOf(widget).rows.has(row))
        return;
    const OutlineRow& present = stateOf(widget).rows.at(row);
    if (present.open && !present.children.empty())
        toggle(widget, row);
    else if (present.parent != noRow)
        selectRow(widget, present.parent, event);
}

void activate(Widget widget, XEvent* event, String*, Cardinal*)
{
    const int row = asOutliner(widget)->kv.selectedRow;
    if (stateOf(widget).rows.has(row))
        call(widget, asOutliner(widget)->kv.defaultActionCallback, XmCR_DEFAULT_ACTION, event, row);
}

bool startsWith(std::string_view text, std::string_view start)
{
    const auto same = [](unsigned char a, unsigned char b) { return std::tolower(a) == std::tolower(b); };
    return text.size() >= start.size() && std::equal(start.begin(), start.end(), text.begin(), same);
}

// From the selected row on, around the end.
void selectTyped(Widget widget, XEvent* event)
{
    OutlinerState& state = stateOf(widget);
    const int count = shownCount(widget), from = std::max(0, selectedPlace(widget));
    // Further characters may still fit the row that the first ones have found.
    const int shift = state.typed.size() > 1 ? 0 : 1;
    for (int i = 0; i < count; ++i) {
        const int row = state.rows.shown()[static_cast<std::size_t>((from + shift + i) % count)].row;
        if (startsWith(state.rows.cell(row, 0), state.typed))
            return selectRow(widget, row, event);
    }
}

void typeAhead(Widget widget, XEvent* event, String*, Cardinal*)
{
    constexpr Time pause = 1000; // milliseconds that begin a new word
    OutlinerState& state = stateOf(widget);
    char text[16] = {};
    const int length = XLookupString(&event->xkey, text, sizeof text - 1, nullptr, nullptr);
    if (length < 1 || !std::isprint(static_cast<unsigned char>(text[0])) ||
        event->xkey.state & (ControlMask | Mod1Mask))
        return;
    if (event->xkey.time - state.typedAt > pause)
        state.typed.clear();
    state.typedAt = event->xkey.time;
    state.typed.append(text, static_cast<std::size_t>(length));
    selectTyped(widget, event);
}

} // namespace

XtActionsRec outlinerActions[] = {
    {"KvOutlinerPress", press},       {"KvOutlinerDrag", drag},     {"KvOutlinerRelease", release},
    {"KvOutlinerWheel", wheel},       {"KvOutlinerStep", step},     {"KvOutlinerPage", page},
    {"KvOutlinerEnd", end},           {"KvOutlinerOpen", openRow},  {"KvOutlinerClose", closeRow},
    {"KvOutlinerActivate", activate}, {"KvOutlinerType", typeAhead}};
const unsigned outlinerActionCount = XtNumber(outlinerActions);

const char outlinerPointerTranslations[] = "<Btn1Down>: KvOutlinerPress()\n"
                                           "<Btn1Motion>: KvOutlinerDrag()\n"
                                           "<Btn1Up>: KvOutlinerRelease()\n"
                                           "<Btn4Down>: KvOutlinerWheel(-3)\n"
                                           "<Btn5Down>: KvOutlinerWheel(3)\n";

const char outlinerKeyTranslations[] = ":<Key>osfUp: KvOutlinerStep(-1)\n"
                                       ":<Key>osfDown: KvOutlinerStep(1)\n"
                                       ":<Key>osfPageUp: KvOutlinerPage(-1)\n"
                                       ":<Key>osfPageDown: KvOutlinerPage(1)\n"
                                       ":<Key>osfBeginLine: KvOutlinerEnd(-1)\n"
                                       ":<Key>osfEndLine: KvOutlinerEnd(1)\n"
                                       ":<Key>osfRight: KvOutlinerOpen()\n"
                                       ":<Key>osfLeft: KvOutlinerClose()\n"
                                       ":<Key>osfActivate: KvOutlinerActivate()\n"
                                       "~s ~m ~a <Key>Return: KvOutlinerActivate()\n"
                                       "s ~m ~a <Key>Tab: PrimitivePrevTabGroup()\n"
                                       "~m ~a <Key>Tab: PrimitiveNextTabGroup()\n"
                                       "<KeyDown>: KvOutlinerType()\n";

} // namespace widgets
