// SPDX-License-Identifier: MIT
// Conversion of floats to integers: toward zero, and defined for every value. Not a number gives 0, values
// beyond the range its nearest limit.
#pragma once

#include <cstdint>

// Limits are +-2^60, so that sums of a few results can't overflow. Floats beyond them are multiples of 2^37:
// what is left of them in 16 bits is 0, as it is of the limits.
inline int64_t truncateToWide(float value)
{
    constexpr float limit = 1152921504606846976.0f;
    if (!(value > -limit))
        return value != value ? 0 : -static_cast<int64_t>(limit);
    return value < limit ? static_cast<int64_t>(value) : static_cast<int64_t>(limit);
}

inline int32_t truncateToInt(float value)
{
    int64_t wide = truncateToWide(value);
    return wide < INT32_MIN ? INT32_MIN : wide > INT32_MAX ? INT32_MAX : static_cast<int32_t>(wide);
}
