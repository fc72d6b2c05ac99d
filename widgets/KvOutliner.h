// SPDX-License-Identifier: MIT
/* Outliner: rows of cells in columns under headings, as a tree. Rows are opened and closed at their nodes; a
 * press on a heading sorts by its column, a second one the other way round; the lines between headings are
 * dragged to resize columns. Only what is in sight is drawn, so that ten thousand rows cost little.
 *
 *  resource                  type            default   meaning
 *  XmNkvHeadings             String          NULL      of the columns, separated by '|': "Name|Size|Date"
 *  XmNkvSortColumn           int             -1        0 the first column; -1: in the order of addition
 *  XmNkvSortDescending       Boolean         False
 *  XmNkvSearch               String          NULL      shows only rows with a cell that holds this text, in
 *                                                      either case, and the rows above them
 *  XmNkvSelectedRow          int             -1        -1: none; of several the one chosen last
 *  XmNkvMultiple             Boolean         False     several rows can be selected: Control and a press adds
 *                                                      a row or takes it away, Shift and a press or a key
 *                                                      selects all from the one before
 *  XmNkvVisibleRows          int             10        rows of the wanted height
 *  XmNkvSelectColor          Pixel           highlightColor
 *  XmNrenderTable            XmRenderTable   dynamic
 *  XmNkvSelectCallback       callback        NULL      the user selects a row
 *  XmNdefaultActionCallback  callback        NULL      double click or osfActivate on a row
 *  XmNkvSortCallback         callback        NULL      the user sorts; row is the column
 *
 * Keys: osfUp, osfDown, osfPageUp, osfPageDown, osfBeginLine, osfEndLine; osfRight opens a row, osfLeft
 * closes it or goes to its parent; osfActivate. Characters that are typed select the next row that begins
 * with them.
 */
#pragma once

#include <X11/Intrinsic.h>

#ifdef __cplusplus
extern "C" {
#endif

extern WidgetClass xmKvOutlinerWidgetClass; /* class name XmKvOutliner */

#define XmNkvHeadings "kvHeadings"
#define XmNkvSortColumn "kvSortColumn"
#define XmNkvSortDescending "kvSortDescending"
#define XmNkvSearch "kvSearch"
#define XmNkvSelectedRow "kvSelectedRow"
#define XmNkvMultiple "kvMultiple"
#define XmNkvVisibleRows "kvVisibleRows"
#define XmNkvSelectColor "kvSelectColor"
#define XmNkvSelectCallback "kvSelectCallback"
#define XmNkvSortCallback "kvSortCallback"

typedef struct {
    int reason; /* XmCR_SINGLE_SELECT, XmCR_DEFAULT_ACTION, XmCR_VALUE_CHANGED for sorting */
    XEvent* event;
    int row;
} XmKvOutlinerCallbackStruct;

Widget XmCreateKvOutliner(Widget parent, const char* name, ArgList args, Cardinal count);

/* Adds a row below the last one of its parent (-1: topmost). Copies count cells. Returns the row's number,
 * which it keeps until all are removed, or -1 where the parent is no row. */
int XmKvOutlinerAdd(Widget outliner, int parent, const char* const* cells, int count);
void XmKvOutlinerClear(Widget outliner);
void XmKvOutlinerSetCell(Widget outliner, int row, int column, const char* text);
void XmKvOutlinerSetOpen(Widget outliner, int row, Boolean open);
/* The cell's text, to be freed with XtFree; NULL where there is no such row. */
char* XmKvOutlinerCell(Widget outliner, int row, int column);
Boolean XmKvOutlinerIsSelected(Widget outliner, int row);
/* How many rows can be scrolled into sight: their parents are open, and they match the search. */
int XmKvOutlinerShownCount(Widget outliner);

#ifdef __cplusplus
}
#endif
