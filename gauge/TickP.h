// SPDX-License-Identifier: MIT
// Instance and class records of the tick object, a child object of the linear gauge. For the gauge's own
// files.
#ifndef GAUGE_TICKP_H
#define GAUGE_TICKP_H

#include "gauge/LinearGaugeP.h"
#include "gauge/TickLayout.h"

#include <X11/ObjectP.h>

struct TickClassPart {
    XtPointer extension;
};

struct TickClassRec {
    ObjectClassPart object_class;
    TickClassPart tick_class;
};

// The colour of marks and labels, and what it was chosen from.
struct TickColor {
    Boolean known;
    Pixel wanted;   // the tick's background
    Pixel ground;   // the gauge's background
    Pixel fallback; // the gauge's foreground
    XColor shown;
};

struct TickPart {
    Widget scale;
    double increment; // these three: the largest finite double when not set
    double start;
    double stop;
    double offset;
    double innerExtent;
    double outerExtent;
    double labelExtent;
    XrtGaLabelFunc labelFunc;
    int precision;
    int precisionUseDefault;
    int tickType;
    Dimension width;
    Boolean automatic;
    Boolean drawLabels;
    Boolean isShowing;
    Pixel background;

    TickColor color;
};

struct TickRec {
    ObjectPart object;
    TickPart tick;
};

extern TickClassRec tickClassRec;

// Draws the marks and labels of one tick object into a drawable that shows the whole gauge. Changes the GC's
// foreground and font.
void drawTicks(TickRec* tick, const LinearGaugeRec* gauge, Drawable drawable, GC gc);

// Increment, start and stop as they are drawn.
gauge::TickSeries computedSeries(const TickRec* tick);

// The width of the gauge where the tick's axis is vertical, else its height, that the tick's labels need; 0
// when it has none. The tick must have a scale.
int wantedThickness(const TickRec* tick, const LinearGaugeRec* gauge);

#endif
