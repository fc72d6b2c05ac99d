// SPDX-License-Identifier: MIT
// The class records of the set, and what its classes do alike. For the set's own files and for subclasses.
#pragma once

#include "gauge/ClassParts.h"

#include <Xm/ManagerP.h>
#include <Xm/PrimitiveP.h>

#include <span>

// The set's own part of each class record; it holds nothing yet.
struct KvClassPart {
    XtPointer extension = nullptr;
};

// Of a class directly below XmPrimitive.
struct KvPrimitiveClassRec {
    CoreClassPart core_class;
    XmPrimitiveClassPart primitive_class;
    KvClassPart kv_class;
};

// Of a class directly below XmManager.
struct KvManagerClassRec {
    CoreClassPart core_class;
    CompositeClassPart composite_class;
    ConstraintClassPart constraint_class;
    XmManagerClassPart manager_class;
    KvClassPart kv_class;
};

namespace widgets {

inline CompositeClassPart compositePart(XtGeometryHandler geometryManager, XtWidgetProc changeManaged)
{
    return {.geometry_manager = geometryManager,
            .change_managed = changeManaged,
            .insert_child = XtInheritInsertChild,
            .delete_child = XtInheritDeleteChild,
            .extension = nullptr};
}

// What a manager keeps for each child.
struct ConstraintMethods {
    std::span<XtResource> resources = {};
    Cardinal recordSize = sizeof(XmManagerConstraintRec);
    XtInitProc initialize = nullptr;
    XtWidgetProc destroy = nullptr;
    XtSetValuesFunc setValues = nullptr;
};

inline ConstraintClassPart constraintPart(const ConstraintMethods& methods)
{
    return {.resources = methods.resources.data(),
            .num_resources = static_cast<Cardinal>(methods.resources.size()),
            .constraint_size = methods.recordSize,
            .initialize = methods.initialize,
            .destroy = methods.destroy,
            .set_values = methods.setValues,
            .extension = nullptr};
}

inline XmManagerClassPart managerPart()
{
    return {.translations = XtInheritTranslations,
            .syn_resources = nullptr,
            .num_syn_resources = 0,
            .syn_constraint_resources = nullptr,
            .num_syn_constraint_resources = 0,
            .parent_process = XmInheritParentProcess,
            .extension = nullptr};
}

inline KvPrimitiveClassRec primitiveClass(const char* name, Cardinal recordSize,
                                          std::span<XtResource> resources, const ClassMethods& methods)
{
    return {.core_class = corePart(reinterpret_cast<WidgetClass>(&xmPrimitiveClassRec), name, recordSize,
                                   resources, methods),
            .primitive_class = primitivePart(),
            .kv_class = {}};
}

inline KvManagerClassRec managerClass(const char* name, Cardinal recordSize, std::span<XtResource> resources,
                                      const ClassMethods& methods, const CompositeClassPart& composite,
                                      const ConstraintMethods& constraint)
{
    return {.core_class = corePart(reinterpret_cast<WidgetClass>(&xmManagerClassRec), name, recordSize,
                                   resources, methods),
            .composite_class = composite,
            .constraint_class = constraintPart(constraint),
            .manager_class = managerPart(),
            .kv_class = {}};
}

inline XtResource textRow(const char* name, const char* className, Cardinal offset)
{
    return pointerRow(name, className, XmRString, offset);
}

// The default of a colour of a primitive: its highlightColor.
inline void highlightColor(Widget widget, int, XrmValue* value)
{
    value->size = sizeof(Pixel);
    value->addr =
        reinterpret_cast<XPointer>(&reinterpret_cast<XmPrimitiveWidget>(widget)->primitive.highlight_color);
}

// Calls a callback list with a record that starts with reason and event.
template<class Data> void callBack(Widget widget, XtCallbackList list, Data data)
{
    XtCallCallbackList(widget, list, &data);
}

// Focus and help, as in every Motif primitive; a class puts its own in front.
inline constexpr char primitiveTranslations[] = "<EnterWindow>: PrimitiveEnter()\n"
                                                "<LeaveWindow>: PrimitiveLeave()\n"
                                                "<FocusIn>: PrimitiveFocusIn()\n"
                                                "<FocusOut>: PrimitiveFocusOut()\n"
                                                ":<Key>osfHelp: PrimitiveHelp()";

// For keys that Motif's traversal takes: a primitive that can be traversed puts those above its class's own.
inline void overrideTranslations(Widget widget, const char* text)
{
    XtOverrideTranslations(widget, XtParseTranslationTable(text));
}

// The frame of the keyboard focus, after a class has drawn the rest.
inline void drawFocus(Widget widget, XEvent* event, Region region)
{
    xmPrimitiveClassRec.core_class.expose(widget, event, region);
}

// Brings the whole window up to date.
inline void redraw(Widget widget)
{
    if (XtIsRealized(widget))
        XtClass(widget)->core_class.expose(widget, nullptr, nullptr);
}

// A text resource is kept as a copy; an empty one and none are the same.
inline void keepCopy(char*& text)
{
    text = XtNewString(text);
}

// After a change: takes the new text and frees the old one. True when they differ.
inline bool takeText(char*& changed, char* old)
{
    if (changed == old)
        return false;
    keepCopy(changed);
    XtFree(old);
    return true;
}

} // namespace widgets
