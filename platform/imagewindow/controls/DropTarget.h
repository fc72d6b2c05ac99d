// SPDX-License-Identifier: MIT
// Takes what other programs drop on a window, by version 5 of the drag-and-drop protocol of X (XDND). Sources
// are untrusted: nothing waits for one, and what it sends is bounded by SelectionText.
#pragma once

#include "platform/imagewindow/controls/SelectionText.h"

#include <X11/Intrinsic.h>

namespace viewer {

class DropTarget {
public:
    // shell: realized, and lives as long as this object. take: called from the event loop with the dropped
    // text: URIs or paths a line, or why it could not be had.
    DropTarget(Widget shell, SelectionText::Take take);
    ~DropTarget();
    DropTarget(const DropTarget&) = delete;
    DropTarget& operator=(const DropTarget&) = delete;

private:
    struct Atoms {
        explicit Atoms(Display* display);
        Atom aware, enter, position, status, leave, drop, finished, selection, copy, typeList;
    };
    static void messageCame(Widget, XtPointer self, XEvent* event, Boolean*);
    void handle(const XClientMessageEvent& message);
    void entered(const XClientMessageEvent& message);
    void dropped(const XClientMessageEvent& message);
    void answer(Window to, Atom type, long flags);

    Widget shell;
    Atoms atoms;
    SelectionText text;
    SelectionText::Take take;
    Window source = None; // that drags over the window now
    Atom offered = None;  // the type that is asked for; None: the source has none of ours
};

} // namespace viewer
