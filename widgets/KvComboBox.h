// SPDX-License-Identifier: MIT
/* Combo box: XmComboBox with sizes that follow the resolution and items as one string. All other resources
 * and callbacks are XmComboBox's.
 *
 *  resource           type           default            meaning
 *  XmNkvItems         String         NULL               the items, separated by '|': "Left|Right"; setting it
 *                                                       replaces all and selects the first
 *  XmNcomboBoxType    unsigned char  XmDROP_DOWN_LIST
 *  XmNpositionMode    XtEnum         XmZERO_BASED
 *  XmNarrowSize       Dimension      15 *
 *  XmNarrowSpacing    Dimension      3 *
 *
 *  * in pixels of 96 dots per inch, follows Xft.dpi
 */
#pragma once

#include <X11/Intrinsic.h>

#ifdef __cplusplus
extern "C" {
#endif

extern WidgetClass xmKvComboBoxWidgetClass; /* class name XmKvComboBox */

#define XmNkvItems "kvItems"

Widget XmCreateKvComboBox(Widget parent, const char* name, ArgList args, Cardinal count);

#ifdef __cplusplus
}
#endif
