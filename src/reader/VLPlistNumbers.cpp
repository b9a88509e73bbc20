#include "reader/VLPlistNumbers.h"

#include "reader/VLPlistLexical.h"

#include <cmath>

namespace {

// Decimals beyond this many are dropped rather than rounded.
constexpr int16_t maximumDecimals = 13;

const uint8_t* skipQuote(const uint8_t* p)
{
    return *p == '"' ? p + 1 : p;
}

void storeIndex(size_t* index, const uint8_t* bytes, const uint8_t* p)
{
    if (index) *index = static_cast<size_t>(skipQuote(p) - bytes);
}

} // namespace

double scanPlistDecimal(const uint8_t*& p, bool acceptPlus)
{
    bool negative = *p == '-';
    if (negative || (acceptPlus && *p == '+')) ++p;
    uint64_t mantissa = 0;
    int16_t decimals = -1; // -1 until a point is seen
    for (;;) {
        uint8_t c = *p;
        if (isPlistDigit(c)) {
            ++p;
            mantissa = mantissa * 10 + (c - '0');
            if (decimals >= 0 && ++decimals == maximumDecimals) {
                p = skipPlistBytes(p, isPlistDigit);
                break;
            }
        } else if (c == '.') {
            ++p;
            decimals = 0;
        } else if (c == 'e' && p[1] == '-') {
            size_t length = 0;
            uint64_t exponent = static_cast<uint64_t>(parseIntegerAt(p + 1, &length));
            p += 1 + length;
            decimals = static_cast<int16_t>(static_cast<uint64_t>(decimals) - exponent);
            break;
        } else {
            break;
        }
    }
    double value = static_cast<double>(mantissa);
    if (negative) value = -value;
    if (decimals >= 1) value /= std::pow(10.0, decimals);
    return value;
}

double parseDoubleAt(const uint8_t* bytes, size_t* index)
{
    const uint8_t* p = skipQuote(skipPlistTabAndSpace(bytes + (index ? *index : 0)));
    double value = scanPlistDecimal(p, true);
    storeIndex(index, bytes, p);
    return value;
}

int64_t parseIntegerAt(const uint8_t* bytes, size_t* index)
{
    const uint8_t* p = skipQuote(skipPlistTabAndSpace(bytes + (index ? *index : 0)));
    if (*p == '+') ++p;
    bool negative = *p == '-';
    if (negative) ++p;
    // Unsigned, so that an overlong run of digits wraps instead of overflowing.
    uint64_t value = 0;
    for (; isPlistDigit(*p); ++p) value = value * 10 + (*p - '0');
    storeIndex(index, bytes, p);
    return static_cast<int64_t>(negative ? 0 - value : value);
}

bool parseDoubleTupleAt(const uint8_t* bytes, size_t* index, double* values, int* count)
{
    const int capacity = count && *count > 1 ? *count : 10;
    const uint8_t* p = skipPlistTabLinefeedAndSpace(bytes + (index ? *index : 0));
    int read = 0;
    if (*p == '(') {
        ++p;
        while (read < capacity) {
            p = skipPlistLineSpace(p);
            if (*p == ')') break;
            size_t at = 0;
            values[read++] = parseDoubleAt(p, &at);
            p = skipPlistBytes(p + at, [](uint8_t c) { return isPlistLineSpace(c) || c == ','; });
        }
    }
    if (index) *index = static_cast<size_t>(p - bytes);
    bool closed = *p == ')';
    if (count) *count = closed ? read : -1;
    return closed;
}
