// SPDX-License-Identifier: MIT
// Instance records of the push button, for its own file and for subclasses.
#pragma once

#include "widgets/ClassRecord.h"
#include "widgets/KvPushButton.h"

#include <Xm/LabelP.h>
#include <Xm/PushBP.h>

struct KvPushButtonClassRec {
    CoreClassPart core_class;
    XmPrimitiveClassPart primitive_class;
    XmLabelClassPart label_class;
    XmPushButtonClassPart pushbutton_class;
    KvClassPart kv_class;
};

struct KvPushButtonPart {
    Boolean flat;
    Pixmap faded;    // of an insensitive button, None until it is needed or where one was given
    Boolean entered; // the pointer is inside
    Pixel topShadowColor, bottomShadowColor; // as they are when the shadow shows
};

struct KvPushButtonRec {
    CorePart core;
    XmPrimitivePart primitive;
    XmLabelPart label;
    XmPushButtonPart pushbutton;
    KvPushButtonPart kv;
};

extern KvPushButtonClassRec kvPushButtonClassRec;
