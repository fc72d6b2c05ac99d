// SPDX-License-Identifier: MIT
// Parts of class records: resource rows of doubles, and the part that scale and tick objects have in common.
// For the gauge's three classes.
#ifndef GAUGE_CLASSRECORD_H
#define GAUGE_CLASSRECORD_H

#include "gauge/ClassParts.h"
#include "gauge/LinearGaugeP.h"

#include <X11/IntrinsicP.h>
#include <X11/ObjectP.h>
#include <Xm/XmP.h>

#include <span>

// The resource types that registerStringConverters() can make from strings: doubles, enumerations of type
// int, and scales by their name.
inline constexpr char XmRXrtGaDouble[] = "Double";
inline constexpr char XmRXrtGaBorder[] = "XrtGaBorder";
inline constexpr char XmRXrtGaOrientation[] = "XrtGaOrientation";
inline constexpr char XmRXrtGaDirection[] = "XrtGaDirection";
inline constexpr char XmRXrtGaPrecisionUse[] = "XrtGaPrecisionUse";
inline constexpr char XmRXrtGaScale[] = "XrtGaScale";

inline XtResource enumerationRow(const char* name, const char* className, const char* type, Cardinal offset,
                                 int standard)
{
    return immediateRow(name, className, type, sizeof(int), offset, static_cast<XtArgVal>(standard));
}

// standard is read when an object is created.
inline XtResource doubleRow(const char* name, const char* className, Cardinal offset, const double* standard)
{
    return {name,
            className,
            XmRXrtGaDouble,
            sizeof(double),
            offset,
            XmRXrtGaDouble,
            const_cast<double*>(standard)};
}

// Of a class of child objects of the gauge. getValues may be null.
inline ObjectClassPart childClassPart(const char* name, Cardinal recordSize, std::span<XtResource> resources,
                                      XtInitProc initialize, XtSetValuesFunc setValues, XtArgsProc getValues)
{
    return objectPart<ObjectClassPart>(reinterpret_cast<WidgetClass>(&objectClassRec), name, recordSize,
                                       resources,
                                       {.classInitialize = registerStringConverters,
                                        .initialize = initialize,
                                        .destroy = gaugeRelease,
                                        .setValues = setValues,
                                        .getValues = getValues});
}

#endif
