// SPDX-License-Identifier: MIT
// The parts of class records that all classes of the set fill alike. Each class sets what it does
// differently.
#pragma once

#include "gauge/ResourceRows.h"

#include <Xm/ManagerP.h>
#include <Xm/PrimitiveP.h>

#include <memory>
#include <span>
#include <string>

namespace widgets {

inline CoreClassPart corePart(WidgetClass superclass, const char* name, Cardinal recordSize,
                              std::span<XtResource> resources)
{
    CoreClassPart part{};
    part.superclass = superclass;
    part.class_name = const_cast<char*>(name);
    part.widget_size = recordSize;
    part.realize = XtInheritRealize;
    part.resources = resources.data();
    part.num_resources = static_cast<Cardinal>(resources.size());
    part.xrm_class = NULLQUARK;
    part.compress_motion = True;
    part.compress_exposure = XtExposeCompressMaximal;
    part.compress_enterleave = True;
    part.resize = XtInheritResize;
    part.expose = XtInheritExpose;
    part.set_values_almost = XtInheritSetValuesAlmost;
    part.version = XtVersion;
    part.tm_table = XtInheritTranslations;
    part.query_geometry = XtInheritQueryGeometry;
    return part;
}

inline XmPrimitiveClassPart primitivePart()
{
    return {.border_highlight = XmInheritBorderHighlight,
            .border_unhighlight = XmInheritBorderUnhighlight,
            .translations = XtInheritTranslations,
            .arm_and_activate = nullptr,
            .syn_resources = nullptr,
            .num_syn_resources = 0,
            .extension = nullptr};
}

inline CompositeClassPart compositePart(XtGeometryHandler geometryManager, XtWidgetProc changeManaged)
{
    return {.geometry_manager = geometryManager,
            .change_managed = changeManaged,
            .insert_child = XtInheritInsertChild,
            .delete_child = XtInheritDeleteChild,
            .extension = nullptr};
}

inline ConstraintClassPart constraintPart(std::span<XtResource> resources, Cardinal recordSize)
{
    return {.resources = resources.data(),
            .num_resources = static_cast<Cardinal>(resources.size()),
            .constraint_size = recordSize,
            .initialize = nullptr,
            .destroy = nullptr,
            .set_values = nullptr,
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

inline XtResource textRow(const char* name, const char* className, Cardinal offset)
{
    return pointerRow(name, className, XmRString, offset);
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
