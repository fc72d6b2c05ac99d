// SPDX-License-Identifier: MIT
// Instance records of the combo box, for its own file and for subclasses.
#pragma once

#include "widgets/ClassRecord.h"
#include "widgets/KvComboBox.h"

#include <Xm/ComboBoxP.h>

struct KvComboBoxClassRec {
    CoreClassPart core_class;
    CompositeClassPart composite_class;
    ConstraintClassPart constraint_class;
    XmManagerClassPart manager_class;
    XmComboBoxClassPart combo_box_class;
    KvClassPart kv_class;
};

struct KvComboBoxPart {
    char* items; // a copy
};

struct KvComboBoxRec {
    CorePart core;
    CompositePart composite;
    ConstraintPart constraint;
    XmManagerPart manager;
    XmComboBoxPart combo_box;
    KvComboBoxPart kv;
};

extern KvComboBoxClassRec kvComboBoxClassRec;
