// SPDX-License-Identifier: MIT
/* Tool bar: a row of buttons and other controls in groups. Children stand from left to right in the order of
 * their creation, a line between groups. What does not fit is hidden, from the right, and an arrow at the
 * right end opens a menu of it: push buttons and toggle buttons with their present sensitivity and state;
 * other controls can't be in a menu and come back when the bar is wider. The bar is as high as its tallest
 * child.
 *
 *  resource            type        default   meaning
 *  XmNmarginWidth      Dimension   2 *       around the row
 *  XmNmarginHeight     Dimension   2 *
 *  XmNspacing          Dimension   2 *       between neighbours; between groups four times that with the line
 *  XmNkvHiddenCount    int         -         children that are hidden now; can only be read
 *
 *  of a child          type        default   meaning
 *  XmNkvGroup          int         0         a line stands between neighbours of different groups
 *  XmNkvMenuText       String      NULL      text in the menu; NULL: the child's labelString, else its name
 *
 *  * in pixels of 96 dots per inch, follows Xft.dpi
 */
#pragma once

#include <X11/Intrinsic.h>

#ifdef __cplusplus
extern "C" {
#endif

extern WidgetClass xmKvToolBarWidgetClass; /* class name XmKvToolBar */

#define XmNkvHiddenCount "kvHiddenCount"
#define XmNkvGroup "kvGroup"
#define XmNkvMenuText "kvMenuText"

Widget XmCreateKvToolBar(Widget parent, const char* name, ArgList args, Cardinal count);

#ifdef __cplusplus
}
#endif
