// SPDX-License-Identifier: MIT
#include "gauge/ClassRecord.h"
#include "gauge/LinearGaugeP.h"
#include "gauge/LinearScaleP.h"
#include "gauge/TickP.h"

#include <Xm/DrawP.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <string>
#include <vector>

namespace {

constexpr Dimension defaultWidth = 60;
constexpr Dimension defaultHeight = 24;

LinearGaugeRec* asGauge(Widget widget)
{
    return reinterpret_cast<LinearGaugeRec*>(widget);
}

Widget asWidget(LinearGaugeRec* gauge)
{
    return reinterpret_cast<Widget>(gauge);
}

// XmNfontList and XmNrenderTable share one field. This default of the second leaves what the first has found.
void keepRenderTable(Widget widget, int, XrmValue* value)
{
    value->size = sizeof(XmRenderTable);
    value->addr = reinterpret_cast<XPointer>(&asGauge(widget)->gauge.renderTable);
}

#define GAUGE_FIELD(name) XtOffsetOf(LinearGaugeRec, gauge.name)

XtResource resources[] = {
    flagRow(XmNtraversalOn, XmCTraversalOn, XtOffsetOf(LinearGaugeRec, primitive.traversal_on), false),
    dimensionRow(XmNhighlightThickness, XmCHighlightThickness, XmRHorizontalDimension,
                 XtOffsetOf(LinearGaugeRec, primitive.highlight_thickness), 0),
    pointerRow(XmNfontList, XmCFontList, XmRFontList, GAUGE_FIELD(renderTable)),
    computedRow(XmNrenderTable, XmCRenderTable, XmRRenderTable, sizeof(XmRenderTable),
                GAUGE_FIELD(renderTable), keepRenderTable),
    enumerationRow(XmNxrtGaBorder, "XrtGaBorder", XmRXrtGaBorder, GAUGE_FIELD(border), XRTGA_BORDER_NONE),
    flagRow(XmNxrtGaDebug, "XrtGaDebug", GAUGE_FIELD(debug), false),
    flagRow(XmNxrtGaDoubleBuffer, "XrtGaDoubleBuffer", GAUGE_FIELD(doubleBuffer), true),
    flagRow(XmNxrtGaRepaint, "XrtGaRepaint", GAUGE_FIELD(repaint), true),
    flagRow(XmNxrtGaUseRenderList, "XrtGaUseRenderList", GAUGE_FIELD(useRenderList), false),
    callbackRow(XmNxrtGaExposeCallback, GAUGE_FIELD(exposeCallback)),
    callbackRow(XmNxrtGaInteractionCallback, GAUGE_FIELD(interactionCallback)),
    callbackRow(XmNxrtGaMapCallback, GAUGE_FIELD(mapCallback)),
    callbackRow(XmNxrtGaResizeCallback, GAUGE_FIELD(resizeCallback)),
    pointerRow(XmNxrtGaFrame, "XrtGaFrame", XmRWidget, GAUGE_FIELD(frame)),
    pointerRow(XmNxrtGaImage, "XrtGaImage", XmRPixmap, GAUGE_FIELD(image)),
    intRow(XmNxrtGaImageLayout, "XrtGaImageLayout", GAUGE_FIELD(imageLayout), 0),
    pointerRow(XmNxrtGaLinearScaleList, "XrtGaLinearScaleList", XmRWidgetList, GAUGE_FIELD(scales)),
    pointerRow(XmNxrtGaTickList, "XrtGaTickList", XmRWidgetList, GAUGE_FIELD(ticks)),
    pointerRow(XmNxrtGaIndicatorList, "XrtGaIndicatorList", XmRWidgetList, GAUGE_FIELD(indicators)),
    pointerRow(XmNxrtGaRangeList, "XrtGaRangeList", XmRWidgetList, GAUGE_FIELD(ranges)),
    pointerRow(XmNxrtGaTextList, "XrtGaTextList", XmRWidgetList, GAUGE_FIELD(texts)),
    pointerRow(XmNxrtGaRenderList, "XrtGaRenderList", XmRWidgetList, GAUGE_FIELD(renderList)),
    pointerRow(XmNxrtGaUserInteractionData, "XrtGaUserInteractionData", XmRPointer,
               GAUGE_FIELD(userInteractionData)),
};

void initialize(Widget request, Widget created, ArgList args, Cardinal* count);
void destroy(Widget widget);
void resize(Widget widget);
void expose(Widget widget, XEvent* event, Region region);
Boolean setValues(Widget old, Widget request, Widget changed, ArgList args, Cardinal* count);
void getValuesHook(Widget widget, ArgList args, Cardinal* count);
XtGeometryResult queryGeometry(Widget widget, XtWidgetGeometry* proposed, XtWidgetGeometry* wish);

} // namespace

