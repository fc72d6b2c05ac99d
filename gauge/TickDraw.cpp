// SPDX-License-Identifier: MIT
#include "gauge/GaugeLayout.h"
#include "gauge/Labels.h"
#include "gauge/LinearScaleP.h"
#include "gauge/TickP.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

// What the application has set holds when automatic layout is off and nothing is missing.
gauge::TickSeries seriesOf(const TickPart& tick)
{
    const bool given = tick.increment != gauge::unsetValue && tick.start != gauge::unsetValue &&
                       tick.stop != gauge::unsetValue;
    return given && !tick.automatic ? gauge::TickSeries{tick.increment, tick.start, tick.stop}
                                    : gauge::TickSeries{};
}

gauge::AxisRequest axisRequestOf(const TickRec* object)
{
    const TickPart& tick = object->tick;
    const LinearScalePart& scale = reinterpret_cast<const LinearScaleRec*>(tick.scale)->scale;
    gauge::AxisRequest request;
    request.min = scale.min;
    request.max = scale.max;
    request.offset = tick.offset;
    request.series = seriesOf(tick);
    request.align = tick.automatic;
    request.rangePrecision =
        tick.precisionUseDefault == XRTGA_PRECISION_BY_RANGE ||
        (tick.precisionUseDefault == XRTGA_PRECISION_IF_DEFAULT && tick.precision == gauge::defaultPrecision);
    request.precision = tick.precision;
    request.labels = tick.drawLabels;
    request.tickWidth = tick.width;
    if (tick.labelFunc)
        request.labelFunc = [object](double value) {
            char* text =
                object->tick.labelFunc(reinterpret_cast<Widget>(const_cast<TickRec*>(object)), value);
            std::string label = text ? text : "";
            XtFree(text);
            return label;
        };
    return request;
}

// The font must outlive the request.
gauge::GaugeRequest requestOf(const TickRec* object, const LinearGaugeRec* gauge, const LabelFont& font)
{
    const TickPart& tick = object->tick;
    const LinearScalePart& scale = reinterpret_cast<const LinearScaleRec*>(tick.scale)->scale;
    gauge::GaugeRequest request;
    request.width = gauge->core.width;
    request.height = gauge->core.height;
    request.scale = {scale.x, scale.y, scale.width, scale.height};
    request.vertical = scale.orientation == XRTGA_VERTICAL;
    request.descending = scale.direction != XRTGA_ASCENDING;
    request.innerExtent = tick.innerExtent;
    request.outerExtent = tick.outerExtent;
    request.labelExtent = tick.labelExtent;
    request.digitWidth = font.digitWidth;
    request.digitHeight = font.digitHeight;
    const bool digitsOnly = tick.labelFunc == nullptr;
    request.measure = [&font, digitsOnly](const std::string& text) {
        return gauge::TextSize{labelWidth(font, text),
                               digitsOnly ? font.digitHeight : labelHeight(font, text)};
    };
    request.axis = axisRequestOf(object);
    return request;
}

double brightness(const XColor& color)
{
    return (0.299 * color.red + 0.587 * color.green + 0.114 * color.blue) / 65535.0;
}

bool showsOn(const XColor& color, const XColor& ground)
{
    return std::fabs(brightness(color) - brightness(ground)) >= 0.3;
}

// The server is asked for the colours once per combination, not with every drawing.
const XColor& colorOf(TickRec* object, const LinearGaugeRec* gauge)
{
    TickPart& tick = object->tick;
    TickColor& kept = tick.color;
    const Pixel ground = gauge->core.background_pixel;
    const Pixel fallback = gauge->primitive.foreground;
    if (kept.known && kept.wanted == tick.background && kept.ground == ground && kept.fallback == fallback)
        return kept.shown;
    Screen* screen = gauge->core.screen;
    XColor colors[5] = {};
    colors[0].pixel = tick.background;
    colors[1].pixel = fallback;
    colors[2].pixel = ground;
    colors[3].pixel = BlackPixelOfScreen(screen);
    colors[4].pixel = WhitePixelOfScreen(screen);
    XQueryColors(screen->display, gauge->core.colormap, colors, 5);
    const XColor& extreme = brightness(colors[2]) > 0.5 ? colors[3] : colors[4];
    const XColor& shown = showsOn(colors[0], colors[2])   ? colors[0]
                          : showsOn(colors[1], colors[2]) ? colors[1]
                                                          : extreme;
    kept = {true, tick.background, ground, fallback, shown};
    return kept.shown;
}

} // namespace

void drawTicks(TickRec* object, const LinearGaugeRec* gauge, Drawable drawable, GC gc)
{
    const TickPart& tick = object->tick;
    if (!tick.isShowing || !tick.scale)
        return;
    Display* display = gauge->core.screen->display;
    const LabelFont font = labelFontOf(gauge->core.screen->display, gauge->gauge.renderTable);
    const gauge::GaugeLayout layout = gauge::layoutGauge(requestOf(object, gauge, font));
    const XColor& color = colorOf(object, gauge);
    XSetForeground(display, gc, color.pixel);
    for (const gauge::Box& mark : layout.marks)
        XFillRectangle(display, drawable, gc, mark.x, mark.y, mark.width, mark.height);
    LabelPainter painter(gauge->core.screen, drawable, static_cast<int>(gauge->core.depth), gc, color, font);
    for (const gauge::GaugeText& text : layout.texts) {
        if (tick.labelFunc)
            painter.drawText(text.text, text.x, text.y, text.width);
        else
            painter.drawNumber(text.text, text.x, text.y, text.width);
    }
    if (gauge->gauge.debug)
        std::fprintf(stderr, "%s: %zu ticks, increment %g from %g to %g\n",
                     XtName(reinterpret_cast<Widget>(object)), layout.marks.size(), layout.series.increment,
                     layout.series.start, layout.series.stop);
}

gauge::TickSeries computedSeries(const TickRec* object)
{
    const TickPart& tick = object->tick;
    Widget parent = object->object.parent;
    if (!tick.scale || !XtIsSubclass(parent, xmXrtGaLinearGaugeWidgetClass))
        return {tick.increment, tick.start, tick.stop};
    const auto* gauge = reinterpret_cast<const LinearGaugeRec*>(parent);
    const LabelFont font = labelFontOf(gauge->core.screen->display, gauge->gauge.renderTable);
    return gauge::layoutGauge(requestOf(object, gauge, font)).series;
}

int wantedThickness(const TickRec* object, const LinearGaugeRec* gauge)
{
    const LabelFont font = labelFontOf(gauge->core.screen->display, gauge->gauge.renderTable);
    return gauge::neededThickness(requestOf(object, gauge, font));
}
