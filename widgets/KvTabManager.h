// SPDX-License-Identifier: MIT
/* Tab manager: pages of which one is shown, each behind a tab. Every managed child is a page and gets a tab
 * button of its own; the user selects, closes and reorders the tabs by pointer and keyboard. Tabs share the
 * width when it is short; their texts end with "..." then.
 *
 *  resource                 type       default   meaning
 *  XmNkvCurrentPage         Widget     NULL      the page that shows; NULL is the first one
 *  XmNmarginWidth           Dimension  4 *       around a page
 *  XmNmarginHeight          Dimension  4 *
 *  XmNvalueChangedCallback  callback   NULL      another page shows
 *  XmNkvCloseCallback       callback   NULL      the user closes a tab; doit False keeps it, else the page is
 *                                                destroyed
 *  XmNkvReorderCallback     callback   NULL      the user has moved a tab
 *
 *  of a child               type       default   meaning
 *  XmNkvTabText             String     NULL      on the tab; NULL: the child's name
 *  XmNkvTabClosable         Boolean    True      the tab has a cross
 *
 *  * in pixels of 96 dots per inch, follows Xft.dpi
 *
 * Keys on a tab: osfLeft and osfRight select the neighbour, with Control they move the tab; osfDelete closes
 * it.
 *
 * The tabs are widgets of the class XmKvTabButton, for the manager's own use. Of theirs, resource files may
 * set XmNkvAccentColor (Pixel, default highlightColor), the line above the selected tab, and XmNrenderTable.
 */
#pragma once

#include <X11/Intrinsic.h>

#ifdef __cplusplus
extern "C" {
#endif

extern WidgetClass xmKvTabManagerWidgetClass; /* class name XmKvTabManager */
extern WidgetClass xmKvTabButtonWidgetClass;  /* class name XmKvTabButton */

#define XmNkvCurrentPage "kvCurrentPage"
#define XmNkvCloseCallback "kvCloseCallback"
#define XmNkvReorderCallback "kvReorderCallback"
#define XmNkvTabText "kvTabText"
#define XmNkvTabClosable "kvTabClosable"
#define XmNkvAccentColor "kvAccentColor"

/* Call data of the three callbacks; the reason is XmCR_VALUE_CHANGED for all. */
typedef struct {
    int reason;
    XEvent* event; /* NULL where the program made the change */
    Widget page;
    Boolean doit; /* of XmNkvCloseCallback; True at first */
} XmKvTabCallbackStruct;

Widget XmCreateKvTabManager(Widget parent, const char* name, ArgList args, Cardinal count);

/* Shows a page; no callback is called. */
void XmKvTabManagerShow(Widget manager, Widget page);

/* The page at a place from the left, 0 the first; NULL beyond the last. */
Widget XmKvTabManagerPage(Widget manager, int place);

#ifdef __cplusplus
}
#endif
