// SPDX-License-Identifier: MIT
// Shows each class of the set in each of its states, one page a class, and tells on standard output what the
// user does with it, one line an event. For the eye and for the tests.
#pragma once

#include "widgets/picture/VectorFile.h"

#include <Xm/Xm.h>

#include <string>

namespace gallery {

// Fills a page; the parent is a column of rows.
using Page = void (*)(Widget parent);

void alignerPage(Widget parent);
void buttonPage(Widget parent);
void comboPage(Widget parent);
void outlinerPage(Widget parent);
void picturePage(Widget parent);
void progressPage(Widget parent);
void tabPage(Widget parent);
void tipPage(Widget parent);

// A line on standard output, at once.
void tell(const std::string& line);

// A callback that tells its client data, a constant text.
void tellCallback(Widget widget, XtPointer text, XtPointer callData);

// A label above what follows.
void addHeading(Widget parent, const char* text);

// A drawing in a square of 16 points, in pixels of the screen's resolution over the background of a widget.
Pixmap icon(Widget widget, const picture::Drawing& draw);

} // namespace gallery
