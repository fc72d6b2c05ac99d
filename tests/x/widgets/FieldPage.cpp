// SPDX-License-Identifier: MIT
// Progress bars, tips and aligned fields.
#include "tests/x/widgets/Gallery.h"
#include "widgets/KvAligner.h"
#include "widgets/KvProgressBar.h"
#include "widgets/KvTip.h"
#include "widgets/Scale.h"

#include <X11/IntrinsicP.h>
#include <Xm/ComboBox.h>
#include <Xm/DrawingA.h>
#include <Xm/Frame.h>
#include <Xm/Label.h>
#include <Xm/PushB.h>
#include <Xm/RowColumn.h>
#include <Xm/TextF.h>
#include <Xm/ToggleB.h>

namespace gallery {

namespace {

Widget addBar(Widget parent, int value, bool busy, const char* text, bool cancelable)
{
    const Widget bar =
        XtVaCreateManagedWidget("bar", xmKvProgressBarWidgetClass, parent, XmNvalue, value, XmNkvBusy, busy,
                                XmNkvText, text, XmNkvCancelable, cancelable, nullptr);
    XtAddCallback(bar, XmNkvCancelCallback, tellCallback, const_cast<char*>("cancel"));
    return bar;
}

Widget addLabel(Widget parent, const char* text)
{
    return XtVaCreateManagedWidget(text, xmLabelWidgetClass, parent, XmNkvAlignment, XmALIGNMENT_END,
                                   nullptr);
}

} // namespace

void progressPage(Widget parent)
{
    addHeading(parent, "Share");
    for (const int value : {0, 42, 100})
        addBar(parent, value, false, nullptr, false);
    addHeading(parent, "Own text, cancel");
    addBar(parent, 55, false, "Plane 55 of 100 of a time series with a long name", true);
    addHeading(parent, "Busy");
    addBar(parent, 0, true, "Reading", true);
    addHeading(parent, "Insensitive");
    XtSetSensitive(addBar(parent, 70, false, nullptr, true), False);
}

void tipPage(Widget parent)
{
    addHeading(parent, "Rest on each");
    const int side = widgets::scaled(parent, 80);
    XmKvTipSet(XtVaCreateManagedWidget("Button", xmPushButtonWidgetClass, parent, nullptr), "A button");
    const Widget area =
        XtVaCreateManagedWidget("area", xmDrawingAreaWidgetClass, parent, XmNwidth, 3 * side, XmNheight, side,
                                XmNbackground, BlackPixelOfScreen(XtScreen(parent)), nullptr);
    XmKvTipSet(area, "A drawing area:\ntwo lines");
    const Widget frame = XtVaCreateManagedWidget("frame", xmFrameWidgetClass, parent, XmNmarginWidth,
                                                 side / 4, XmNmarginHeight, side / 4, nullptr);
    XmKvTipSet(frame, "A manager");
    XtVaCreateManagedWidget("Its child has no tip of its own", xmLabelWidgetClass, frame, nullptr);
}

void alignerPage(Widget parent)
{
    const Widget aligner = XmCreateKvAligner(parent, "aligner", nullptr, 0);
    addLabel(aligner, "File:");
    XtVaCreateManagedWidget("file", xmTextFieldWidgetClass, aligner, XmNkvFill, True, nullptr);
    addLabel(aligner, "Averaging width:");
    XtVaCreateManagedWidget("width", xmTextFieldWidgetClass, aligner, XmNcolumns, 4, nullptr);
    addLabel(aligner, "Large:");
    XtVaCreateManagedWidget("Press\nhere", xmPushButtonWidgetClass, aligner, nullptr);
    addLabel(aligner, "Option:");
    XtVaCreateManagedWidget("on", xmToggleButtonWidgetClass, aligner, nullptr);
    XtVaCreateManagedWidget("Spans both columns", xmPushButtonWidgetClass, aligner, XmNkvSpan, 2,
                            XmNkvAlignment, XmALIGNMENT_CENTER, nullptr);
    XtManageChild(aligner);
}

} // namespace gallery
