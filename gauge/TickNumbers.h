// SPDX-License-Identifier: MIT
// The numbers of an axis: texts of values, rounding, powers of ten and the nice numbers between them. For the
// layout of ticks, and for tests. Every double may come in; what has no exponent (0, infinities, NaN) counts
// as having the exponent 0.
#pragma once

#include <string>

namespace gauge {

// The text of a value. precision >= 0: that many digits after the point. precision < 0: rounded to
// 10^-precision, without decimals; "0" when nothing is left. Precisions below -16 are taken as -16.
std::string labelText(double value, int precision);

// 1.5e9 rather than 1.50e+09; at most that many digits after the point.
std::string exponentText(double value, int mantissaDecimals);

// The value rounded to a multiple of 10^-precision. A value too large for digits of that size stays as it is.
double roundToPrecision(double value, int precision);

// The nearest to 10^exponent: 0 or infinity beyond the doubles.
double powerOfTen(int exponent);

// The exponent of a positive value in scientific notation; a power of ten that rounding has made a little
// smaller counts as that power.
int exponentOf(double value);

// 1, 2, 5 or 10 times 10^exponent: the one nearest to the size of value, or the first that is not below it.
// Sizes beyond give 10 times 10^exponent.
double niceNumber(double value, int exponent);
double niceNumberAbove(double value, int exponent);

// The number of decimals that tells the values of a range apart: 3 for 0.005, -2 for 400; one more where
// the range's leading digits are below 3. 0 for a range that is not above 0.
int rangeDecimals(double range);

// The number of decimals that shows the value's leading digits up to the last that is not 0, seven at the
// most: 1 for 0.5, -2 for 300.
int decimalsNeeded(double value);

// A precision as far as the powers of ten for it go.
int clampPrecision(int precision);

} // namespace gauge
