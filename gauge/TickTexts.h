// SPDX-License-Identifier: MIT
// The texts of a row of labels whose precision was not set: whole values, or, where values share more leading
// digits than a label has room for, their distance from a base that the axis shows once. For the layout of
// ticks, which measures the texts and says which of them fit.
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

// linesOf gives the number of lines that a base takes, 0 where it has no room. Of the bases whose labels all
// fit, one on the fewest lines is taken; of the two that stand next to the values, the rounder.
BasedTexts basedTexts(const std::vector<double>& values, double increment, const Fits& fits,
                      const std::function<int(const std::string&)>& linesOf);

} // namespace gauge
