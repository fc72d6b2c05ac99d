#include "gauge/TickLayout.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace gauge {

namespace {

constexpr int largestPower = 16;
constexpr int firstTickSteps = 2000;
constexpr int mostDecimals = 350; // a double has no more that say anything
constexpr int longestDecimals = 12; // beyond it a label is written with an exponent

constexpr std::array<double, 2 * largestPower + 1> powersOfTen = {
    1e-16, 1e-15, 1e-14, 1e-13, 1e-12, 1e-11, 1e-10, 1e-9, 1e-8, 1e-7, 1e-6,
    1e-5,  1e-4,  1e-3,  1e-2,  1e-1,  1e0,   1e1,   1e2,  1e3,  1e4,  1e5,
    1e6,   1e7,   1e8,   1e9,   1e10,  1e11,  1e12,  1e13, 1e14, 1e15, 1e16};

double powerOfTen(int exponent)
{
    if (std::abs(exponent) > largestPower)
        return std::pow(10.0, exponent);
    return powersOfTen.at(exponent + largestPower);
}

// The exponent of a positive value in scientific notation; a power of ten that suffered rounding counts as
// itself.
int exponentOf(double value)
{
    return static_cast<int>(std::floor(std::log10(value) + 1e-9));
}

int clampPrecision(int precision)
{
    return std::clamp(precision, -largestPower, largestPower);
}

// Like printf in the C locale, whatever the locale is.
std::string formatted(double value, std::chars_format format, int decimals)
{
    std::array<char, 700> text; // the largest double has 309 digits before the point
    auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), value, format, decimals);
    return error == std::errc() ? std::string(text.data(), end) : std::string();
}

// 1.5e9 rather than 1.50e+09.
std::string exponentText(double value, int mantissaDecimals)
{
    std::string text = formatted(value, std::chars_format::scientific, mantissaDecimals);
    std::size_t e = text.find('e');
    if (value == 0.0 || e == std::string::npos)
        return "0";
    std::string mantissa = text.substr(0, e);
    if (mantissa.find('.') != std::string::npos) {
        mantissa.erase(mantissa.find_last_not_of('0') + 1);
        if (mantissa.back() == '.')
            mantissa.pop_back();
    }
    return mantissa + "e" + std::to_string(std::stoi(text.substr(e + 1)));
}

} // namespace

std::string labelText(double value, int precision)
{
    if (precision >= 0)
        return formatted(value, std::chars_format::fixed, std::min(precision, mostDecimals));
    precision = clampPrecision(precision);
    double units = std::floor(value / powerOfTen(-precision) + 0.5);
    if (units + 1.0 == 1.0)
        return "0";
    return formatted(units, std::chars_format::fixed, 0) +
           std::string(static_cast<std::size_t>(-precision), '0');
}

double roundToPrecision(double value, int precision)
{
    double unit = powerOfTen(-clampPrecision(precision));
    return std::floor(value / unit + 0.5) * unit;
}

double niceNumber(double value, int exponent)
{
    double unit = powerOfTen(exponent);
    double size = std::fabs(value) / unit;
    return (size < 1.5 ? 1.0 : size < 3.0 ? 2.0 : size < 7.0 ? 5.0 : 10.0) * unit;
}

double niceNumberAbove(double value, int exponent)
{
    double unit = powerOfTen(exponent);
    double size = std::fabs(value) / unit;
    return (size <= 1.0 ? 1.0 : size <= 2.0 ? 2.0 : size <= 5.0 ? 5.0 : 10.0) * unit;
}

int rangeDecimals(double range)
{
    if (!(range > 0.0) || !std::isfinite(range))
        return 0;
    int exponent = exponentOf(range);
    return range / powerOfTen(exponent) < 3.0 ? 1 - exponent : -exponent;
}

double firstTick(const TickSeries& series, double min, bool align)
{
    const double increment = series.increment;
    if (increment == 0.0 || !std::isfinite(increment))
        return min;
    double start = align ? std::floor(series.start / increment) * increment : series.start;
    for (int step = 0; step < firstTickSteps; ++step) {
        if (start + step * increment > min)
            return start + step * increment;
    }
    return min;
}

