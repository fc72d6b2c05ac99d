// SPDX-License-Identifier: MIT
// Instance and class records of the linear gauge, and what its child objects ask of it. For the gauge's own
// files and for subclasses. The gauge owns the two lists of children, the render table, the pixmap and the
// GC.
#ifndef GAUGE_LINEARGAUGEP_H
#define GAUGE_LINEARGAUGEP_H

#include "gauge/XrtGauge.h"

#include <Xm/PrimitiveP.h>
#include <Xm/XmP.h>

struct LinearGaugeClassPart {
    XtPointer extension;
};

struct LinearGaugeClassRec {
    CoreClassPart core_class;
    XmPrimitiveClassPart primitive_class;
    LinearGaugeClassPart gauge_class;
};

struct LinearGaugePart {
    int border;
    Boolean debug;
    Boolean doubleBuffer;
    Boolean repaint;
    Boolean useRenderList;
    XtCallbackList exposeCallback;
    XtCallbackList interactionCallback;
    XtCallbackList mapCallback;
    XtCallbackList resizeCallback;
    Widget frame;
    Pixmap image;
    int imageLayout;
    WidgetList scales; // these two: owned, NULL at the end
    WidgetList ticks;
    WidgetList indicators;
    WidgetList ranges;
    WidgetList texts;
    WidgetList renderList;
    XtPointer userInteractionData;
    XmRenderTable renderTable;

    GC gc;             // made with the first drawing
    Pixmap buffer;     // of the widget's size, None until the first drawing at that size
    Boolean bufferOld; // the buffer no longer shows what the resources say
};

struct LinearGaugeRec {
    CorePart core;
    XmPrimitivePart primitive;
    LinearGaugePart gauge;
};

extern LinearGaugeClassRec linearGaugeClassRec;

// The gauge that an object belongs to, or null when its parent is none.
LinearGaugeRec* gaugeOf(Widget object);

// Enters a new scale or tick into its gauge's list, with a warning when its parent is no gauge, and takes it
// out again. A tick whose scale goes has none then.
void gaugeAdopt(Widget object);
void gaugeRelease(Widget object);

// Repaints the gauge after a change of one of its objects, at once where the gauge is on the screen.
void gaugeChanged(Widget object);

// Registers the converters from strings to the types of ClassRecord.h; a second call does nothing.
void registerStringConverters();

#endif
