// SPDX-License-Identifier: MIT
// Instance and class records of the linear gauge, and what its child objects ask of it. For the gauge's own
// files and for subclasses. The gauge owns the two lists of children, the render table, the pixmap and the
// GC.
#ifndef GAUGE_LINEARGAUGEP_H
#define GAUGE_LINEARGAUGEP_H

#include "gauge/XrtGauge.h"

#include <Xm/PrimitiveP.h>
#include <Xm/XmP.h>

#include <cstddef>
#include <span>

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

// The objects of a list that ends with NULL; none where the list itself is NULL. Valid until the list
// changes.
inline std::span<Widget> itemsOf(WidgetList list)
{
    std::size_t count = 0;
    while (list && list[count])
        ++count;
    return {list, count};
}

// Puts back the two lists that only the gauge may change, with a warning, when a program has set them.
void gaugeKeepLists(LinearGaugeRec* gauge, const LinearGaugeRec* old);

// The toolkit destroys the children of composite widgets only, so the gauge destroys its own. Each of them
// takes itself out of its list.
void gaugeDestroyChildren(LinearGaugeRec* gauge);

// Brings a part of the window up to date, in pixels of the gauge. The gauge must be realised.
void gaugePaint(LinearGaugeRec* gauge, int x, int y, int width, int height);

// After a change: draws everything anew, now if the gauge is on the screen, else when it is next exposed.
void gaugeRepaint(LinearGaugeRec* gauge);

// The pixmap and the GC; the next drawing makes them again.
void gaugeFreeBuffer(LinearGaugeRec* gauge);
void gaugeFreeGC(LinearGaugeRec* gauge);

// Registers the converters from strings to the types of ClassRecord.h; a second call does nothing.
void registerStringConverters();

#endif