LinearGaugeClassRec linearGaugeClassRec = {
    .core_class = {.superclass = reinterpret_cast<WidgetClass>(&xmPrimitiveClassRec),
                   .class_name = "XmXrtGaLinearGauge",
                   .widget_size = sizeof(LinearGaugeRec),
                   .class_initialize = registerStringConverters,
                   .class_part_initialize = nullptr,
                   .class_inited = False,
                   .initialize = initialize,
                   .initialize_hook = nullptr,
                   .realize = XtInheritRealize,
                   .actions = nullptr,
                   .num_actions = 0,
                   .resources = resources,
                   .num_resources = XtNumber(resources),
                   .xrm_class = NULLQUARK,
                   .compress_motion = True,
                   .compress_exposure = XtExposeCompressMaximal,
                   .compress_enterleave = True,
                   .visible_interest = False,
                   .destroy = destroy,
                   .resize = resize,
                   .expose = expose,
                   .set_values = setValues,
                   .set_values_hook = nullptr,
                   .set_values_almost = XtInheritSetValuesAlmost,
                   .get_values_hook = getValuesHook,
                   .accept_focus = nullptr,
                   .version = XtVersion,
                   .callback_private = nullptr,
                   .tm_table = nullptr,
                   .query_geometry = queryGeometry,
                   .display_accelerator = nullptr,
                   .extension = nullptr},
    .primitive_class = {.border_highlight = XmInheritBorderHighlight,
                        .border_unhighlight = XmInheritBorderUnhighlight,
                        .translations = nullptr,
                        .arm_and_activate = nullptr,
                        .syn_resources = nullptr,
                        .num_syn_resources = 0,
                        .extension = nullptr},
    .gauge_class = {.extension = nullptr},
};

WidgetClass xmXrtGaLinearGaugeWidgetClass = reinterpret_cast<WidgetClass>(&linearGaugeClassRec);

