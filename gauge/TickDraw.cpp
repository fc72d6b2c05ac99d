#include "gauge/Labels.h"
#include "gauge/LinearScaleP.h"
#include "gauge/TickP.h"
#include "gauge/TickLayout.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr int markDistance = 2; // pixels between a mark and its label

// A part of the gauge at right angles to the axis, in gauge pixels; end is not included.
struct Span {
    int begin;
    int end;

    int size() const { return end - begin; }
};

// An axis as it lies in its gauge. "Across" is x on a vertical axis and y on a horizontal one.
struct Axis {
    bool vertical;
    int start;        // of the scale along the axis, gauge pixels
    int length;       // of the scale along the axis
    Span marks;       // across
    Span labels;      // across: room beside the marks
    int labelMiddle;  // across: where the labels are wanted
    bool labelsFirst; // they stand before (left of, above) the marks
};

int across(double extent, int origin, int thickness)
{
    return static_cast<int>(std::lround(std::clamp(origin + extent * thickness, -32768.0, 32767.0)));
}

Axis axisOf(const TickPart& tick, const LinearGaugeRec* gauge)
{
    const auto* scale = reinterpret_cast<const LinearScaleRec*>(tick.scale);
    const XRectangle area = scaleArea(scale, gauge);
    Axis axis;
    axis.vertical = scale->scale.orientation == XRTGA_VERTICAL;
    axis.start = axis.vertical ? area.y : area.x;
    axis.length = axis.vertical ? area.height : area.width;
    const int origin = axis.vertical ? area.x : area.y;
    const int thickness = axis.vertical ? area.width : area.height;
    const int whole = axis.vertical ? gauge->core.width : gauge->core.height;
    axis.marks.begin = across(std::min(tick.innerExtent, tick.outerExtent), origin, thickness);
    axis.marks.end = across(std::max(tick.innerExtent, tick.outerExtent), origin, thickness);
    axis.labelMiddle = across(tick.labelExtent, origin, thickness);
    const int marksMiddle2 = axis.marks.begin + axis.marks.end;
    axis.labelsFirst =
        2 * axis.labelMiddle != marksMiddle2 ? 2 * axis.labelMiddle < marksMiddle2 : marksMiddle2 >= whole;
    axis.labels = axis.labelsFirst ? Span{0, std::min(whole, axis.marks.begin - markDistance)}
                                   : Span{std::max(0, axis.marks.end + markDistance), whole};
    return axis;
}

// What the application has set holds when automatic layout is off and nothing is missing.
gauge::TickSeries seriesOf(const TickPart& tick)
{
    const bool given = tick.increment != gauge::unsetValue && tick.start != gauge::unsetValue &&
                       tick.stop != gauge::unsetValue;
    return given && !tick.automatic ? gauge::TickSeries{tick.increment, tick.start, tick.stop}
                                    : gauge::TickSeries{};
}

gauge::AxisRequest requestOf(const TickRec* object, const Axis& axis, const LabelFont& font)
{
    const TickPart& tick = object->tick;
    const LinearScalePart& scale = reinterpret_cast<const LinearScaleRec*>(tick.scale)->scale;
    gauge::AxisRequest request;
    request.min = scale.min;
    request.max = scale.max;
    request.offset = tick.offset;
    request.length = axis.length;
    request.vertical = axis.vertical;
    request.flipped = axis.vertical == (scale.direction == XRTGA_ASCENDING);
    request.series = seriesOf(tick);
    request.align = tick.automatic;
    request.rangePrecision =
        tick.precisionUseDefault == XRTGA_PRECISION_BY_RANGE ||
        (tick.precisionUseDefault == XRTGA_PRECISION_IF_DEFAULT && tick.precision == gauge::defaultPrecision);
    request.precision = tick.precision;
    request.labels = tick.drawLabels;
    request.tickWidth = tick.width;
    request.gap = axis.vertical ? font.digitHeight : font.digitWidth;
    request.labelRoom = axis.vertical ? axis.labels.size() : axis.length / 3;
    request.measure = [&axis, &font, full = tick.labelFunc != nullptr](const std::string& label) {
        int width = labelWidth(font, label);
        int height = full ? labelHeight(font, label) : font.digitHeight;
        return axis.vertical ? gauge::LabelSize{height, width} : gauge::LabelSize{width, height};
    };
    if (tick.labelFunc) {
        request.labelFunc = [object](double value) {
            char* text =
                object->tick.labelFunc(reinterpret_cast<Widget>(const_cast<TickRec*>(object)), value);
            std::string label = text ? text : "";
            XtFree(text);
            return label;
        };
    }
    return request;
}

double brightness(const XColor& colour)
{
    return (0.299 * colour.red + 0.587 * colour.green + 0.114 * colour.blue) / 65535.0;
}

bool showsOn(const XColor& colour, const XColor& ground)
{
    return std::fabs(brightness(colour) - brightness(ground)) >= 0.3;
}

