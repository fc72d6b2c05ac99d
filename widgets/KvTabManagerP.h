// SPDX-License-Identifier: MIT
// Instance and constraint records of tab manager and tab button, for their own files and for subclasses.
#pragma once

#include "widgets/ClassRecord.h"
#include "widgets/KvTabManager.h"

#include <vector>

struct KvTabManagerPart {
    Widget currentPage;
    Dimension marginWidth, marginHeight;
    XtCallbackList changedCallback, closeCallback, reorderCallback;

    std::vector<Widget>* pages; // left to right; owned
};

struct KvTabManagerRec {
    CorePart core;
    CompositePart composite;
    ConstraintPart constraint;
    XmManagerPart manager;
    KvTabManagerPart kv;
};

struct KvTabManagerConstraintPart {
    char* text; // a copy
    Boolean closable;
    Widget tab; // of a page; null for a tab itself
};

struct KvTabManagerConstraintRec {
    XmManagerConstraintPart manager;
    KvTabManagerConstraintPart kv;
};

struct KvTabButtonPart {
    char* text;                // a copy
    XmRenderTable renderTable; // a copy
    Boolean closable, selected;
    Pixel accentColor;
    Widget page; // whose tab it is

    Boolean entered, pressedOnCross, dragged;
};

struct KvTabButtonRec {
    CorePart core;
    XmPrimitivePart primitive;
    KvTabButtonPart kv;
};

extern KvManagerClassRec kvTabManagerClassRec;
extern KvPrimitiveClassRec kvTabButtonClassRec;

#define XmNkvTabSelected "kvTabSelected"
#define XmNkvTabPage "kvTabPage"

// What a tab asks of its manager.
namespace widgets {

void tabSelected(Widget page, XEvent* event);
void tabClosed(Widget page, XEvent* event);
// The pointer drags the tab: x in the manager's frame.
void tabDragged(Widget page, int x);
void tabDropped(Widget page, XEvent* event);
// Keys: the neighbour at that distance, -1 or 1, is shown; or the tab changes places with it.
void neighbourSelected(Widget page, int distance, XEvent* event);
void tabMoved(Widget page, int distance, XEvent* event);

} // namespace widgets
