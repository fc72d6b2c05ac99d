// SPDX-License-Identifier: MIT
// Registration of the running tool: its shell carries its title, image windows know it, and it can be asked
// to end.
#include "platform/include/KVRunUtils.h"
#include "platform/iwl/Session.h"
#include "platform/protocol/XProtocol.h"
#include "platform/wmenh/MainWindow.h"
#include "platform/wmenh/Toolkit.h"

#include <Xm/Protocols.h>

using namespace wmenh;

namespace {

// The suite knows a process as one tool.
XtCallbackProc quitProcedure = nullptr;

void closeRequested(Widget shell, XtPointer, XtPointer)
{
    if (quitProcedure)
        quitProcedure(shell, nullptr, nullptr);
}

void clientMessage(Widget shell, XtPointer, XEvent* event, Boolean*)
{
    if (event->type == ClientMessage && event->xclient.message_type == protocol::atoms(XtDisplay(shell)).quit)
        closeRequested(shell, nullptr, nullptr);
}

} // namespace

int KVRunRegisterPgm(const char* title, Widget given, XtCallbackProc quit)
{
    const Widget shell = given ? given : toolkit().shell;
    Display* const display = XtDisplay(shell);
    const bool first = quitProcedure == nullptr;
    quitProcedure = quit;
    if (first && shell == mainShell()) {
        setCloseProcedure(closeRequested);
    } else if (first) {
        XtVaSetValues(shell, XmNdeleteResponse, XmDO_NOTHING, nullptr);
        XmAddWMProtocolCallback(shell, XInternAtom(display, "WM_DELETE_WINDOW", False), closeRequested,
                                nullptr);
    }
    if (first)
        XtAddEventHandler(shell, NoEventMask, True, clientMessage, nullptr);
    if (XtIsRealized(shell))
        for (const iwl::AttachedWindow& window : iwl::attachedWindows())
            protocol::announceTool(display, window.canvas, XtWindow(shell), title);
    return 1;
}
