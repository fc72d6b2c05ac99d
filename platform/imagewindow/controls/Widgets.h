// SPDX-License-Identifier: MIT
// Small helpers for Motif widgets that several parts of the window share.
#pragma once

#include "platform/imagewindow/view/Palette.h"
#include "platform/imagewindow/view/TextFlow.h"
#include "platform/imagewindow/view/View.h"

#include <X11/Intrinsic.h>

#include <string>

namespace viewer {

// The pixel of a colour in the widget's colormap; white when none is free.
Pixel allocateColor(Widget widget, const Rgb& color);

// Pixels, at least 1 x 1.
Size sizeOf(Widget widget);

// Shows a dialogue in front of all others, with the keyboard: also one that is up already, behind another
// window.
void bringForward(Widget dialogue);

// Sets the text of a label, button or toggle.
void setLabel(Widget label, const std::string& utf8);

// How wide a text is in the font of a label, and how high a line of it; screen pixels. Ask no longer than the
// label lives.
Measure measureOf(Widget label);
int lineHeightOf(Widget label);

} // namespace viewer
