// SPDX-License-Identifier: MIT
// Instance and class records of the progress bar, for its own file and for subclasses.
#pragma once

#include "widgets/KvProgressBar.h"

#include <Xm/PrimitiveP.h>

struct KvProgressBarClassPart {
    XtPointer extension;
};

struct KvProgressBarClassRec {
    CoreClassPart core_class;
    XmPrimitiveClassPart primitive_class;
    KvProgressBarClassPart kv_class;
};

struct KvProgressBarPart {
    int value, maximum;
    Boolean busy, cancelable;
    char* text;                // a copy
    XmRenderTable renderTable; // a copy
    Pixel barColor;
    XtCallbackList cancelCallback;

    XtIntervalId timer; // while busy
    int step;           // of the running block
    Boolean pressed;    // button 1 went down on the cross
};

struct KvProgressBarRec {
    CorePart core;
    XmPrimitivePart primitive;
    KvProgressBarPart kv;
};

extern KvProgressBarClassRec kvProgressBarClassRec;
