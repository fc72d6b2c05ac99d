// SPDX-License-Identifier: MIT
// What the labels of a row of ticks say where nobody has set their precision: whole values, or, where values
// share more leading digits than a label has room for, their distance from a base that the axis writes once.
// For the layout of ticks. Sizes stay with the caller, who tells what fits.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace gauge {

using Fits = std::function<bool(const std::string&)>;

// One text per value: with the decimals that the row needs, or all with exponents where one of them would be
// too long. Values are multiples of the increment, or one value alone.
std::vector<std::string> wholeTexts(const std::vector<double>& values, double increment, const Fits& fits);

struct BasedTexts {
    std::string base;                // empty: there is no base that would help
    std::vector<std::string> labels; // with a sign, "+0" included: value = base + label
};

// linesOf tells on how many lines a base can stand, 0 for none. Of the bases whose labels all fit, one on the
// fewest lines is taken; of the two that stand next to the values, the rounder.
BasedTexts basedTexts(const std::vector<double>& values, double increment, const Fits& fits,
                      const std::function<int(const std::string&)>& linesOf);

} // namespace gauge
