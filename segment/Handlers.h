// SPDX-License-Identifier: MIT
// The image window's button and motion handlers that define the Segment, and what a drag drives besides it.
// The shell installs segmentPress; a press installs the other two and the release removes them.
#pragma once

#include <X11/Intrinsic.h>

// The plot as a drag sees it. The profile lies above the segment and includes it, so the shell, which knows
// both, fills this in before it installs segmentPress. The widgets belong to the shell.
struct SegmentPlot {
    int (*drawProfile)(int copyToWindow); // recompute and redraw the profile
    Widget plotArea;                      // its width is that of the distance axis
    Widget distanceScale;
    Widget distanceTicks;
};
extern SegmentPlot segmentPlot;

// Handlers of button press, pointer motion and button release in the image window. They return 0, which
// nobody reads.
int segmentPress(XEvent* event, void* clientData);
int segmentMotion(XEvent* event, void* clientData);
int segmentRelease(XEvent* event, void* clientData);
