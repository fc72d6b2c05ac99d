// SPDX-License-Identifier: MIT
/* Tips: a short text beside the pointer while it rests on a widget, of any class: buttons, drawing areas and
 * managers too. A tip follows the font of its surroundings and stays on the screen.
 *
 * XmKvTipSet gives a widget its tip, in place of an earlier one; the text is in the encoding of the locale,
 * may have several lines, and is copied. NULL takes the tip away. The tip goes with its widget. A child
 * without a tip shows that of the nearest parent that has one.
 *
 * Application resources, and resources of the widget:
 *
 *  resource             type     default   meaning
 *  XmNkvTipDelay        int      600       milliseconds of rest before it shows
 *  XmNkvTipBackground   Pixel    #ffffe1
 *  XmNkvTipForeground   Pixel    #101010
 *
 * The tip is a label named "kvTip", whose other resources resource files may set.
 */
#pragma once

#include <X11/Intrinsic.h>

#ifdef __cplusplus
extern "C" {
#endif

#define XmNkvTipDelay "kvTipDelay"
#define XmNkvTipBackground "kvTipBackground"
#define XmNkvTipForeground "kvTipForeground"

void XmKvTipSet(Widget widget, const char* text);

/* The widget's own tip, NULL where it has none; valid until it is set again. */
const char* XmKvTipGet(Widget widget);

#ifdef __cplusplus
}
#endif
