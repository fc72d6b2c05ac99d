// SPDX-License-Identifier: MIT
#include "gauge/ClassRecord.h"
#include "gauge/LinearGaugeP.h"
#include "gauge/LinearScaleP.h"
#include "gauge/TickP.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr Dimension defaultWidth = 60;
constexpr Dimension defaultHeight = 24;

LinearGaugeRec* asGauge(Widget widget)
{
    return reinterpret_cast<LinearGaugeRec*>(widget);
}

// XmNfontList and XmNrenderTable are kept in one field. The toolkit fills it by the row of the first; this
// default of the second leaves that value as it is.
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
        table = XmeGetDefaultRenderTable(reinterpret_cast<Widget>(gauge), XmLABEL_FONTLIST);
    gauge->gauge.renderTable = XmRenderTableCopy(table, nullptr, 0);
}

// XmPrimitive has already replaced a size of 0; only the request still shows that none was given.
void initialize(Widget request, Widget created, ArgList, Cardinal*)
{
    LinearGaugeRec* gauge = asGauge(created);
    LinearGaugePart& part = gauge->gauge;
    if (request->core.width == 0)
        gauge->core.width = defaultWidth;
    if (request->core.height == 0)
        gauge->core.height = defaultHeight;
    part.scales = nullptr; // whatever the program has set: there are no children yet
    part.ticks = nullptr;
    part.gc = nullptr;
    part.buffer = None;
    part.bufferOld = True;
    takeRenderTable(gauge);
    XtAddEventHandler(created, StructureNotifyMask, False, noteMap, nullptr);
}

void destroy(Widget widget)
{
    LinearGaugeRec* gauge = asGauge(widget);
    gaugeDestroyChildren(gauge);
    gaugeFreeBuffer(gauge);
    gaugeFreeGC(gauge);
    XmRenderTableFree(gauge->gauge.renderTable);
}

void resize(Widget widget)
{
    LinearGaugeRec* gauge = asGauge(widget);
    gaugeFreeBuffer(gauge);
    callBack(widget, gauge->gauge.resizeCallback, XmCR_RESIZE, nullptr);
}

void expose(Widget widget, XEvent* event, Region)
{
    LinearGaugeRec* gauge = asGauge(widget);
    const XExposeEvent& area = event->xexpose;
    gaugePaint(gauge, area.x, area.y, area.width, area.height);
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

// The gauge has no range of its own: its minimum and maximum are those of its first scale.
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
    gaugeKeepLists(gauge, old);
    const bool changed = looksOther(old, gauge);
    if (gauge->gauge.renderTable != old->gauge.renderTable) {
        takeRenderTable(gauge);
        XmRenderTableFree(old->gauge.renderTable);
    }
    if (!gauge->gauge.doubleBuffer)
        gaugeFreeBuffer(gauge);
    if (changed)
        gaugeRepaint(gauge);
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
    for (Widget item : itemsOf(gauge->gauge.ticks)) {
        const auto* tick = reinterpret_cast<const TickRec*>(item);
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

LinearGaugeClassRec linearGaugeClassRec = {
    .core_class = corePart(reinterpret_cast<WidgetClass>(&xmPrimitiveClassRec), "XmXrtGaLinearGauge",
                           sizeof(LinearGaugeRec), resources,
                           {.classInitialize = registerStringConverters,
                            .initialize = initialize,
                            .destroy = destroy,
                            .resize = resize,
                            .expose = expose,
                            .setValues = setValues,
                            .getValues = getValuesHook,
                            .queryGeometry = queryGeometry,
                            .translations = nullptr}),
    .primitive_class = primitivePart(nullptr),
    .gauge_class = {.extension = nullptr},
};

WidgetClass xmXrtGaLinearGaugeWidgetClass = reinterpret_cast<WidgetClass>(&linearGaugeClassRec);
