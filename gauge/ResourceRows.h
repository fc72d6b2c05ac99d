// SPDX-License-Identifier: MIT
// The rows of an Xt class's resource table by the kind of their value.
#ifndef GAUGE_RESOURCEROWS_H
#define GAUGE_RESOURCEROWS_H

#include <X11/IntrinsicP.h>
#include <Xm/XmP.h>

inline XtResource immediateRow(const char* name, const char* className, const char* type, Cardinal size,
                               Cardinal offset, XtArgVal standard)
{
    return {name, className, type, size, offset, XmRImmediate, reinterpret_cast<XtPointer>(standard)};
}

inline XtResource flagRow(const char* name, const char* className, Cardinal offset, bool standard)
{
    return immediateRow(name, className, XmRBoolean, sizeof(Boolean), offset, standard);
}

inline XtResource intRow(const char* name, const char* className, Cardinal offset, int standard)
{
    return immediateRow(name, className, XmRInt, sizeof(int), offset, static_cast<XtArgVal>(standard));
}

inline XtResource dimensionRow(const char* name, const char* className, const char* type, Cardinal offset,
                               Dimension standard)
{
    static_assert(sizeof(Dimension) == sizeof(Position));
    return immediateRow(name, className, type, sizeof(Dimension), offset, standard);
}

// Null where nothing is set.
inline XtResource pointerRow(const char* name, const char* className, const char* type, Cardinal offset)
{
    static_assert(sizeof(XtPointer) == sizeof(Pixmap));
    return immediateRow(name, className, type, sizeof(XtPointer), offset, 0);
}

inline XtResource callbackRow(const char* name, Cardinal offset)
{
    return {name, XmCCallback, XmRCallback, sizeof(XtCallbackList), offset, XmRCallback, nullptr};
}

// The value comes from a procedure of type XtResourceDefaultProc.
inline XtResource computedRow(const char* name, const char* className, const char* type, Cardinal size,
                              Cardinal offset, XtResourceDefaultProc standard)
{
    return {name, className, type, size, offset, XmRCallProc, reinterpret_cast<XtPointer>(standard)};
}

#endif
