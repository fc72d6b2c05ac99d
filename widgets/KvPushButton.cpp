// SPDX-License-Identifier: MIT
#include "widgets/KvPushButtonP.h"

#include "widgets/ClassRecord.h"
#include "widgets/PixmapOf.h"

#include <Xm/DrawP.h>

namespace {

KvPushButtonRec* asButton(Widget widget)
{
    return reinterpret_cast<KvPushButtonRec*>(widget);
}

#define BUTTON_FIELD(name) XtOffsetOf(KvPushButtonRec, name)

XtResource resources[] = {
    flagRow(XmNkvFlat, "KvFlat", BUTTON_FIELD(kv.flat), true),
    immediateRow(XmNpixmapPlacement, XmCPixmapPlacement, XmRPixmapPlacement, sizeof(unsigned int),
                 BUTTON_FIELD(label.pixmap_placement), XmPIXMAP_TOP),
    immediateRow(XmNlabelType, XmCLabelType, XmRLabelType, sizeof(unsigned char),
                 BUTTON_FIELD(label.label_type), XmPIXMAP_AND_STRING),
};

void takeColor(Widget widget, GC& gc, Pixel& field, Pixel color)
{
    XtReleaseGC(widget, gc);
    XGCValues values{};
    values.foreground = field = color;
    gc = XtGetGC(widget, GCForeground, &values);
}

// Hides the shadow by giving it the colour of the background: XmPushButton draws it from several places, and
// the colour reaches them all.
void dressShadow(KvPushButtonRec* button)
{
    const Widget widget = reinterpret_cast<Widget>(button);
    const bool shown = !button->kv.flat || (button->kv.entered && XtIsSensitive(widget));
    const Pixel ground = button->core.background_pixel;
    XmPrimitivePart& part = button->primitive;
    takeColor(widget, part.top_shadow_GC, part.top_shadow_color, shown ? button->kv.topShadowColor : ground);
    takeColor(widget, part.bottom_shadow_GC, part.bottom_shadow_color,
              shown ? button->kv.bottomShadowColor : ground);
}

void drawShadow(KvPushButtonRec* button)
{
    const XmPrimitivePart& part = button->primitive;
    const int edge = part.highlight_thickness;
    const bool armed = button->pushbutton.armed;
    XmeDrawShadows(button->core.screen->display, button->core.window, part.top_shadow_GC,
                   part.bottom_shadow_GC, static_cast<Position>(edge), static_cast<Position>(edge),
                   static_cast<Dimension>(button->core.width - 2 * edge),
                   static_cast<Dimension>(button->core.height - 2 * edge), part.shadow_thickness,
                   armed ? XmSHADOW_IN : XmSHADOW_OUT);
}

void notePointer(Widget widget, XtPointer, XEvent* event, Boolean*)
{
    KvPushButtonRec* button = asButton(widget);
    button->kv.entered = event->type == EnterNotify;
    dressShadow(button);
    if (XtIsRealized(widget))
        drawShadow(button);
}

void freeFaded(KvPushButtonRec* button)
{
    if (button->kv.faded == None)
        return;
    XFreePixmap(button->core.screen->display, button->kv.faded);
    button->kv.faded = None;
    button->label.pixmap_insen = XmUNSPECIFIED_PIXMAP;
}

// Motif leaves the picture of an insensitive button as it is.
void fadePixmap(KvPushButtonRec* button)
{
    const bool given = button->label.pixmap != None && button->label.pixmap != XmUNSPECIFIED_PIXMAP;
    if (!given || button->label.pixmap_insen != XmUNSPECIFIED_PIXMAP)
        return;
    button->kv.faded = widgets::fadedPixmap(reinterpret_cast<Widget>(button), button->label.pixmap,
                                            button->core.background_pixel);
    if (button->kv.faded != None)
        button->label.pixmap_insen = button->kv.faded;
}

void initialize(Widget, Widget created, ArgList, Cardinal*)
{
    KvPushButtonRec* button = asButton(created);
    button->kv.entered = False;
    button->kv.topShadowColor = button->primitive.top_shadow_color;
    button->kv.bottomShadowColor = button->primitive.bottom_shadow_color;
    dressShadow(button);
    button->kv.faded = None;
    fadePixmap(button);
    XtInsertEventHandler(created, EnterWindowMask | LeaveWindowMask, False, notePointer, nullptr, XtListTail);
}

Boolean setValues(Widget oldWidget, Widget, Widget widget, ArgList, Cardinal*)
{
    KvPushButtonRec* button = asButton(widget);
    const KvPushButtonRec* old = asButton(oldWidget);
    if (button->primitive.top_shadow_color != old->primitive.top_shadow_color)
        button->kv.topShadowColor = button->primitive.top_shadow_color;
    if (button->primitive.bottom_shadow_color != old->primitive.bottom_shadow_color)
        button->kv.bottomShadowColor = button->primitive.bottom_shadow_color;
    dressShadow(button);
    if (button->label.pixmap != old->label.pixmap ||
        button->core.background_pixel != old->core.background_pixel) {
        freeFaded(button);
        fadePixmap(button);
    }
    return button->kv.flat != old->kv.flat || XtIsSensitive(widget) != XtIsSensitive(oldWidget);
}

void destroy(Widget widget)
{
    freeFaded(asButton(widget));
}

XmPrimitiveClassPart primitive()
{
    XmPrimitiveClassPart part = primitivePart();
    part.arm_and_activate = XmInheritArmAndActivate;
    return part;
}

} // namespace

KvPushButtonClassRec kvPushButtonClassRec = {
    .core_class = corePart(reinterpret_cast<WidgetClass>(&xmPushButtonClassRec), "XmKvPushButton",
                           sizeof(KvPushButtonRec), resources,
                           {.initialize = initialize, .destroy = destroy, .setValues = setValues}),
    .primitive_class = primitive(),
    .label_class = {.setOverrideCallback = XmInheritWidgetProc,
                    .menuProcs = XmInheritMenuProc,
                    .translations = XtInheritTranslations,
                    .extension = nullptr},
    .pushbutton_class = {.extension = nullptr},
    .kv_class = {},
};

WidgetClass xmKvPushButtonWidgetClass = reinterpret_cast<WidgetClass>(&kvPushButtonClassRec);

Widget XmCreateKvPushButton(Widget parent, const char* name, ArgList args, Cardinal count)
{
    return XtCreateWidget(name, xmKvPushButtonWidgetClass, parent, args, count);
}
