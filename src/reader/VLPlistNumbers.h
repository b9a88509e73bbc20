#pragma once

#include <cstddef>
#include <cstdint>

// Number readers over bytes without an end pointer: every number ends at a byte that cannot
// continue it, such as the zero bytes behind a scanned document. `index` is where to start
// (0 when null) and receives the position behind what was read.

// A decimal number; at most 13 decimals count, the rest are dropped. "e-" followed by digits
// scales down, and without a decimal point one power less, so "1e-5" is 0.0001.
double parseDoubleAt(const uint8_t* bytes, size_t* index);

// Optional quote, "+" and "-", then digits; no digit reads as 0.
int64_t parseIntegerAt(const uint8_t* bytes, size_t* index);

// A parenthesised list of numbers into `values`, which has room for `*count` of them if that is
// more than 1, otherwise for 10. On success `*count` is the number read and `index` stands on
// the ")"; otherwise `*count` is -1.
bool parseDoubleTupleAt(const uint8_t* bytes, size_t* index, double* values, int* count);

// The digits, point and exponent of a number from `p`, after any quote; `p` ends behind it.
// Shared by parseDoubleAt and the stream reader, which does not accept a "+".
double scanPlistDecimal(const uint8_t*& p, bool acceptPlus);
