// SPDX-License-Identifier: MIT
// The tool window: settings row, plot between its two axes, message line and button row. One instance, made
// at start-up; its widgets live until exit.
#pragma once

#include <X11/Intrinsic.h>

struct ToolWindow {
    Widget toolShell; // top-level shell
    Widget toolFrame; // holds the message area; placed beside the image
    Widget intensityGauge, intensityScale, intensityTicks;
    Widget distanceGauge, distanceScale, distanceTicks;
};
extern ToolWindow toolWindow;

// Makes the window and all its controls, and tells segment, profile and saved profiles which widgets are
// theirs.
void buildToolWindow();

// Ties the plot and its axes together. To be called when the window is shown: only then do all of them have
// their places in the form.
void attachAxes();
