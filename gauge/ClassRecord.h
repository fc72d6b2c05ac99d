// SPDX-License-Identifier: MIT
// Parts of class records: resource rows of doubles, and the part that scale and tick objects have in common.
// For the gauge's three classes.
#ifndef GAUGE_CLASSRECORD_H
#define GAUGE_CLASSRECORD_H

#include "gauge/LinearGaugeP.h"
#include "gauge/ResourceRows.h"

#include <X11/IntrinsicP.h>
#include <X11/ObjectP.h>
#include <Xm/XmP.h>

#include <span>

// The resource types for which registerStringConverters() knows strings: doubles, enumerations of type int,
// and scales by their name.
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

// Of a class of child objects of the gauge. The procedures may be null.
inline ObjectClassPart childClassPart(const char* name, Cardinal recordSize, std::span<XtResource> resources,
                                      XtInitProc initialize, XtSetValuesFunc setValues, XtArgsProc getValues)
{
    ObjectClassPart part{};
    part.superclass = reinterpret_cast<WidgetClass>(&objectClassRec);
    part.class_name = const_cast<char*>(name);
    part.widget_size = recordSize;
    part.class_initialize = registerStringConverters;
    part.initialize = initialize;
    part.resources = resources.data();
    part.num_resources = static_cast<Cardinal>(resources.size());
    part.xrm_class = NULLQUARK;
    part.destroy = gaugeRelease;
    part.set_values = setValues;
    part.get_values_hook = getValues;
    part.version = XtVersion;
    return part;
}

#endif
