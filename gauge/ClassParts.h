// SPDX-License-Identifier: MIT
// Parts of the class records of Xt and Motif: the rows of a resource table by the kind of their value, and
// what every class fills in alike. For the gauge's classes and for the general widget set.
#ifndef GAUGE_CLASSPARTS_H
#define GAUGE_CLASSPARTS_H

#include <X11/IntrinsicP.h>
#include <X11/ObjectP.h>
#include <Xm/PrimitiveP.h>
#include <Xm/XmP.h>

#include <span>

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

// What a class does itself; what is not named stays with its superclass.
struct ClassMethods {
    XtProc classInitialize = nullptr;
    XtInitProc initialize = nullptr;
    XtWidgetProc destroy = nullptr;
    XtWidgetProc resize = XtInheritResize;
    XtExposeProc expose = XtInheritExpose;
    XtSetValuesFunc setValues = nullptr;
    XtArgsProc getValues = nullptr;
    XtGeometryHandler queryGeometry = XtInheritQueryGeometry;
    std::span<XtActionsRec> actions = {};
    const char* translations = XtInheritTranslations;
};

// The fields that the parts of objects and of widgets have in common. The toolkit keeps the address of the
// resources and writes to them.
template<class Part>
Part objectPart(WidgetClass superclass, const char* name, Cardinal recordSize,
                std::span<XtResource> resources, const ClassMethods& methods)
{
    Part part{};
    part.superclass = superclass;
    part.class_name = name;
    part.widget_size = recordSize;
    part.class_initialize = methods.classInitialize;
    part.initialize = methods.initialize;
    part.resources = resources.data();
    part.num_resources = static_cast<Cardinal>(resources.size());
    part.xrm_class = NULLQUARK;
    part.destroy = methods.destroy;
    part.set_values = methods.setValues;
    part.get_values_hook = methods.getValues;
    part.version = XtVersion;
    return part;
}

inline CoreClassPart corePart(WidgetClass superclass, const char* name, Cardinal recordSize,
                              std::span<XtResource> resources, const ClassMethods& methods)
{
    auto part = objectPart<CoreClassPart>(superclass, name, recordSize, resources, methods);
    part.realize = XtInheritRealize;
    part.actions = methods.actions.data();
    part.num_actions = static_cast<Cardinal>(methods.actions.size());
    part.compress_motion = True;
    part.compress_exposure = XtExposeCompressMaximal;
    part.compress_enterleave = True;
    part.resize = methods.resize;
    part.expose = methods.expose;
    part.set_values_almost = XtInheritSetValuesAlmost;
    part.tm_table = methods.translations;
    part.query_geometry = methods.queryGeometry;
    return part;
}

// translations: for the keys that move the keyboard focus.
inline XmPrimitiveClassPart primitivePart(const char* translations = XtInheritTranslations)
{
    return {.border_highlight = XmInheritBorderHighlight,
            .border_unhighlight = XmInheritBorderUnhighlight,
            .translations = translations,
            .arm_and_activate = nullptr,
            .syn_resources = nullptr,
            .num_syn_resources = 0,
            .extension = nullptr};
}

#endif
