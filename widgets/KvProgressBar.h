// SPDX-License-Identifier: MIT
/* Progress bar: what share of a task is done, or that it is under way, with a text inside and a cross to
 * cancel.
 *
 *  resource               type           default         meaning
 *  XmNvalue               int            0               done so far, 0 .. XmNmaximum
 *  XmNmaximum             int            100             the whole; at least 1
 *  XmNkvBusy              Boolean        False           the share is not known: a block runs to and fro
 *  XmNkvText              String         NULL            inside; NULL: the share in percent, none while busy
 *  XmNkvCancelable        Boolean        False           shows the cross; it and the key osfCancel cancel
 *  XmNkvBarColor          Pixel          highlightColor  of the done part
 *  XmNrenderTable         XmRenderTable  dynamic         the text's font
 *  XmNkvCancelCallback    callback       NULL            XmAnyCallbackStruct, reason XmCR_CANCEL
 *
 * It takes the keyboard focus only while it can be canceled.
 */
#pragma once

#include <X11/Intrinsic.h>

#ifdef __cplusplus
extern "C" {
#endif

extern WidgetClass xmKvProgressBarWidgetClass; /* class name XmKvProgressBar */

#define XmNkvBusy "kvBusy"
#define XmNkvText "kvText"
#define XmNkvCancelable "kvCancelable"
#define XmNkvBarColor "kvBarColor"
#define XmNkvCancelCallback "kvCancelCallback"

Widget XmCreateKvProgressBar(Widget parent, const char* name, ArgList args, Cardinal count);

#ifdef __cplusplus
}
#endif
