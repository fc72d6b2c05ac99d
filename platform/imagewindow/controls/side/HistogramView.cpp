// SPDX-License-Identifier: MIT
#include "platform/imagewindow/controls/side/HistogramView.h"

#include "platform/imagewindow/controls/Widgets.h"
#include "widgets/Painter.h"
#include "widgets/Scale.h"

#include <Xm/DrawingA.h>

#include <algorithm>
#include <cmath>
#include <span>
#include <utility>

namespace viewer {

namespace {

constexpr std::size_t mostBins = 256;
constexpr int gripHeight = 9, sideMargin = 6; // pixels of 96 dots per inch
constexpr widgets::Color ground{0.09, 0.1, 0.11}, beyond{0.13, 0.14, 0.15}, curve{0.95, 0.95, 0.95},
    quiet{0.55, 0.57, 0.6};

// A triangle that stands on the bottom and points at the limit.
void drawGrip(widgets::Painter& painter, double x, const Size& size, int height, const widgets::Color& inside)
{
    for (const bool edge : {false, true}) {
        cairo_t* cairo = painter.cairo(edge ? curve : inside);
        cairo_move_to(cairo, x, size.height - height);
        cairo_line_to(cairo, x + height * 0.6, size.height - 1);
        cairo_line_to(cairo, x - height * 0.6, size.height - 1);
        cairo_close_path(cairo);
        cairo_set_line_width(cairo, 1);
        edge ? cairo_stroke(cairo) : cairo_fill(cairo);
    }
}

} // namespace

HistogramView::HistogramView(Widget parent, Moved whenMoved) : moved(std::move(whenMoved))
{
    area = XtVaCreateManagedWidget("histogram", xmDrawingAreaWidgetClass, parent, XmNresizePolicy,
                                   XmRESIZE_NONE, XmNtraversalOn, False, nullptr);
    const auto redraw = [](Widget, XtPointer client, XtPointer) {
        static_cast<HistogramView*>(client)->draw();
    };
    XtAddCallback(area, XmNexposeCallback, redraw, this);
    XtAddCallback(area, XmNresizeCallback, redraw, this);
    XtAddEventHandler(area, ButtonPressMask | ButtonReleaseMask | Button1MotionMask, False, pointer, this);
}

void HistogramView::pointer(Widget, XtPointer client, XEvent* event, Boolean*)
{
    static_cast<HistogramView*>(client)->handle(*event);
}

// The limit that is nearest is taken, wherever the press is; where both are as near, the one on its side.
void HistogramView::handle(const XEvent& event)
{
    if (event.type == ButtonRelease)
        held = Held::Nothing;
    if (event.type == ButtonPress && event.xbutton.button == Button1) {
        const double toLow = std::fabs(event.xbutton.x - xOf(shown.limits.low)),
                     toHigh = std::fabs(event.xbutton.x - xOf(shown.limits.high));
        const bool low = toLow < toHigh || (toLow == toHigh && event.xbutton.x < xOf(shown.limits.low));
        held = low ? Held::Low : Held::High;
    }
    if (held != Held::Nothing && event.type == MotionNotify)
        moved(held == Held::Low, valueAt(event.xmotion.x));
}

double HistogramView::xOf(float value) const
{
    const double margin = widgets::scaled(area, sideMargin), room = sizeOf(area).width - 2 * margin;
    const ContrastLimits& axis = histogram.axis;
    const double share = (value - axis.low) / std::max(1e-30, static_cast<double>(axis.high) - axis.low);
    return margin + std::clamp(share, 0.0, 1.0) * room;
}

float HistogramView::valueAt(int x) const
{
    const double margin = widgets::scaled(area, sideMargin);
    const double share = (x - margin) / std::max(1.0, sizeOf(area).width - 2 * margin);
    const ContrastLimits& axis = histogram.axis;
    return static_cast<float>(axis.low +
                              std::clamp(share, 0.0, 1.0) * (static_cast<double>(axis.high) - axis.low));
}

void HistogramView::show(const Content& content)
{
    if (content == shown)
        return;
    const bool countAgain = content.sample != shown.sample || content.span != shown.span ||
                            content.integers != shown.integers || histogram.counts.empty();
    shown = content;
    if (countAgain)
        count();
    draw();
}

void HistogramView::count()
{
    const int room = sizeOf(area).width - 2 * widgets::scaled(area, sideMargin);
    binsFor = sizeOf(area).width;
    const std::size_t bins =
        std::clamp<std::size_t>(static_cast<std::size_t>(std::max(room, 1)), 16, mostBins);
    if (shown.span.low < shown.span.high)
        histogram = histogramOf(shown.sample ? std::span<const float>(shown.sample->values)
                                             : std::span<const float>(),
                                shown.span, shown.integers, bins);
}

// One outline for all bars: neighbours would show their seams.
void HistogramView::drawBars(widgets::Painter& painter, double bottom) const
{
    const auto bins = static_cast<double>(std::max<std::size_t>(histogram.counts.size(), 1));
    const double left = widgets::scaled(area, sideMargin), width = (sizeOf(area).width - 2 * left) / bins;
    cairo_t* const cairo = painter.cairo(widgets::colorOf(shown.color));
    cairo_move_to(cairo, left, bottom);
    double x = left;
    for (const std::uint32_t count : histogram.counts) {
        const double y = bottom - barShare(count, histogram.most, shown.logarithmic) * (bottom - 2);
        cairo_line_to(cairo, x, y);
        cairo_line_to(cairo, x += width, y);
    }
    cairo_line_to(cairo, x, bottom);
    cairo_close_path(cairo);
    cairo_fill(cairo);
}

// Light with a dark edge, so that it shows on bars of any colour.
void HistogramView::drawCurve(widgets::Painter& painter, double low, double high, double bottom) const
{
    constexpr int pieces = 32;
    for (const bool edge : {true, false}) {
        cairo_t* const cairo = painter.cairo(edge ? ground : curve, edge ? 0.6 : 0.9);
        cairo_set_line_width(cairo, widgets::scaled(area, edge ? 3 : 1));
        for (int i = 0; i <= pieces; ++i) {
            const double share = static_cast<double>(i) / pieces;
            cairo_line_to(cairo, low + share * (high - low),
                          bottom - std::pow(share, shown.gamma) * (bottom - 2));
        }
        cairo_stroke(cairo);
    }
}

void HistogramView::draw()
{
    if (!XtIsRealized(area))
        return;
    if (binsFor != sizeOf(area).width)
        count();
    const Size size = sizeOf(area);
    const int grip = widgets::scaled(area, gripHeight), bottom = size.height - grip;
    widgets::Painter painter(area, ground);
    const double low = xOf(shown.limits.low), high = xOf(shown.limits.high);
    painter.fill(0, 0, low, bottom, beyond);
    painter.fill(high, 0, size.width - high, bottom, beyond);
    drawBars(painter, bottom);
    drawCurve(painter, low, high, bottom);
    painter.fill(0, bottom, size.width, 1, quiet);
    drawGrip(painter, low, size, grip, {0, 0, 0});
    drawGrip(painter, high, size, grip, curve);
}

} // namespace viewer
