#pragma once

#include "reader/VLPlistParseInfo.h"

#include <array>
#include <cstdint>

// The scanner's character classes and the small byte loops over them. None of the loops checks
// an end pointer: each stops at a zero byte, and the region behind a document is zero.

// TAB, LF, CR, space.
constexpr bool isPlistLineSpace(uint8_t c)
{
    return c == '\t' || c == '\n' || c == '\r' || c == ' ';
}

// TAB, LF, VT, FF, CR, space.
inline bool isPlistFullSpace(uint8_t c)
{
    return (c >= '\t' && c <= '\r') || c == ' ';
}

inline bool isPlistDigit(uint8_t c)
{
    return c >= '0' && c <= '9';
}

inline constexpr std::array<bool, 256> plistUnquotedCharacters = [] {
    std::array<bool, 256> t{};
    for (int c = '0'; c <= '9'; ++c) t[static_cast<size_t>(c)] = true;
    for (int c = 'a'; c <= 'z'; ++c) t[static_cast<size_t>(c)] = t[static_cast<size_t>(c - 'a' + 'A')] = true;
    for (char c : {'$', '-', '.', '/', ':', '_'}) t[static_cast<uint8_t>(c)] = true;
    return t;
}();

constexpr bool isPlistUnquotedCharacter(uint8_t c)
{
    return plistUnquotedCharacters[c];
}

// Value of a hexadecimal digit, or -1.
inline int plistHexDigitValue(uint8_t c)
{
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

template <typename Predicate> inline const uint8_t* skipPlistBytes(const uint8_t* p, Predicate predicate)
{
    while (predicate(*p)) ++p;
    return p;
}

inline const uint8_t* skipPlistLineSpace(const uint8_t* p)
{
    return skipPlistBytes(p, isPlistLineSpace);
}

inline const uint8_t* skipPlistTabAndSpace(const uint8_t* p)
{
    return skipPlistBytes(p, [](uint8_t c) { return c == '\t' || c == ' '; });
}

inline const uint8_t* skipPlistTabLinefeedAndSpace(const uint8_t* p)
{
    return skipPlistBytes(p, [](uint8_t c) { return c == '\t' || c == '\n' || c == ' '; });
}

// Passes space and comments; true if a token follows, false at the end of the input.
bool skipPlistSpace(VLPlistParseInfo* info);

// Behind the double quote that ends a string whose text starts at `start`, or null when none does
// before `end`. A double quote after an odd number of backslashes does not end it.
const uint8_t* plistQuotedStringEnd(const uint8_t* start, const uint8_t* end);

// Behind the ">" that ends data whose digits start at `start`, or null: data that spans lines,
// or meets a zero byte or `end`, is not ours to skip.
const uint8_t* plistDataEnd(const uint8_t* start, const uint8_t* end);