namespace {

bool serverRefused; // set by the error handler while a buffer is made

int noteRefusal(Display*, XErrorEvent*)
{
    serverRefused = true;
    return 0;
}

// None when the server has no room. The server answers a failed creation only later, hence the two round
// trips; they are paid once per size.
Pixmap createBuffer(const LinearGaugeRec* gauge)
{
    Display* display = gauge->core.screen->display;
    XSync(display, False);
    serverRefused = false;
    XErrorHandler previous = XSetErrorHandler(noteRefusal);
    Pixmap buffer =
        XCreatePixmap(display, gauge->core.window, gauge->core.width, gauge->core.height, gauge->core.depth);
    XSync(display, False);
    XSetErrorHandler(previous);
    return serverRefused ? None : buffer;
}

void freeBuffer(LinearGaugeRec* gauge)
{
    if (gauge->gauge.buffer != None)
        XFreePixmap(gauge->core.screen->display, gauge->gauge.buffer);
    gauge->gauge.buffer = None;
}

void createGC(LinearGaugeRec* gauge)
{
    XGCValues values;
    values.graphics_exposures = False; // copying out of the buffer would send a NoExpose event each time
    gauge->gauge.gc =
        XCreateGC(gauge->core.screen->display, gauge->core.window, GCGraphicsExposures, &values);
}

void freeGC(LinearGaugeRec* gauge)
{
    if (gauge->gauge.gc)
        XFreeGC(gauge->core.screen->display, gauge->gauge.gc);
    gauge->gauge.gc = nullptr;
}

void prepareDrawing(LinearGaugeRec* gauge)
{
    LinearGaugePart& part = gauge->gauge;
    if (!part.gc)
        createGC(gauge);
    if (!part.doubleBuffer || part.buffer != None)
        return;
    part.buffer = createBuffer(gauge);
    part.bufferOld = True;
    if (part.buffer == None) {
        std::fputs("Bad pixmap. Double buffering turned off!\n", stderr);
        part.doubleBuffer = False;
    }
}

void drawBorder(LinearGaugeRec* gauge, Drawable drawable)
{
    static constexpr unsigned int shadows[] = {XmSHADOW_IN, XmSHADOW_OUT, XmSHADOW_ETCHED_IN, 0,
                                               XmSHADOW_ETCHED_OUT};
    int border = gauge->gauge.border;
    if (border < 0 || border >= static_cast<int>(std::size(shadows)) || border == XRTGA_BORDER_NONE)
        return;
    XmeDrawShadows(gauge->core.screen->display, drawable, gauge->primitive.top_shadow_GC,
                   gauge->primitive.bottom_shadow_GC, 0, 0, gauge->core.width, gauge->core.height,
                   gauge->primitive.shadow_thickness, shadows[border]);
}

void drawAll(LinearGaugeRec* gauge, Drawable drawable)
{
    Display* display = gauge->core.screen->display;
    XSetForeground(display, gauge->gauge.gc, gauge->core.background_pixel);
    XFillRectangle(display, drawable, gauge->gauge.gc, 0, 0, gauge->core.width, gauge->core.height);
    for (WidgetList tick = gauge->gauge.ticks; tick && *tick; ++tick)
        drawTicks(reinterpret_cast<TickRec*>(*tick), gauge, drawable, gauge->gauge.gc);
    drawBorder(gauge, drawable);
}

// Brings the given part of the window up to date.
void paint(LinearGaugeRec* gauge, int x, int y, int width, int height)
{
    prepareDrawing(gauge);
    LinearGaugePart& part = gauge->gauge;
    if (part.buffer == None) {
        drawAll(gauge, gauge->core.window);
        return;
    }
    if (part.bufferOld)
        drawAll(gauge, part.buffer);
    part.bufferOld = False;
    XCopyArea(gauge->core.screen->display, part.buffer, gauge->core.window, part.gc, x, y, width, height, x,
              y);
}

void repaint(LinearGaugeRec* gauge)
{
    gauge->gauge.bufferOld = True;
    if (gauge->gauge.repaint && !gauge->core.being_destroyed && XtIsRealized(asWidget(gauge)))
        paint(gauge, 0, 0, gauge->core.width, gauge->core.height);
}

Cardinal listLength(WidgetList list)
{
    Cardinal count = 0;
    while (list && list[count])
        ++count;
    return count;
}

void append(WidgetList& list, Widget item)
{
    Cardinal count = listLength(list);
    list = reinterpret_cast<WidgetList>(
        XtRealloc(reinterpret_cast<char*>(list), static_cast<Cardinal>((count + 2) * sizeof(Widget))));
    list[count] = item;
    list[count + 1] = nullptr;
}

void remove(WidgetList& list, Widget item)
{
    Widget* end = list + listLength(list);
    Widget* kept = std::remove(list, end, item);
    if (kept == end)
        return;
    *kept = nullptr;
    if (kept != list)
        return;
    XtFree(reinterpret_cast<char*>(list));
    list = nullptr;
}

WidgetList& listFor(LinearGaugeRec* gauge, Widget object)
{
    return XtIsSubclass(object, xmXrtGaTickObjectClass) ? gauge->gauge.ticks : gauge->gauge.scales;
}

void keepList(Widget widget, WidgetList& changed, WidgetList old, const char* name)
{
    if (changed == old)
        return;
    changed = old;
    XtAppWarningMsg(XtWidgetToApplicationContext(widget), "readOnly", "setValues", "XmXrtGaError",
                    (std::string("The list ") + name + " is kept by the gauge and can't be set.").c_str(),
                    nullptr, nullptr);
}

} // namespace

