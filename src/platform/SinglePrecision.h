#pragma once

#include <cmath>
#include <limits>

// A double rounded to single precision. Values beyond the float range become infinities, as the
// hardware would make them, instead of the undefined behaviour of a plain conversion: documents
// can hold any number.
inline float VLSinglePrecision(double value)
{
    constexpr double largest = std::numeric_limits<float>::max();
    if (value > largest) return std::numeric_limits<float>::infinity();
    if (value < -largest) return -std::numeric_limits<float>::infinity();
    return static_cast<float>(value);
}
