// SPDX-License-Identifier: MIT
// Asks another program for text: a selection, converted and read without waiting. The answer is untrusted:
// bounded in bytes and seconds.
#pragma once

#include <X11/Intrinsic.h>

#include <functional>
#include <string>

namespace viewer {

class SelectionText {
public:
    struct Answer {
        std::string text;
        std::string problem; // why there is no text, a clause; empty when there is
    };
    using Take = std::function<void(const Answer& answer)>;

    // shell: realized, and lives as long as this object.
    explicit SelectionText(Widget shell);
    ~SelectionText();
    SelectionText(const SelectionText&) = delete;
    SelectionText& operator=(const SelectionText&) = delete;

    // Calls take once: from the event loop, or never where another question follows before.
    void ask(Atom selection, Atom target, Time time, Take take);

private:
    static void notified(Widget, XtPointer self, XEvent* event, Boolean*);
    void handle(const XSelectionEvent& event);
    Answer readProperty(Atom property);
    void end(const Answer& answer);

    Widget shell;
    Atom place; // property for the answer
    Atom asked = None, askedTarget = None;
    Take waiting;
    XtIntervalId limit = 0;
};

} // namespace viewer
