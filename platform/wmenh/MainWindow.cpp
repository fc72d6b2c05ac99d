// SPDX-License-Identifier: MIT
#include "platform/wmenh/MainWindow.h"

#include "platform/include/WMEnh.h"
#include "platform/iwl/Session.h"
#include "platform/wmenh/Keyboard.h"
#include "platform/wmenh/Toolkit.h"

#include <Xm/Form.h>
#include <Xm/Protocols.h>
#include <Xm/Separator.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <optional>

namespace wmenh {
namespace {

constexpr int margin = 10;          // pixels around the rows and around the message area
constexpr int smallestCanvas = 120; // pixels: what a plot keeps when the user makes the window small

// The one main window. Rows refer to widgets of the shell, which lives as long as the process.
bool shellResize = false;
Widget frame = nullptr;
std::optional<RowLayout> mainRows, messageRows;
bool inMessageArea = false;
XtCallbackProc closeProcedure = nullptr;
bool closed = false;

void closeWindow(Widget shell, XtPointer, XtPointer)
{
    if (closeProcedure)
        closeProcedure(shell, nullptr, nullptr);
    else
        closed = true;
}

// A form of rows in the frame. The margin is outside of it: within, attachments to the form mean its very
// edge.
Widget makeForm(Widget parent, const char* name)
{
    return XtVaCreateWidget(name, xmFormWidgetClass, parent, XmNhorizontalSpacing, 0, XmNverticalSpacing, 0,
                            XmNleftAttachment, XmATTACH_FORM, XmNleftOffset, margin, XmNrightAttachment,
                            XmATTACH_FORM, XmNrightOffset, margin, XmNbottomAttachment, XmATTACH_FORM,
                            XmNbottomOffset, margin, nullptr);
}

// Keeps the user from making the window so small that controls are cut off.
void limitSize(Widget shell)
{
    Dimension height = 0;
    XtVaGetValues(shell, XmNheight, &height, nullptr);
    int width = mainRows->neededWidth(smallestCanvas);
    if (messageRows)
        width = std::max(width, messageRows->neededWidth(smallestCanvas));
    const int spare = std::max(0, mainRows->canvasHeight() - smallestCanvas);
    XtVaSetValues(shell, XmNminWidth, width + 2 * margin, XmNminHeight, height - spare, nullptr);
}

// Timeout. Showing waits for the event loop because programs go on changing attachments after WMDisplay: a
// window manager that is just taking the window over loses the resizing that comes of that.
void show(XtPointer, XtIntervalId*)
{
    limitSize(mainShell());
    // From now on the size is the user's: a control that asks for another size must not shrink the window.
    for (const Widget form : {frame, mainRows->parent(), messageRows ? messageRows->parent() : frame})
        XtVaSetValues(form, XmNresizePolicy, XmRESIZE_GROW, nullptr);
    XtMapWidget(mainShell());
}

} // namespace

RowLayout& currentRows()
{
    if (!mainRows) {
        fprintf(stderr, "%s: a control was added before WMInitMainWindow.\n", iwl::programName().c_str());
        std::exit(-1);
    }
    return inMessageArea ? *messageRows : *mainRows;
}

Widget mainShell()
{
    return frame ? toolkit().shell : nullptr;
}

void setCloseProcedure(XtCallbackProc proc)
{
    closeProcedure = proc;
}

void realiseMainWindow()
{
    const Widget shell = mainShell();
    if (!shell || XtIsRealized(shell))
        return;
    mainRows->newRow();
    completeKeyboard(mainRows->parent());
    if (messageRows)
        completeKeyboard(messageRows->parent());
    XtManageChild(mainRows->parent());
    XtManageChild(frame);
    XtRealizeWidget(shell);
}

} // namespace wmenh

using namespace wmenh;

void WMSetShellResize(int allow)
{
    shellResize = allow != 0;
    if (mainShell())
        XtVaSetValues(mainShell(), XmNallowShellResize, shellResize, nullptr);
}

Widget WMInitMainWindow(const char* title)
{
    if (frame)
        return mainRows->parent();
    const Widget shell = toolkit().shell;
    XtVaSetValues(shell, XmNtitle, title, XmNiconName, title, XmNallowShellResize, shellResize, nullptr);
    XmAddWMProtocolCallback(shell, XInternAtom(XtDisplay(shell), "WM_DELETE_WINDOW", False), closeWindow,
                            nullptr);
    frame = XtVaCreateWidget("frame", xmFormWidgetClass, shell, nullptr);
    const Widget form = makeForm(frame, "rows");
    XtVaSetValues(form, XmNtopAttachment, XmATTACH_FORM, XmNtopOffset, margin, nullptr);
    mainRows.emplace(form);
    return form;
}

void WMAdjustToFixedFont(int on)
{
    // Rows are laid out by the sizes that the controls report, whatever their font: there is nothing to
    // adjust.
    static_cast<void>(on);
}

void WMNewRow(void)
{
    currentRows().newRow();
}

void WMSetOffset(int left, int right, int top, int bottom)
{
    currentRows().setOffset(left, right, top, bottom);
}

void WMAttachRightSide(void)
{
    currentRows().attachRightSide();
}

void WMStartMainWindowMessageAreaForm(Widget parent)
{
    if (messageRows)
        return;
    currentRows().newRow();
    const Widget area = makeForm(parent, "messageArea");
    const Widget line =
        XtVaCreateManagedWidget("separator", xmSeparatorWidgetClass, parent, XmNbottomAttachment,
                                XmATTACH_WIDGET, XmNbottomWidget, area, XmNbottomOffset, margin,
                                XmNleftAttachment, XmATTACH_FORM, XmNrightAttachment, XmATTACH_FORM, nullptr);
    XtVaSetValues(mainRows->parent(), XmNbottomAttachment, XmATTACH_WIDGET, XmNbottomWidget, line, nullptr);
    messageRows.emplace(area);
    inMessageArea = true;
}

void WMEndMainWindowMessageAreaForm(void)
{
    if (!inMessageArea)
        return;
    messageRows->newRow();
    XtManageChild(messageRows->parent());
    inMessageArea = false;
}

void WMDisplay(void)
{
    realiseMainWindow();
    if (mainShell())
        XtAppAddTimeOut(toolkit().context, 0, show, nullptr);
}

void WMAppMainLoop(void)
{
    runUntil([] { return closed; });
}
