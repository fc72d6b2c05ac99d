// SPDX-License-Identifier: MIT
// Instance, constraint and class records of the tool bar, for its own file and for subclasses.
#pragma once

#include "widgets/KvToolBar.h"

#include <Xm/ManagerP.h>

struct KvToolBarClassPart {
    XtPointer extension;
};

struct KvToolBarClassRec {
    CoreClassPart core_class;
    CompositeClassPart composite_class;
    ConstraintClassPart constraint_class;
    XmManagerClassPart manager_class;
    KvToolBarClassPart kv_class;
};

struct KvToolBarPart {
    Dimension marginWidth, marginHeight, spacing;
    int hiddenCount;
    Widget arrow; // mapped while something is hidden
    Widget menu;  // of what was hidden when it was last opened, or null
};

struct KvToolBarRec {
    CorePart core;
    CompositePart composite;
    ConstraintPart constraint;
    XmManagerPart manager;
    KvToolBarPart kv;
};

struct KvToolBarConstraintPart {
    int group;
    char* menuText; // a copy
    Boolean hidden;
};

struct KvToolBarConstraintRec {
    XmManagerConstraintPart manager;
    KvToolBarConstraintPart kv;
};

extern KvToolBarClassRec kvToolBarClassRec;
