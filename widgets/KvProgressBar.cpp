// SPDX-License-Identifier: MIT
#include "widgets/KvProgressBarP.h"

#include "widgets/ClassRecord.h"
#include "widgets/Painter.h"
#include "widgets/Scale.h"

#include <Xm/DrawP.h>

#include <algorithm>
#include <cmath>
#include <string>

namespace {

constexpr unsigned long stepMilliseconds = 40;
constexpr int stepsAcross = 40; // of the running block, one way

KvProgressBarRec* asBar(Widget widget)
{
    return reinterpret_cast<KvProgressBarRec*>(widget);
}

#define BAR_FIELD(name) XtOffsetOf(KvProgressBarRec, kv.name)

XtResource resources[] = {
    intRow(XmNvalue, XmCValue, BAR_FIELD(value), 0),
    intRow(XmNmaximum, XmCMaximum, BAR_FIELD(maximum), 100),
    flagRow(XmNkvBusy, "KvBusy", BAR_FIELD(busy), false),
    flagRow(XmNkvCancelable, "KvCancelable", BAR_FIELD(cancelable), false),
    widgets::textRow(XmNkvText, "KvText", BAR_FIELD(text)),
    pointerRow(XmNrenderTable, XmCRenderTable, XmRRenderTable, BAR_FIELD(renderTable)),
    computedRow(XmNkvBarColor, "KvBarColor", XmRPixel, sizeof(Pixel), BAR_FIELD(barColor),
                widgets::highlightColor),
    callbackRow(XmNkvCancelCallback, BAR_FIELD(cancelCallback)),
};

void takeLimits(KvProgressBarPart& part)
{
    part.maximum = std::max(part.maximum, 1);
    part.value = std::clamp(part.value, 0, part.maximum);
}

struct Box {
    int x, y, width, height;
};

// Inside focus frame and shadow.
Box trough(const KvProgressBarRec* bar)
{
    const int edge = bar->primitive.highlight_thickness + bar->primitive.shadow_thickness;
    return {edge, edge, std::max(1, bar->core.width - 2 * edge), std::max(1, bar->core.height - 2 * edge)};
}

// The square at the right end that holds the cross; no width without it.
Box crossBox(const KvProgressBarRec* bar)
{
    const Box box = trough(bar);
    const int side = bar->kv.cancelable ? std::min(box.height, box.width) : 0;
    return {box.x + box.width - side, box.y, side, box.height};
}

std::string shownText(const KvProgressBarPart& part)
{
    if (part.text)
        return part.text;
    if (part.busy)
        return {};
    return std::to_string(std::lround(100.0 * part.value / part.maximum)) + "%";
}

// The done part, left edge and width inside the trough.
Box donePart(const KvProgressBarRec* bar)
{
    Box box = trough(bar);
    if (!bar->kv.busy) {
        box.width = static_cast<int>(std::lround(1.0 * box.width * bar->kv.value / bar->kv.maximum));
        return box;
    }
    const int block = std::max(1, box.width / 5);
    const int phase = bar->kv.step % (2 * stepsAcross);
    const int across = phase < stepsAcross ? phase : 2 * stepsAcross - phase;
    box.x += (box.width - block) * across / stepsAcross;
    box.width = block;
    return box;
}

// Text in the trough, in the colour that shows on each part of it.
void drawText(KvProgressBarRec* bar, widgets::Painter& painter, const Box& done, const widgets::Color& ink,
              const widgets::Color& inkOnDone)
{
    const widgets::TextFont font(reinterpret_cast<Widget>(bar), bar->kv.renderTable);
    const Box box = trough(bar);
    const int room = box.width - crossBox(bar).width;
    const std::string text = font.fitted(shownText(bar->kv), room - 4);
    const int x = box.x + (room - font.width(text)) / 2;
    const int y = box.y + (box.height - font.height()) / 2 + font.ascent();
    painter.text(font, text, x, y, ink);
    painter.clip(done.x, done.y, done.width, done.height);
    painter.text(font, text, x, y, inkOnDone);
    painter.unclip();
}

void draw(KvProgressBarRec* bar)
{
    const Widget widget = reinterpret_cast<Widget>(bar);
    const widgets::Color ground = widgets::colorOf(widget, bar->core.background_pixel);
    const bool sensitive = XtIsSensitive(widget);
    const auto fade = [&](const widgets::Color& color) {
        return sensitive ? color : mix(color, ground, 0.6);
    };
    const widgets::Color white{1, 1, 1};
    const widgets::Color doneColor = fade(widgets::colorOf(widget, bar->kv.barColor));
    const widgets::Color ink = fade(widgets::colorOf(widget, bar->primitive.foreground));
    widgets::Painter painter(widget, ground);
    const Box box = trough(bar), done = donePart(bar);
    painter.fill(box.x, box.y, box.width, box.height, mix(ground, white, 0.6));
    painter.fill(done.x, done.y, done.width, done.height, doneColor);
    drawText(bar, painter, done, ink, widgets::luminance(doneColor) > 0.5 ? ink : white);
    if (const Box cross = crossBox(bar); cross.width > 0) {
        const double size = cross.height * 0.36, gap = (cross.height - size) / 2;
        painter.fill(cross.x, cross.y, cross.width, cross.height,
                     bar->kv.pressed ? mix(ground, ink, 0.25) : ground);
        painter.cross(cross.x + gap, cross.y + gap, size, widgets::scaled(widget, 2), ink);
    }
    const int edge = bar->primitive.highlight_thickness;
    XmeDrawShadows(bar->core.screen->display, painter.drawable(), bar->primitive.top_shadow_GC,
                   bar->primitive.bottom_shadow_GC, edge, edge, bar->core.width - 2 * edge,
                   bar->core.height - 2 * edge, bar->primitive.shadow_thickness, XmSHADOW_IN);
}

void expose(Widget widget, XEvent* event, Region region)
{
    draw(asBar(widget));
    widgets::drawFocus(widget, event, region);
}

void runOn(XtPointer data, XtIntervalId*)
{
    const auto widget = static_cast<Widget>(data);
    KvProgressBarRec* bar = asBar(widget);
    bar->kv.step = (bar->kv.step + 1) % (2 * stepsAcross);
    bar->kv.timer = XtAppAddTimeOut(XtWidgetToApplicationContext(widget), stepMilliseconds, runOn, widget);
    widgets::redraw(widget);
}

// The timer runs exactly while the bar is busy.
void followBusy(KvProgressBarRec* bar)
{
    const Widget widget = reinterpret_cast<Widget>(bar);
    if (bar->kv.busy && !bar->kv.timer)
        bar->kv.timer =
            XtAppAddTimeOut(XtWidgetToApplicationContext(widget), stepMilliseconds, runOn, widget);
    if (!bar->kv.busy && bar->kv.timer) {
        XtRemoveTimeOut(bar->kv.timer);
        bar->kv.timer = 0;
    }
}

// Its superclass has already put its own edges in place of a size that was not given.
void takeSize(KvProgressBarRec* bar, Widget request)
{
    const Widget widget = reinterpret_cast<Widget>(bar);
    const widgets::TextFont font(widget, bar->kv.renderTable);
    const int edge = bar->primitive.highlight_thickness + bar->primitive.shadow_thickness;
    constexpr int usualWidth = 200, margin = 2;
    if (request->core.width == 0)
        bar->core.width = static_cast<Dimension>(widgets::scaled(widget, usualWidth));
    if (request->core.height == 0)
        bar->core.height =
            static_cast<Dimension>(font.height() + 2 * edge + 2 * widgets::scaled(widget, margin));
}

void initialize(Widget request, Widget created, ArgList, Cardinal*)
{
    KvProgressBarRec* bar = asBar(created);
    bar->kv.timer = 0;
    bar->kv.step = 0;
    bar->kv.pressed = False;
    bar->primitive.traversal_on = bar->kv.cancelable;
    takeLimits(bar->kv);
    widgets::keepCopy(bar->kv.text);
    bar->kv.renderTable = widgets::ownRenderTable(created, bar->kv.renderTable);
    takeSize(bar, request);
    followBusy(bar);
    widgets::overrideTranslations(created, ":<Key>osfCancel: KvProgressCancel()");
}

void destroy(Widget widget)
{
    KvProgressBarPart& part = asBar(widget)->kv;
    if (part.timer)
        XtRemoveTimeOut(part.timer);
    XtFree(part.text);
    XmRenderTableFree(part.renderTable);
}

Boolean setValues(Widget oldWidget, Widget, Widget widget, ArgList, Cardinal*)
{
    KvProgressBarPart &now = asBar(widget)->kv, &old = asBar(oldWidget)->kv;
    takeLimits(now);
    const bool otherText = widgets::takeText(now.text, old.text);
    const bool otherFont = widgets::takeRenderTable(widget, now.renderTable, old.renderTable);
    asBar(widget)->primitive.traversal_on = now.cancelable;
    followBusy(asBar(widget));
    return otherText || otherFont || now.value != old.value || now.maximum != old.maximum ||
           now.busy != old.busy || now.cancelable != old.cancelable || now.barColor != old.barColor ||
           XtIsSensitive(widget) != XtIsSensitive(oldWidget);
}

bool onCross(Widget widget, XEvent* event)
{
    const Box box = crossBox(asBar(widget));
    const XButtonEvent& at = event->xbutton;
    return at.x >= box.x && at.x < box.x + box.width && at.y >= box.y && at.y < box.y + box.height;
}

void press(Widget widget, XEvent* event, String*, Cardinal*)
{
    XmProcessTraversal(widget, XmTRAVERSE_CURRENT);
    asBar(widget)->kv.pressed = onCross(widget, event);
    widgets::redraw(widget);
}

void cancel(Widget widget, XEvent* event, String*, Cardinal*)
{
    if (asBar(widget)->kv.cancelable)
        widgets::callBack(widget, asBar(widget)->kv.cancelCallback, XmAnyCallbackStruct{XmCR_CANCEL, event});
}

void release(Widget widget, XEvent* event, String* words, Cardinal* count)
{
    const bool meant = asBar(widget)->kv.pressed && onCross(widget, event);
    asBar(widget)->kv.pressed = False;
    widgets::redraw(widget);
    if (meant)
        cancel(widget, event, words, count);
}

XtActionsRec actions[] = {
    {"KvProgressPress", press}, {"KvProgressRelease", release}, {"KvProgressCancel", cancel}};

const std::string translations = std::string("<Btn1Down>: KvProgressPress()\n"
                                             "<Btn1Up>: KvProgressRelease()\n") +
                                 widgets::primitiveTranslations;

} // namespace

KvPrimitiveClassRec kvProgressBarClassRec =
    widgets::primitiveClass("XmKvProgressBar", sizeof(KvProgressBarRec), resources,
                            {.initialize = initialize,
                             .destroy = destroy,
                             .expose = expose,
                             .setValues = setValues,
                             .actions = actions,
                             .translations = translations.c_str()});

WidgetClass xmKvProgressBarWidgetClass = reinterpret_cast<WidgetClass>(&kvProgressBarClassRec);

Widget XmCreateKvProgressBar(Widget parent, const char* name, ArgList args, Cardinal count)
{
    return XtCreateWidget(name, xmKvProgressBarWidgetClass, parent, args, count);
}
