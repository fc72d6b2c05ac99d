// SPDX-License-Identifier: MIT
// Instance, constraint and class records of the aligner, for its own file and for subclasses.
#pragma once

#include "widgets/KvAligner.h"

#include <Xm/ManagerP.h>

struct KvAlignerClassPart {
    XtPointer extension;
};

struct KvAlignerClassRec {
    CoreClassPart core_class;
    CompositeClassPart composite_class;
    ConstraintClassPart constraint_class;
    XmManagerClassPart manager_class;
    KvAlignerClassPart kv_class;
};

struct KvAlignerPart {
    int columns;
    Dimension marginWidth, marginHeight, horizontalSpacing, verticalSpacing;
};

struct KvAlignerRec {
    CorePart core;
    CompositePart composite;
    ConstraintPart constraint;
    XmManagerPart manager;
    KvAlignerPart kv;
};

struct KvAlignerConstraintPart {
    Boolean fill;
    int span;
    unsigned char alignment;
};

struct KvAlignerConstraintRec {
    XmManagerConstraintPart manager;
    KvAlignerConstraintPart kv;
};

extern KvAlignerClassRec kvAlignerClassRec;