LinearGaugeRec* gaugeOf(Widget object)
{
    Widget parent = XtParent(object);
    return parent && XtIsSubclass(parent, xmXrtGaLinearGaugeWidgetClass) ? asGauge(parent) : nullptr;
}

void gaugeAdopt(Widget object)
{
    if (LinearGaugeRec* gauge = gaugeOf(object)) {
        append(listFor(gauge, object), object);
        gaugeChanged(object);
        return;
    }
    XtAppWarningMsg(XtWidgetToApplicationContext(object), "parent", "initialize", "XmXrtGaError",
                    "A scale or tick object needs a linear gauge as its parent; it will not be shown.",
                    nullptr, nullptr);
}

void gaugeRelease(Widget object)
{
    LinearGaugeRec* gauge = gaugeOf(object);
    if (!gauge)
        return;
    remove(listFor(gauge, object), object);
    for (WidgetList tick = gauge->gauge.ticks; tick && *tick; ++tick) {
        TickPart& part = reinterpret_cast<TickRec*>(*tick)->tick;
        if (part.scale == object)
            part.scale = nullptr;
    }
    repaint(gauge);
}

void gaugeChanged(Widget object)
{
    if (LinearGaugeRec* gauge = gaugeOf(object))
        repaint(gauge);
}

namespace {

void callBack(Widget widget, XtCallbackList list, int reason, XEvent* event)
{
    XmAnyCallbackStruct data = {reason, event};
    XtCallCallbackList(widget, list, &data);
}

void noteMap(Widget widget, XtPointer, XEvent* event, Boolean*)
{
    if (event->type == MapNotify)
        callBack(widget, asGauge(widget)->gauge.mapCallback, XmCR_MAP, event);
}

void takeRenderTable(LinearGaugeRec* gauge)
{
    XmRenderTable table = gauge->gauge.renderTable;
    if (!table)
        table = XmeGetDefaultRenderTable(asWidget(gauge), XmLABEL_FONTLIST);
    gauge->gauge.renderTable = XmRenderTableCopy(table, nullptr, 0);
}

// The primitive class has already given a size to a gauge that asked for none; hence the request.
void initialize(Widget request, Widget created, ArgList, Cardinal*)
{
    LinearGaugeRec* gauge = asGauge(created);
    LinearGaugePart& part = gauge->gauge;
    if (request->core.width == 0)
        gauge->core.width = defaultWidth;
    if (request->core.height == 0)
        gauge->core.height = defaultHeight;
    part.scales = nullptr; // a list that came with the creation holds nothing of ours
    part.ticks = nullptr;
    part.gc = nullptr;
    part.buffer = None;
    part.bufferOld = True;
    takeRenderTable(gauge);
    XtAddEventHandler(created, StructureNotifyMask, False, noteMap, nullptr);
}

// The toolkit destroys the children of composite widgets only, so that a gauge does it for its own. Each
// child takes itself out of the list.
void destroy(Widget widget)
{
    LinearGaugePart& part = asGauge(widget)->gauge;
    std::vector<Widget> children(part.ticks, part.ticks + listLength(part.ticks));
    children.insert(children.end(), part.scales, part.scales + listLength(part.scales));
    for (Widget child : children)
        XtDestroyWidget(child);
    freeBuffer(asGauge(widget));
    freeGC(asGauge(widget));
    XmRenderTableFree(part.renderTable);
}

void resize(Widget widget)
{
    LinearGaugeRec* gauge = asGauge(widget);
    freeBuffer(gauge);
    callBack(widget, gauge->gauge.resizeCallback, XmCR_RESIZE, nullptr);
}

void expose(Widget widget, XEvent* event, Region)
{
    LinearGaugeRec* gauge = asGauge(widget);
    const XExposeEvent& area = event->xexpose;
    paint(gauge, area.x, area.y, area.width, area.height);
    callBack(widget, gauge->gauge.exposeCallback, XmCR_EXPOSE, event);
}

bool looksOther(const LinearGaugeRec* old, const LinearGaugeRec* changed)
{
    return old->gauge.border != changed->gauge.border ||
           old->gauge.doubleBuffer != changed->gauge.doubleBuffer ||
           old->gauge.renderTable != changed->gauge.renderTable ||
           old->gauge.repaint != changed->gauge.repaint || old->gauge.debug != changed->gauge.debug ||
           old->core.background_pixel != changed->core.background_pixel ||
           old->primitive.foreground != changed->primitive.foreground ||
           old->primitive.top_shadow_color != changed->primitive.top_shadow_color ||
           old->primitive.bottom_shadow_color != changed->primitive.bottom_shadow_color ||
           old->primitive.shadow_thickness != changed->primitive.shadow_thickness;
}

bool isRangeResource(const char* name)
{
    return std::strcmp(name, XmNxrtGaMin) == 0 || std::strcmp(name, XmNxrtGaMax) == 0;
}

// The gauge has no range of its own; what is asked of it is asked of its first scale.
void setRangeOfScale(const LinearGaugePart& part, ArgList args, Cardinal count)
{
    Arg range[2];
    Cardinal found = 0;
    for (Cardinal i = 0; i < count; ++i) {
        if (found < XtNumber(range) && isRangeResource(args[i].name))
            range[found++] = args[i];
    }
    if (found > 0 && part.scales)
        XtSetValues(part.scales[0], range, found);
}

Boolean setValues(Widget oldWidget, Widget, Widget widget, ArgList args, Cardinal* count)
{
    LinearGaugeRec* gauge = asGauge(widget);
    const LinearGaugeRec* old = asGauge(oldWidget);
    keepList(widget, gauge->gauge.scales, old->gauge.scales, XmNxrtGaLinearScaleList);
    keepList(widget, gauge->gauge.ticks, old->gauge.ticks, XmNxrtGaTickList);
    bool changed = looksOther(old, gauge);
    if (gauge->gauge.renderTable != old->gauge.renderTable) {
        takeRenderTable(gauge);
        XmRenderTableFree(old->gauge.renderTable);
    }
    if (!gauge->gauge.doubleBuffer)
        freeBuffer(gauge);
    if (changed)
        repaint(gauge);
    setRangeOfScale(gauge->gauge, args, *count);
    return False;
}

void getValuesHook(Widget widget, ArgList args, Cardinal* count)
{
    const LinearGaugePart& part = asGauge(widget)->gauge;
    for (Cardinal i = 0; i < *count; ++i) {
        if (isRangeResource(args[i].name) && part.scales)
            XtGetValues(part.scales[0], &args[i], 1);
    }
}

// A gauge wishes to be as thick as the labels of its ticks need; it is content with any length.
XtGeometryResult queryGeometry(Widget widget, XtWidgetGeometry*, XtWidgetGeometry* wish)
{
    const LinearGaugeRec* gauge = asGauge(widget);
    *wish = {};
    for (WidgetList item = gauge->gauge.ticks; item && *item; ++item) {
        const auto* tick = reinterpret_cast<const TickRec*>(*item);
        const auto* scale = reinterpret_cast<const LinearScaleRec*>(tick->tick.scale);
        const int thickness = scale ? wantedThickness(tick, gauge) : 0;
        if (thickness == 0)
            continue;
        const bool vertical = scale->scale.orientation == XRTGA_VERTICAL;
        Dimension& side = vertical ? wish->width : wish->height;
        side = std::max(side, static_cast<Dimension>(thickness));
        wish->request_mode |= vertical ? CWWidth : CWHeight;
    }
    return wish->request_mode ? XtGeometryAlmost : XtGeometryYes;
}

} // namespace
