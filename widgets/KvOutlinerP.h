// SPDX-License-Identifier: MIT
// Instance records of the outliner, its geometry, and what its files ask of each other.
#pragma once

#include "widgets/ClassRecord.h"
#include "widgets/KvOutliner.h"
#include "widgets/OutlineRows.h"

#include <set>
#include <string>
#include <vector>

namespace widgets {

// What the pointer holds between press and release.
enum class Grip { Nothing, ColumnEdge, Thumb };

struct OutlinerState {
    OutlineRows rows;
    std::vector<std::string> headings;
    std::vector<int> columnWidths; // pixels; the last one takes the rest of the width
    int first = 0;                 // place of the topmost row in sight
    Grip grip = Grip::Nothing;
    int gripColumn = 0;
    int gripOffset = 0; // from what is held to the pointer
    std::string typed;  // characters of a search by typing
    Time typedAt = 0;   // of the last of them
    Time pressedAt = 0; // of the last press on a row, for double clicks
    int pressedRow = noRow;
    std::set<int> selected; // the selected row among them, unless the program has set it
    int anchor = noRow;     // where a range begins
};

} // namespace widgets

struct KvOutlinerPart {
    char *headings, *search; // copies
    int sortColumn;
    Boolean sortDescending;
    int selectedRow, visibleRows;
    Boolean multiple;
    Pixel selectColor;
    XmRenderTable renderTable; // a copy
    XtCallbackList selectCallback, defaultActionCallback, sortCallback;

    widgets::OutlinerState* state; // owned
};

struct KvOutlinerRec {
    CorePart core;
    XmPrimitivePart primitive;
    KvOutlinerPart kv;
};

extern KvPrimitiveClassRec kvOutlinerClassRec;

namespace widgets {

inline KvOutlinerRec* asOutliner(Widget widget)
{
    return reinterpret_cast<KvOutlinerRec*>(widget);
}

inline OutlinerState& stateOf(Widget widget)
{
    return *asOutliner(widget)->kv.state;
}

// In pixels of the outliner's window.
struct OutlinerLayout {
    int edge;        // focus frame and shadow
    int lineHeight;  // of a row and of the headings
    int margin;      // left and right of a cell
    int indent;      // of a depth; also the side of a node
    int thumbWidth;  // of the scroll bar at the right
    int top;         // of the first row
    int right;       // end of the columns
    int rowsInSight; // at least 1

    int rowTop(int place, int first) const { return top + (place - first) * lineHeight; }
};

OutlinerLayout outlinerLayout(Widget widget);

struct ThumbBox {
    int top, height, room; // room: how far the top can move; 0 when all rows are in sight
};
ThumbBox thumbOf(Widget widget, const OutlinerLayout& layout);

// Left edge of a column, and of what follows the last one.
int columnLeft(Widget widget, const OutlinerLayout& layout, int column);

void drawOutliner(Widget widget);

// Keeps the first row within its limits.
void keepInSight(Widget widget);
// Makes a place the topmost in sight, as far as there are rows, and redraws.
void scrollTo(Widget widget, int first);
// Selects a row and no other, scrolls it into sight and calls the selectCallback.
void selectRow(Widget widget, int row, XEvent* event);
// Adds a row to the selected ones, or takes it away.
void toggleSelected(Widget widget, int row, XEvent* event);
// Selects the rows on the screen from the one before to this one.
void selectRange(Widget widget, int row, XEvent* event);
bool isSelected(Widget widget, int row);
void takeSorting(Widget widget);

extern XtActionsRec outlinerActions[];
extern const unsigned outlinerActionCount;
extern const char outlinerPointerTranslations[];
extern const char outlinerKeyTranslations[];

} // namespace widgets