// The server is asked for the colours once per combination, not with every drawing.
const XColor& colourOf(TickRec* object, const LinearGaugeRec* gauge)
{
    TickPart& tick = object->tick;
    TickColour& kept = tick.colour;
    const Pixel ground = gauge->core.background_pixel;
    const Pixel fallback = gauge->primitive.foreground;
    if (kept.known && kept.wanted == tick.background && kept.ground == ground && kept.fallback == fallback)
        return kept.shown;
    Screen* screen = gauge->core.screen;
    XColor colours[5] = {};
    colours[0].pixel = tick.background;
    colours[1].pixel = fallback;
    colours[2].pixel = ground;
    colours[3].pixel = BlackPixelOfScreen(screen);
    colours[4].pixel = WhitePixelOfScreen(screen);
    XQueryColors(screen->display, gauge->core.colormap, colours, 5);
    const XColor& extreme = brightness(colours[2]) > 0.5 ? colours[3] : colours[4];
    const XColor& shown = showsOn(colours[0], colours[2])   ? colours[0]
                          : showsOn(colours[1], colours[2]) ? colours[1]
                                                            : extreme;
    kept = {true, tick.background, ground, fallback, shown};
    return kept.shown;
}

struct Canvas {
    Display* display;
    Drawable drawable;
    GC gc;
};

void drawMarks(const Canvas& canvas, const Axis& axis, const gauge::TickLayout& layout, int lineWidth)
{
    const int size = axis.marks.size();
    lineWidth = std::min(lineWidth, axis.length);
    if (size <= 0 || lineWidth <= 0)
        return;
    for (const gauge::Tick& tick : layout.ticks) {
        int along = axis.start + std::clamp(tick.pixel - lineWidth / 2, 0, axis.length - lineWidth);
        if (axis.vertical)
            XFillRectangle(canvas.display, canvas.drawable, canvas.gc, axis.marks.begin, along, size,
                           lineWidth);
        else
            XFillRectangle(canvas.display, canvas.drawable, canvas.gc, along, axis.marks.begin, lineWidth,
                           size);
    }
}

// The labels of a vertical axis form a column, aligned at the side of the marks and as far off the edges as
// the wanted middle and the room allow.
Span labelColumn(const Axis& axis, int size)
{
    int begin = axis.labelMiddle - size / 2;
    begin = std::max(std::min(begin, axis.labels.end - size), axis.labels.begin);
    return {begin, begin + size};
}

void drawLabels(LabelPainter& painter, const Axis& axis, const gauge::TickLayout& layout, bool digitsOnly)
{
    int widest = 0;
    for (const gauge::Tick& tick : layout.ticks)
        widest = std::max(widest, tick.label.empty() ? 0 : tick.size.across);
    const Span column = labelColumn(axis, widest);
    for (const gauge::Tick& tick : layout.ticks) {
        if (tick.label.empty())
            continue;
        int along = axis.start + tick.labelStart;
        int acrossStart = axis.labelsFirst ? column.end - tick.size.across : column.begin;
        int x = axis.vertical ? acrossStart : along;
        int y = axis.vertical ? along : acrossStart;
        int width = axis.vertical ? tick.size.across : tick.size.along;
        if (digitsOnly)
            painter.drawNumber(tick.label, x, y, width);
        else
            painter.drawText(tick.label, x, y, width);
    }
}

} // namespace

void drawTicks(TickRec* object, const LinearGaugeRec* gauge, Drawable drawable, GC gc)
{
    const TickPart& tick = object->tick;
    if (!tick.isShowing || !tick.scale)
        return;
    const Canvas canvas = {gauge->core.screen->display, drawable, gc};
    const LabelFont font = labelFontOf(gauge->gauge.renderTable);
    const Axis axis = axisOf(tick, gauge);
    const gauge::TickLayout layout = gauge::layoutTicks(requestOf(object, axis, font));
    const XColor& colour = colourOf(object, gauge);
    XSetForeground(canvas.display, gc, colour.pixel);
    drawMarks(canvas, axis, layout, tick.width);
    LabelPainter painter(gauge->core.screen, drawable, gauge->core.depth, gc, colour, font);
    drawLabels(painter, axis, layout, tick.labelFunc == nullptr);
    if (gauge->gauge.debug)
        std::fprintf(stderr, "%s: %zu ticks, increment %g from %g to %g\n",
                     XtName(reinterpret_cast<Widget>(object)), layout.ticks.size(), layout.series.increment,
                     layout.series.start, layout.series.stop);
}

gauge::TickSeries computedSeries(const TickRec* object)
{
    const TickPart& tick = object->tick;
    Widget parent = object->object.parent;
    if (!tick.scale || !XtIsSubclass(parent, xmXrtGaLinearGaugeWidgetClass))
        return {tick.increment, tick.start, tick.stop};
    const auto* gauge = reinterpret_cast<const LinearGaugeRec*>(parent);
    const LabelFont font = labelFontOf(gauge->gauge.renderTable);
    const Axis axis = axisOf(tick, gauge);
    return gauge::layoutTicks(requestOf(object, axis, font)).series;
}
