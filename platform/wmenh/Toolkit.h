// SPDX-License-Identifier: MIT
// The Xt side of the library: one application context over the connection of libIWL and the one application
// shell, made at the first use so that dialogues work before there is a main window. Both live as long as the
// process. Also the small X helpers that several files of the library need.
#pragma once

#include "platform/base/Placement.h"
#include "platform/text/MotifText.h"
#include "platform/wmenh/Text.h"

#include <Xm/Xm.h>

#include <functional>
#include <string>

namespace wmenh {

using base::Rectangle;
using text::MotifString;

struct Toolkit {
    XtAppContext context = nullptr;
    Display* display = nullptr;
    Widget shell = nullptr; // application shell; the main window's shell once WMInitMainWindow was called
};

// Ends the process with status -1 after a line on standard error when IWAttach has not connected it.
const Toolkit& toolkit();

// Handles events until done() is true. Nests.
void runUntil(const std::function<bool()>& done);

// Pixels of the border that shows the focus, from the resolution that the user's resources give the fonts.
int focusThickness(Display* display);

// A read-only text of several lines in a scrolled window, a child of parent; rows and columns (of average
// characters) are its first size. text is in the encoding of the locale. Returns the text; its parent is the
// scrolled window.
Widget makeScrolledText(Widget parent, const std::string& text, int rows, int columns);

// A client's top-level window and the window manager's frame around it (the window itself where there is
// none), on the screen.
struct TopLevel {
    Window client = None, frame = None;
    Rectangle clientArea, frameArea;
};
// The top level that a window belongs to; client is None when the window is gone.
TopLevel topLevelOf(Display* display, Window window);

// The screen that a widget is on.
Rectangle screenArea(Widget widget);

// Before the shell is shown: puts its frame at (x, y) so that every window manager keeps to it. The shell
// must be realised.
void placeShell(Widget shell, int x, int y);

} // namespace wmenh
