// SPDX-License-Identifier: MIT
// The picture that the program offers on the clipboard (selection CLIPBOARD, target image/png; the toolkit
// adds TIMESTAMP and MULTIPLE and sends a large one in parts). One per process: it outlives the window whose
// view it is. The program never waits for a peer; one that asks but does not read holds memory until the
// toolkit's time limit.
#pragma once

#include <X11/Intrinsic.h>

#include <cstddef>
#include <vector>

namespace viewer {

class Clipboard {
public:
    Clipboard(XtAppContext context, Display* display);
    ~Clipboard();
    Clipboard(const Clipboard&) = delete;
    Clipboard& operator=(const Clipboard&) = delete;

    // False when the clipboard could not be had. Taken away later, the picture is dropped.
    bool offer(std::vector<std::byte> png);
    // At the end of the program: a clipboard manager, where one runs, takes the picture. Returns after two
    // seconds at the latest.
    void handOver();

private:
    static Boolean convert(Widget, Atom* selection, Atom* target, Atom* type, XtPointer* value,
                           unsigned long* length, int* format);
    static void lose(Widget, Atom* selection);
    static void answered(Widget, XtPointer client, XEvent* event, Boolean*);

    XtAppContext context;
    Display* display;
    Widget owner; // never shown
    Atom clipboard, manager, targets, saveTargets, png;
    std::vector<std::byte> picture; // empty: not ours
    bool managerAnswered = false;
};

} // namespace viewer
