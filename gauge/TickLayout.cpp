// SPDX-License-Identifier: MIT
#include "gauge/TickLayout.h"

#include "gauge/TickNumbers.h"
#include "gauge/TickTexts.h"

#include <algorithm>
#include <cmath>

namespace gauge {

namespace {

enum class Form { Whole, Based };

Range rangeOf(const AxisRequest& request)
{
    double low = request.min - request.offset;
    double high = request.max - request.offset;
    return {low, high, (high - low) / request.length * 0.01};
}

bool isDrawable(const AxisRequest& request, const Range& range)
{
    return request.length > 0 && std::isfinite(range.low) && std::isfinite(range.high) &&
           std::isfinite(range.size()) && range.high > range.low;
}

double nextAbove(double increment)
{
    return niceNumberAbove(1.5 * increment, exponentOf(increment));
}

double nextBelow(double increment)
{
    return niceNumber(0.45 * increment, exponentOf(0.45 * increment));
}

// Whether a label of that size may be shown at all.
bool hasRoom(const AxisRequest& request, const LabelSize& size)
{
    return size.along <= request.length && (request.vertical ? size.across : size.along) <= request.labelRoom;
}

int axisSize(const AxisRequest& request, const std::string& label)
{
    int along = request.measure(label).along;
    return request.vertical ? along : std::min(along, std::max(request.labelRoom, 1));
}

// Pixels that one interval takes at the least.
int intervalSize(const AxisRequest& request, double min, double max, int decimals)
{
    if (!request.labels)
        return 3 * request.tickWidth;
    return std::max(axisSize(request, labelText(min, decimals)), axisSize(request, labelText(max, decimals)));
}

// Increment at a precision that the application has chosen: no finer than the labels can tell apart.
double incrementAtPrecision(const AxisRequest& request, const Range& range)
{
    double min = roundToPrecision(range.low, request.precision);
    double max = roundToPrecision(range.high, request.precision);
    for (int k = clampPrecision(request.precision); !(max > min); --k)
        max = min + powerOfTen(-k);
    int intervals = request.length / std::max(1, intervalSize(request, min, max, request.precision));
    if (intervals == 0)
        return 0.0;
    int decimals = std::min(rangeDecimals(max - min), clampPrecision(request.precision));
    return niceNumber((max - min) / intervals, -decimals);
}

// Labels that are added to a base need room for the size of the range only, not for whole values.
double incrementByRange(const AxisRequest& request, const Range& range, Form form)
{
    const double least = form == Form::Based ? 0.0 : range.low;
    const double largest = form == Form::Based ? range.size() : range.high;
    int size = intervalSize(request, least, largest, std::max(0, rangeDecimals(range.size())));
    if (request.labels)
        size += request.vertical ? request.gap : 2 * request.gap;
    int intervals = request.length / std::max(1, size);
    if (intervals == 0)
        return 0.0;
    const double wanted = range.size() / intervals, finest = finestIncrement(range);
    const double increment = niceNumber(wanted, exponentOf(wanted));
    return increment >= finest ? increment : niceNumberAbove(finest, exponentOf(finest));
}

// Splits a number into lines that have room: one line if possible, else its mantissa and its exponent, else
// as few lines as its characters need. Empty where those are too many.
std::vector<std::string> baseLines(const AxisRequest& request, const std::string& text)
{
    constexpr std::size_t mostLines = 3;
    auto fits = [&](const std::string& part) {
        LabelSize size = request.measure(part);
        return (request.vertical ? size.across : size.along) <= request.baseRoom;
    };
    if (fits(text))
        return {text};
    const std::size_t e = std::min(text.find('e'), text.size());
    if (request.vertical && fits(text.substr(0, e)) && fits(text.substr(e)))
        return {text.substr(0, e), text.substr(e)};
    std::vector<std::string> lines(1);
    for (char character : text) {
        if (!fits(lines.back() + character))
            lines.emplace_back();
        lines.back() += character;
    }
    return request.vertical && lines.size() <= mostLines ? lines : std::vector<std::string>();
}

int baseLineStart(const AxisRequest& request, std::size_t line)
{
    const int pitch = request.measure("0").along + std::max(1, request.gap / 3);
    return static_cast<int>(line) * pitch;
}

// The first pixel behind the base; 0 without one.
int baseEnd(const AxisRequest& request, const LabelBase& base)
{
    if (base.lines.empty())
        return 0;
    return base.starts.back() + request.measure(base.lines.back()).along;
}

// The base with a place for each line; empty where it would take more than half the axis.
LabelBase baseOf(const AxisRequest& request, const std::string& text)
{
    LabelBase base;
    base.lines = baseLines(request, text);
    for (std::size_t line = 0; line < base.lines.size(); ++line)
        base.starts.push_back(baseLineStart(request, line));
    return baseEnd(request, base) <= request.length / 2 ? base : LabelBase();
}

std::vector<std::string> labelTexts(const AxisRequest& request, double increment,
                                    const std::vector<double>& values, Form form, LabelBase& base)
{
    auto fits = [&](const std::string& text) { return hasRoom(request, request.measure(text)); };
    if (form == Form::Based) {
        BasedTexts texts = basedTexts(values, increment, fits, [&](const std::string& text) {
            return static_cast<int>(baseOf(request, text).lines.size());
        });
        base = texts.base.empty() ? LabelBase() : baseOf(request, texts.base);
        return texts.base.empty() ? std::vector<std::string>(values.size()) : texts.labels;
    }
    if (request.rangePrecision && !request.labelFunc)
        return wholeTexts(values, increment, fits);
    std::vector<std::string> texts;
    texts.reserve(values.size());
    for (double value : values)
        texts.push_back(request.labelFunc ? request.labelFunc(value) : labelText(value, request.precision));
    return texts;
}

int pixelAt(const AxisRequest& request, const Range& range, double value)
{
    double along = (value - range.low) / range.size() * request.length;
    int pixel = static_cast<int>(std::floor(along + 0.01));
    return std::clamp(request.flipped ? request.length - pixel : pixel, 0, request.length - 1);
}

// All ticks of a series with their labels, by value; labels have no place yet.
TickLayout unplaced(const AxisRequest& request, const Range& range, const TickSeries& series, Form form)
{
    TickLayout layout{series, {}, {}};
    const std::vector<double> values = tickValues(series, range, request.align, request.length);
    std::vector<std::string> texts(values.size());
    if (request.labels && !values.empty())
        texts = labelTexts(request, series.increment, values, form, layout.base);
    for (std::size_t i = 0; i < values.size(); ++i) {
        LabelSize size = texts[i].empty() ? LabelSize{0, 0} : request.measure(texts[i]);
        layout.ticks.push_back({values[i], pixelAt(request, range, values[i]), texts[i], 0, size});
    }
    return layout;
}

// Whether every label fits and keeps that gap to the next one. The ends of the axis are not considered.
bool isReadable(const AxisRequest& request, const Range& range, const TickLayout& layout, int gap)
{
    int widest = 0;
    for (const Tick& tick : layout.ticks) {
        if (!tick.label.empty() && !hasRoom(request, tick.size))
            return false;
        widest = std::max(widest, tick.size.along);
    }
    double spacing = layout.series.increment / range.size() * request.length;
    int needed = request.labels ? widest + gap : 3 * request.tickWidth;
    return !layout.ticks.empty() && (layout.ticks.size() == 1 || spacing >= needed);
}

// How close a label that was moved inwards may come to its neighbour, and any label to a base; in pixels.
int endGap(const AxisRequest& request)
{
    return request.gap * 2 / 3;
}

int wantedStart(const Tick& tick)
{
    return tick.pixel - tick.size.along / 2;
}

// Puts a label beside its tick and between the base and the end of the scale, or drops it.
void placeLabel(const AxisRequest& request, int begin, Tick& tick)
{
    const int latest = request.length - tick.size.along;
    if (tick.label.empty() || !hasRoom(request, tick.size) || tick.pixel < begin || latest < begin)
        tick.label.clear();
    else
        tick.labelStart = std::clamp(wantedStart(tick), begin, latest);
}

// Where two labels come too close, drops the one that had been moved inwards, else the second one.
void dropCloseLabels(const AxisRequest& request, std::vector<Tick>& ticks)
{
    const int gap = endGap(request);
    Tick* previous = nullptr;
    for (Tick& tick : ticks) {
        if (tick.label.empty())
            continue;
        if (previous && previous->labelStart + previous->size.along + gap > tick.labelStart) {
            bool previousMoved = previous->labelStart != wantedStart(*previous);
            bool moved = tick.labelStart != wantedStart(tick);
            if (moved || !previousMoved) {
                tick.label.clear();
                continue;
            }
            previous->label.clear();
        }
        previous = &tick;
    }
}

// The first pixel on which a label may begin: behind the base, where there is one.
int labelsBegin(const AxisRequest& request, const LabelBase& base)
{
    return base.lines.empty() ? 0 : baseEnd(request, base) + endGap(request);
}

// Removes the ticks beside a base, because it would look like their label.
void clearBase(const AxisRequest& request, TickLayout& layout)
{
    if (layout.base.lines.empty())
        return;
    const int end = baseEnd(request, layout.base) + request.tickWidth;
    std::erase_if(layout.ticks, [&](const Tick& tick) { return tick.label.empty() && tick.pixel <= end; });
}

void place(const AxisRequest& request, TickLayout& layout)
{
    const int begin = labelsBegin(request, layout.base);
    for (Tick& tick : layout.ticks)
        placeLabel(request, begin, tick);
    if (request.flipped)
        std::reverse(layout.ticks.begin(), layout.ticks.end());
    dropCloseLabels(request, layout.ticks);
    clearBase(request, layout);
}

struct Attempt {
    TickLayout layout;
    bool readable;
    std::size_t useful; // number of labels; of ticks where labels are off or have a set precision
};

Attempt attempt(const AxisRequest& request, const Range& range, double increment, Form form, int gap)
{
    Attempt made{};
    made.layout = unplaced(request, range, completed(request.series, range, increment), form);
    made.readable = isReadable(request, range, made.layout, gap) &&
                    (form == Form::Whole || !made.layout.base.lines.empty());
    place(request, made.layout);
    const std::vector<Tick>& ticks = made.layout.ticks;
    made.useful = request.labels && request.rangePrecision
                      ? static_cast<std::size_t>(std::ranges::count_if(
                            ticks, [](const Tick& tick) { return !tick.label.empty(); }))
                      : ticks.size();
    return made;
}

// Starts from the given increment and tries larger ones until the labels have room. Where that leaves fewer
// than two useful ticks, it tries smaller increments, whose labels may stand as close as endGap() allows.
Attempt search(const AxisRequest& request, const Range& range, double increment, Form form)
{
    constexpr int tries = 6;
    const Attempt first = attempt(request, range, increment, form, request.gap);
    Attempt best = first;
    for (int i = 0; i < tries && best.layout.ticks.size() > 1 && !best.readable; ++i)
        best = attempt(request, range, nextAbove(best.layout.series.increment), form, request.gap);
    const double finest = request.rangePrecision ? finestIncrement(range)
                                                 : 0.9 * powerOfTen(-clampPrecision(request.precision));
    const int gap = request.rangePrecision ? endGap(request) : request.gap;
    double step = best.layout.series.increment;
    for (int i = 0; i < tries && best.useful < 2; ++i) {
        step = nextBelow(step);
        if (!(step > finest) || std::fabs(range.high) + step == std::fabs(range.high))
            break;
        Attempt finer = attempt(request, range, step, form, gap);
        if (best.layout.ticks.empty() || (finer.readable && finer.useful >= best.useful))
            best = std::move(finer);
    }
    return best.layout.ticks.empty() ? first : best;
}

Attempt searchOrNone(const AxisRequest& request, const Range& range, double increment, Form form)
{
    return increment > 0.0 ? search(request, range, increment, form)
                           : attempt(request, range, increment, form, request.gap);
}

TickLayout automaticLayout(const AxisRequest& request, const Range& range)
{
    if (!request.rangePrecision)
        return searchOrNone(request, range, incrementAtPrecision(request, range), Form::Whole).layout;
    constexpr std::size_t enough = 3;
    auto searched = [&](Form form) {
        return searchOrNone(request, range, incrementByRange(request, range, form), form);
    };
    Attempt whole = searched(Form::Whole);
    if (!request.labels || request.labelFunc || whole.useful >= enough)
        return whole.layout;
    Attempt based = searched(Form::Based);
    return based.useful > std::max<std::size_t>(whole.useful, 1) ? based.layout : whole.layout;
}

} // namespace

TickLayout layoutTicks(const AxisRequest& request)
{
    const Range range = rangeOf(request);
    if (!isDrawable(request, range) || range.size() < finestIncrement(range))
        return {request.series, {}, {}};
    if (request.series.increment == unsetValue)
        return automaticLayout(request, range);
    return attempt(request, range, request.series.increment, Form::Whole, request.gap).layout;
}

} // namespace gauge
