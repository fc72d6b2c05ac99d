// SPDX-License-Identifier: MIT
// Instance and constraint records of the tool bar, for its own file and for subclasses.
#pragma once

#include "widgets/ClassRecord.h"
#include "widgets/KvToolBar.h"

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

extern KvManagerClassRec kvToolBarClassRec;
