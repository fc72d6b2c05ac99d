// Parts of class records: the rows of a resource table by the kind of their value, and the part that scale
// and tick objects have in common. For the gauge's three classes.
#ifndef GAUGE_CLASSRECORD_H
#define GAUGE_CLASSRECORD_H

#include "gauge/LinearGaugeP.h"

#include <X11/IntrinsicP.h>
#include <X11/ObjectP.h>
#include <Xm/XmP.h>

#include <span>

// The resource type of doubles; see registerDoubleConverter().
inline constexpr char XmRXrtGaDouble[] = "Double";

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

// Of a class of child objects of the gauge. The procedures may be null.
inline ObjectClassPart childClassPart(const char* name, Cardinal recordSize, std::span<XtResource> resources,
                                      XtInitProc initialize, XtSetValuesFunc setValues, XtArgsProc getValues)
{
    ObjectClassPart part{};
    part.superclass = reinterpret_cast<WidgetClass>(&objectClassRec);
    part.class_name = const_cast<char*>(name);
    part.widget_size = recordSize;
    part.class_initialize = registerDoubleConverter;
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
