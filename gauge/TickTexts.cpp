// SPDX-License-Identifier: MIT
#include "gauge/TickTexts.h"

#include "gauge/TickNumbers.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace gauge {

namespace {

constexpr int longestDecimals = 12; // beyond it a label is written with an exponent
constexpr int noIncrement = -16;    // decimals that a value alone needs for its increment

bool allFit(const std::vector<std::string>& texts, const Fits& fits)
{
    return std::ranges::all_of(texts, fits);
}

// A multiple of a power of ten: count * 10^exponent. A count is a whole number.
struct Multiple {
    double count;
    int exponent;

    double value() const
    {
        return exponent >= 0 ? count * powerOfTen(exponent) : count / powerOfTen(-exponent);
    }
};

Multiple withoutTrailingZeros(Multiple number)
{
    while (number.count != 0.0 && std::fmod(number.count, 10.0) == 0.0) {
        number.count /= 10.0;
        ++number.exponent;
    }
    return number;
}

// A round number near the values: the multiple of 10^exponent at or below the first value, or the next one,
// if that has more zeros at its end and is not above the last value. Its count is 0 where it is zero itself.
Multiple baseNextTo(double first, double last, int exponent)
{
    const double unit = Multiple{1.0, exponent}.value();
    const Multiple below = {std::floor(first / unit + 1e-9), exponent};
    const Multiple above = {below.count + 1.0, exponent};
    if (below.count == 0.0 || above.value() > last)
        return withoutTrailingZeros(below);
    if (above.count == 0.0)
        return above;
    const Multiple shortBelow = withoutTrailingZeros(below), shortAbove = withoutTrailingZeros(above);
    return shortAbove.exponent > shortBelow.exponent ? shortAbove : shortBelow;
}

// All digits where they can stand on one line, else with an exponent.
std::string baseText(const Multiple& base, const std::function<int(const std::string&)>& linesOf)
{
    if (std::abs(base.exponent) <= longestDecimals) {
        std::string digits = labelText(base.value(), std::max(0, -base.exponent));
        if (linesOf(digits) == 1)
            return digits;
    }
    return exponentText(base.value(), exponentOf(std::fabs(base.count)));
}

std::vector<std::string> offsetTexts(const std::vector<double>& values, double base, double increment,
                                     const Fits& fits)
{
    const int decimals = decimalsNeeded(increment);
    std::vector<double> offsets;
    for (double value : values) { // rounded: the difference has the noise of two large numbers
        const double count = std::round(Multiple{value - base, decimals}.value());
        offsets.push_back(Multiple{count + 0.0, -decimals}.value()); // + 0.0 turns -0 into 0
    }
    auto sign = [](double offset) { return offset < 0.0 ? "" : "+"; };
    std::vector<std::string> texts =
        wholeTexts(offsets, increment, [&](const std::string& text) { return fits("+" + text); });
    for (std::size_t i = 0; i < texts.size(); ++i)
        texts[i] = sign(offsets[i]) + texts[i];
    return texts;
}

// Bases in the order in which they are wanted: first a multiple of the unit that takes in all values, then of
// larger ones, which make the base shorter, then of smaller ones, which make the labels shorter. The last is
// in the middle of the values, which makes the labels as short as they can be.
std::vector<Multiple> basesFor(const std::vector<double>& values, double increment)
{
    const double first = values.front(), last = values.back();
    const int own = static_cast<int>(std::ceil(std::log10(std::max(last - first, increment)) - 1e-9));
    const int largest = exponentOf(std::max(std::fabs(first), std::fabs(last)));
    const int least = exponentOf(increment);
    std::vector<Multiple> bases;
    for (int exponent = own; exponent <= largest; ++exponent)
        bases.push_back(baseNextTo(first, last, exponent));
    for (int exponent = own - 1; exponent >= least; --exponent)
        bases.push_back(baseNextTo(first, last, exponent));
    const double middle = values[values.size() / 2];
    bases.push_back(withoutTrailingZeros({std::round(middle / Multiple{1.0, least}.value()), least}));
    return bases;
}

} // namespace

std::vector<std::string> wholeTexts(const std::vector<double>& values, double increment, const Fits& fits)
{
    int decimals = increment > 0.0 && std::isfinite(increment) ? decimalsNeeded(increment) : noIncrement;
    if (values.front() != 0.0)
        decimals = std::max(decimals, decimalsNeeded(values.front()));
    std::vector<std::string> texts;
    bool shortEnough = decimals <= longestDecimals;
    for (std::size_t i = 0; i < values.size() && shortEnough; ++i) {
        texts.push_back(labelText(values[i], std::max(0, decimals)));
        shortEnough = fits(texts.back());
    }
    if (shortEnough)
        return texts;
    texts.clear();
    for (double value : values)
        texts.push_back(exponentText(value, exponentOf(std::fabs(value)) + decimals));
    return texts;
}

BasedTexts basedTexts(const std::vector<double>& values, double increment, const Fits& fits,
                      const std::function<int(const std::string&)>& linesOf)
{
    constexpr double smallest = 1e-290; // below, the powers of ten for its digits are no doubles
    BasedTexts best;
    if (!(increment >= smallest) || !std::isfinite(increment))
        return best;
    int fewestLines = std::numeric_limits<int>::max();
    for (const Multiple& base : basesFor(values, increment)) {
        if (base.count == 0.0 || !std::isfinite(base.value()))
            continue;
        const std::string text = baseText(base, linesOf);
        const int lines = linesOf(text);
        if (lines == 0 || lines >= fewestLines)
            continue;
        BasedTexts candidate{text, offsetTexts(values, base.value(), increment, fits)};
        if (!allFit(candidate.labels, fits))
            continue;
        best = std::move(candidate);
        fewestLines = lines;
        if (lines == 1)
            break;
    }
    return best;
}

} // namespace gauge
