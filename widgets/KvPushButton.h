// SPDX-License-Identifier: MIT
/* Push button for tool bars: XmPushButton with pixmap and string, flat until the pointer enters it or it is
 * pressed. All resources and callbacks are XmPushButton's; XmNlabelType is XmPIXMAP_AND_STRING by
 * default, and the pixmap, where there is one, stands above the string.
 *
 *  resource      type      default   meaning
 *  XmNkvFlat     Boolean   True      no shadow until the pointer enters; False: XmPushButton's own look
 */
#pragma once

#include <X11/Intrinsic.h>

#ifdef __cplusplus
extern "C" {
#endif

extern WidgetClass xmKvPushButtonWidgetClass; /* class name XmKvPushButton */

#define XmNkvFlat "kvFlat"

/* Not managed, like all the set's widgets that are created by such a function. */
Widget XmCreateKvPushButton(Widget parent, const char* name, ArgList args, Cardinal count);

#ifdef __cplusplus
}
#endif
