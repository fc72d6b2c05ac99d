// SPDX-License-Identifier: MIT
// Instance and class records of the linear scale, a child object of the linear gauge. For the gauge's own
// files.
#ifndef GAUGE_LINEARSCALEP_H
#define GAUGE_LINEARSCALEP_H

#include "gauge/LinearGaugeP.h"

#include <X11/ObjectP.h>

struct LinearScaleClassPart {
    XtPointer extension;
};

struct LinearScaleClassRec {
    ObjectClassPart object_class;
    LinearScaleClassPart scale_class;
};

struct LinearScalePart {
    Position x;
    Position y;
    Dimension width; // 0: up to the gauge's edge
    Dimension height;
    Boolean allowTransform;
    Boolean debug;
    int direction;
    int orientation;
    double min;
    double max;
    XtCallbackList transformCallback;
};

struct LinearScaleRec {
    ObjectPart object;
    LinearScalePart scale;
};

extern LinearScaleClassRec linearScaleClassRec;

#endif
