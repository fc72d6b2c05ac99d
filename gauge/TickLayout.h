// Where the ticks of an axis stand and what their labels say. No window system here: sizes of labels come
// from the caller. Called by the tick object with each drawing, and by tests.
//
// Frame: values are those of the labels; pixels count along the axis from the left or top end of the scale.
#ifndef GAUGE_TICKLAYOUT_H
#define GAUGE_TICKLAYOUT_H

#include <functional>
#include <limits>
#include <string>
#include <vector>

namespace gauge {

// A value that nobody has set.
inline constexpr double unsetValue = std::numeric_limits<double>::max();

// The precision of a tick object for which nobody has chosen one.
inline constexpr int defaultPrecision = -15;

// The text of a value. precision >= 0: that many digits after the point. precision < 0: rounded to
// 10^-precision, without decimals; "0" when nothing is left. Precisions below -16 are taken as -16.
std::string labelText(double value, int precision);

// The value rounded to a multiple of 10^-precision.
double roundToPrecision(double value, int precision);

// 1, 2, 5 or 10 times 10^exponent: the one nearest to the size of value, or the first that is not below it.
// Sizes beyond give 10 times 10^exponent.
double niceNumber(double value, int exponent);
double niceNumberAbove(double value, int exponent);

// The number of decimals at which a range of values is told apart: 3 for 0.005, -2 for 400; one more where
// the range's leading digits are below 3. 0 for a range that is not above 0.
int rangeDecimals(double range);

// Increment, first and last candidate of a row of ticks.
struct TickSeries {
    double increment = unsetValue;
    double start = unsetValue;
    double stop = unsetValue;
};

// The first tick above min: series.start, aligned down to a multiple of the increment first if `align`, plus
// as many increments as needed. It is min itself when the increment is 0 or 2000 increments were not enough.
double firstTick(const TickSeries& series, double min, bool align);

struct LabelSize {
    int along;  // pixels in the direction of the axis
    int across; // pixels at right angles to it
};

struct AxisRequest {
    double min = 0.0; // of the scale; a tick labelled v stands where the scale has v + offset
    double max = 0.0;
    double offset = 0.0;
    int length = 0;             // of the scale in pixels
    bool flipped = false;       // values grow towards pixel 0
    TickSeries series;          // what the application has set
    bool align = true;          // align a start that was set
    bool rangePrecision = true; // as many decimals as the increment needs; else `precision`
    int precision = defaultPrecision;
    bool labels = true;
    int tickWidth = 1; // pixels
    int gap = 0;       // least distance between two labels in pixels
    int labelRoom =
        0; // largest LabelSize::across (vertical axis) or ::along (horizontal) that a label may have
    bool vertical = false;
    std::function<LabelSize(const std::string&)> measure; // called with each candidate label
    std::function<std::string(double)> labelFunc;         // in place of the label rule, when set
};

struct Tick {
    double value;
    int pixel;         // of the tick's line, 0 .. length - 1
    std::string label; // empty: no label here
    int labelStart;    // first pixel of the label along the axis
    LabelSize size;
};

struct TickLayout {
    TickSeries series;       // as set, the rest computed; unset on an empty scale
    std::vector<Tick> ticks; // by pixel, first to last
};

// Ticks at 1, 2 or 5 times a power of ten within the scale unless the application says otherwise. Labels lie
// within the scale and keep their distance; where an end of the axis leaves no room for one, it is moved
// inwards or dropped. A range that is empty, reversed or not finite has no ticks.
TickLayout layoutTicks(const AxisRequest& request);

} // namespace gauge

#endif
