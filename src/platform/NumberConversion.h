#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

// Conversions of numbers that documents can make as large as they like. A plain conversion of an
// out-of-range double is undefined behaviour; these saturate the way the hardware would.

// A double rounded to single precision; beyond the float range an infinity.
inline float VLSinglePrecision(double value)
{
    constexpr double largest = std::numeric_limits<float>::max();
    if (value > largest) return std::numeric_limits<float>::infinity();
    if (value < -largest) return -std::numeric_limits<float>::infinity();
    return static_cast<float>(value);
}

// A double truncated toward zero to an integer; the limits beyond the range, 0 for NaN.
inline int64_t VLTruncatedInteger(double value)
{
    if (std::isnan(value)) return 0;
    if (value >= 9223372036854775807.0) return std::numeric_limits<int64_t>::max();
    if (value <= -9223372036854775808.0) return std::numeric_limits<int64_t>::min();
    return static_cast<int64_t>(value);
}