namespace {

// The scale's range in label values. Values closer to an end than `slack` count as being at that end: callers
// work in single precision, and the sum of a length and an offset is not exact.
struct Range {
    double low;
    double high;
    double slack;

    double size() const { return high - low; }
};

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

// The number of decimals that shows the value's leading digits up to the last that is not 0: 1 for 0.5, -2
// for 300.
int decimalsNeeded(double value)
{
    constexpr int mostDigits = 7;
    int first = -exponentOf(std::fabs(value));
    for (int decimals = first; decimals < first + mostDigits; ++decimals) {
        double shifted = value * powerOfTen(decimals);
        if (std::fabs(shifted - std::round(shifted)) <= 1e-9 * std::fabs(shifted))
            return decimals;
    }
    return first + mostDigits - 1;
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

double incrementByRange(const AxisRequest& request, const Range& range)
{
    int size = intervalSize(request, range.low, range.high, std::max(0, rangeDecimals(range.size())));
    if (request.labels)
        size += request.vertical ? request.gap : 2 * request.gap;
    int intervals = request.length / std::max(1, size);
    if (intervals == 0)
        return 0.0;
    double increment = range.size() / intervals;
    return niceNumber(increment, exponentOf(increment));
}

// What is unset of start and stop goes to the whole multiples around the range. The range is not measured
// again with these: ticks outside the scale are never drawn, and a second look at the wider range only thins
// out the axis.
TickSeries completed(TickSeries series, const Range& range, double increment)
{
    series.increment = increment;
    bool stepped = increment > 0.0;
    if (series.start == unsetValue)
        series.start = stepped ? std::floor(range.low / increment) * increment : range.low;
    if (series.stop == unsetValue)
        series.stop = stepped ? std::ceil(range.high / increment) * increment : range.high;
    return series;
}

std::vector<double> tickValues(const AxisRequest& request, const Range& range, const TickSeries& series)
{
    double first = firstTick(series, range.low, request.align);
    if (series.increment > 0.0 && first > range.low && first - range.low <= range.slack)
        first += series.increment;
    const double last = std::min(series.stop, range.high) + range.slack;
    if (!(first <= last))
        return {};
    if (!(series.increment > 0.0))
        return {first};
    const double pixel = range.size() / request.length;
    double step =
        std::max(1.0, std::ceil(pixel / series.increment)) * series.increment; // a mark per pixel at most
    if (!std::isfinite(step) || first + step == first)
        return {first};
    std::vector<double> values;
    for (int k = 0; first + k * step <= last; ++k) {
        double value = first + k * step;
        values.push_back(std::fabs(value) < step * 1e-6 ? 0.0 : value);
    }
    return values;
}

// Whether a label of that size may be shown at all.
bool hasRoom(const AxisRequest& request, const LabelSize& size)
{
    return size.along <= request.length && (request.vertical ? size.across : size.along) <= request.labelRoom;
}

// Texts at the default precision: with the decimals that the row needs, or all with exponents where one of
// them would be too long.
std::vector<std::string> textsByRange(const AxisRequest& request, const TickSeries& series,
                                      const std::vector<double>& values)
{
    int decimals = series.increment > 0.0 ? decimalsNeeded(series.increment) : -largestPower;
    if (values.front() != 0.0)
        decimals = std::max(decimals, decimalsNeeded(values.front()));
    std::vector<std::string> texts;
    bool shortEnough = decimals <= longestDecimals;
    for (std::size_t i = 0; i < values.size() && shortEnough; ++i) {
        texts.push_back(labelText(values[i], std::max(0, decimals)));
        shortEnough = hasRoom(request, request.measure(texts.back()));
    }
    if (shortEnough)
        return texts;
    texts.clear();
    for (double value : values) {
        int exponent = value == 0.0 ? 0 : exponentOf(std::fabs(value));
        texts.push_back(exponentText(value, std::clamp(exponent + decimals, 0, 15)));
    }
    return texts;
}

std::vector<std::string> labelTexts(const AxisRequest& request, const TickSeries& series,
                                    const std::vector<double>& values)
{
    if (request.rangePrecision && !request.labelFunc)
        return textsByRange(request, series, values);
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

std::vector<Tick> ticksOf(const AxisRequest& request, const Range& range, const TickSeries& series)
{
    std::vector<Tick> ticks;
    std::vector<double> values = tickValues(request, range, series);
    std::vector<std::string> texts(values.size());
    if (request.labels && !values.empty())
        texts = labelTexts(request, series, values);
    for (std::size_t i = 0; i < values.size(); ++i) {
        LabelSize size = texts[i].empty() ? LabelSize{0, 0} : request.measure(texts[i]);
        ticks.push_back({values[i], pixelAt(request, range, values[i]), texts[i], 0, size});
    }
    return ticks;
}

// Whether every tick can have its label, apart from the ends of the axis.
bool isReadable(const AxisRequest& request, const Range& range, const TickSeries& series,
                const std::vector<Tick>& ticks)
{
    int widest = 0;
    for (const Tick& tick : ticks) {
        if (!tick.label.empty() && !hasRoom(request, tick.size))
            return false;
        widest = std::max(widest, tick.size.along);
    }
    double spacing = series.increment / range.size() * request.length;
    int needed = request.labels ? widest + request.gap : 3 * request.tickWidth;
    return !ticks.empty() && (ticks.size() == 1 || spacing >= needed);
}

// Starts from the given increment and takes the next larger one until the labels have room; where that leaves
// less than two ticks, a smaller one that has room too.
TickLayout searchLayout(const AxisRequest& request, const Range& range, double increment)
{
    auto attempt = [&](double step) {
        TickSeries series = completed(request.series, range, step);
        return TickLayout{series, ticksOf(request, range, series)};
    };
    auto readable = [&](const TickLayout& layout) {
        return isReadable(request, range, layout.series, layout.ticks);
    };
    constexpr int tries = 6;
    TickLayout first = attempt(increment);
    TickLayout layout = first;
    for (int i = 0; i < tries && layout.ticks.size() > 1 && !readable(layout); ++i)
        layout = attempt(nextAbove(layout.series.increment));
    const double finest = request.rangePrecision ? 0.0 : powerOfTen(-clampPrecision(request.precision));
    double step = layout.series.increment;
    for (int i = 0; i < tries && layout.ticks.size() < 2; ++i) {
        step = nextBelow(step);
        if (!(step > finest * 0.9) || std::fabs(range.high) + step == std::fabs(range.high))
            break;
        TickLayout finer = attempt(step);
        if (layout.ticks.empty() || readable(finer))
            layout = finer;
    }
    return layout.ticks.empty() ? first : layout;
}

int wantedStart(const Tick& tick)
{
    return tick.pixel - tick.size.along / 2;
}

// Puts a label beside its tick and inside the scale, or drops it.
void placeLabel(const AxisRequest& request, Tick& tick)
{
    if (tick.label.empty() || !hasRoom(request, tick.size))
        tick.label.clear();
    else
        tick.labelStart = std::clamp(wantedStart(tick), 0, request.length - tick.size.along);
}

// Of two labels that come too close the one goes that had to be moved inwards, else the second.
void dropCloseLabels(const AxisRequest& request, std::vector<Tick>& ticks)
{
    const int gap = request.gap * 2 / 3; // a label at an end has been moved nearer
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

} // namespace

TickLayout layoutTicks(const AxisRequest& request)
{
    const Range range = rangeOf(request);
    if (!isDrawable(request, range))
        return {request.series, {}};
    TickLayout layout;
    double increment = request.series.increment;
    if (increment == unsetValue)
        increment =
            request.rangePrecision ? incrementByRange(request, range) : incrementAtPrecision(request, range);
    if (request.series.increment == unsetValue && increment > 0.0) {
        layout = searchLayout(request, range, increment);
    } else {
        layout.series = completed(request.series, range, increment);
        layout.ticks = ticksOf(request, range, layout.series);
    }
    for (Tick& tick : layout.ticks)
        placeLabel(request, tick);
    if (request.flipped)
        std::reverse(layout.ticks.begin(), layout.ticks.end());
    dropCloseLabels(request, layout.ticks);
    return layout;
}

} // namespace gauge
