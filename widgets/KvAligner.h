// SPDX-License-Identifier: MIT
/* Aligner: labels and fields in columns, row by row. Children fill the cells from left to right and top to
 * bottom in the order of their creation. Each column is as wide as its widest child; the texts of a row stand
 * on one baseline, whatever stands around them; what has no text stands in the middle of its row. Width to
 * spare goes to the columns that have a child with XmNkvFill.
 *
 *  resource            type            default     meaning
 *  XmNkvColumns        int             2           columns
 *  XmNmarginWidth      Dimension       4 *         around all
 *  XmNmarginHeight     Dimension       4 *
 *  XmNhorizontalSpacing Dimension      8 *         between columns
 *  XmNverticalSpacing  Dimension       4 *         between rows
 *
 *  of a child          type            default     meaning
 *  XmNkvFill           Boolean         False       takes the whole width of its columns, which may grow
 *  XmNkvSpan           int             1           columns that it covers
 *  XmNkvAlignment      unsigned char   XmALIGNMENT_BEGINNING   its place where its columns are wider;
 *                                                  XmALIGNMENT_END suits labels before fields
 *
 *  * in pixels of 96 dots per inch, follows Xft.dpi
 */
#pragma once

#include <X11/Intrinsic.h>

#ifdef __cplusplus
extern "C" {
#endif

extern WidgetClass xmKvAlignerWidgetClass; /* class name XmKvAligner */

#define XmNkvColumns "kvColumns"
#define XmNkvFill "kvFill"
#define XmNkvSpan "kvSpan"
#define XmNkvAlignment "kvAlignment"

Widget XmCreateKvAligner(Widget parent, const char* name, ArgList args, Cardinal count);

#ifdef __cplusplus
}
#endif
