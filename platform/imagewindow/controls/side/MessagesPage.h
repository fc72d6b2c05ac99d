// SPDX-License-Identifier: MIT
// The page of the side panel with what the window has told, the newest last. Owned by the panel; the widgets
// go with their parent.
#pragma once

#include <X11/Intrinsic.h>

namespace viewer {

struct Desk;

class MessagesPage {
public:
    MessagesPage(Widget parent, Desk& desk);
    Widget widget() const { return scroller; }
    void refresh();

private:
    Desk& desk;
    Widget scroller = nullptr, text = nullptr;
    unsigned long shown = 0; // version of the log
};

} // namespace viewer
