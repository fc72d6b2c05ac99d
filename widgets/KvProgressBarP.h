// SPDX-License-Identifier: MIT
// Instance records of the progress bar, for its own file and for subclasses.
#pragma once

#include "widgets/ClassRecord.h"
#include "widgets/KvProgressBar.h"

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

extern KvPrimitiveClassRec kvProgressBarClassRec;
