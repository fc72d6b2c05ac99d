// SPDX-License-Identifier: MIT
#include <X11/IntrinsicP.h>
// IntrinsicP.h must come before CoreP.h.
#include <X11/CoreP.h>

#include "platform/imagewindow/canvas/Canvas.h"

namespace viewer {

namespace {

struct CanvasPart {
    XtCallbackList exposed;
};

struct CanvasRecord {
    CorePart core;
    CanvasPart canvas;
};

struct CanvasClassPart {
    XtPointer extension;
};

struct CanvasClassRecord {
    CoreClassPart core;
    CanvasClassPart canvas;
};

XtResource resources[] = {
    {exposeCallback, XtCCallback, XtRCallback, sizeof(XtCallbackList),
     XtOffsetOf(CanvasRecord, canvas.exposed), XtRCallback, nullptr},
};

void realize(Widget widget, XtValueMask* mask, XSetWindowAttributes* attributes);
void expose(Widget widget, XEvent* event, Region region);

CanvasClassRecord canvasClassRecord = {
    .core =
        {
            .superclass = &widgetClassRec,
            .class_name = const_cast<char*>("Canvas"),
            .widget_size = sizeof(CanvasRecord),
            .class_initialize = nullptr,
            .class_part_initialize = nullptr,
            .class_inited = False,
            .initialize = nullptr,
            .initialize_hook = nullptr,
            .realize = realize,
            .actions = nullptr,
            .num_actions = 0,
            .resources = resources,
            .num_resources = XtNumber(resources),
            .xrm_class = NULLQUARK,
            .compress_motion = True,
            .compress_exposure = XtExposeCompressMultiple,
            .compress_enterleave = True,
            .visible_interest = False,
            .destroy = nullptr,
            .resize = nullptr,
            .expose = expose,
            .set_values = nullptr,
            .set_values_hook = nullptr,
            .set_values_almost = XtInheritSetValuesAlmost,
            .get_values_hook = nullptr,
            .accept_focus = nullptr,
            .version = XtVersion,
            .callback_private = nullptr,
            .tm_table = nullptr,
            .query_geometry = XtInheritQueryGeometry,
            .display_accelerator = nullptr,
            .extension = nullptr,
        },
    .canvas = {.extension = nullptr},
};

// Without a background the server does not clear the window before the image is copied into it: no flicker.
void realize(Widget widget, XtValueMask* mask, XSetWindowAttributes* attributes)
{
    attributes->background_pixmap = None;
    *mask = (*mask & ~static_cast<XtValueMask>(CWBackPixel)) | CWBackPixmap;
    widgetClass->core_class.realize(widget, mask, attributes);
}

void expose(Widget widget, XEvent* /*event*/, Region region)
{
    CanvasExposure exposure{region};
    XtCallCallbacks(widget, exposeCallback, &exposure);
}

} // namespace

const WidgetClass canvasWidgetClass = reinterpret_cast<WidgetClass>(&canvasClassRecord);

} // namespace viewer
