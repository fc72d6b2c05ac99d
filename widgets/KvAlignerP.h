// SPDX-License-Identifier: MIT
// Instance and constraint records of the aligner, for its own file and for subclasses.
#pragma once

#include "widgets/ClassRecord.h"
#include "widgets/KvAligner.h"

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

extern KvManagerClassRec kvAlignerClassRec;
