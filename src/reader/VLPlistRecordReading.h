#pragma once

#include "reader/VLPlistNumbers.h"
#include "reader/VLPlistParseInfo.h"
#include "reader/VLPlistTypedReaders.h"

#include <cstdint>
#include <string>

// The "integer" reader of the record tables: an integer at `curr`, which moves behind it.
inline int64_t readPlistInteger(VLPlistParseInfo* info)
{
    size_t index = 0;
    int64_t value = parseIntegerAt(info->curr, &index);
    info->curr += index;
    return value;
}

// The "string" reader of the record tables as text; "" when no string stands there.
inline std::string readPlistString(VLPlistParseInfo* info)
{
    return parsePlistStringValue(info).string();
}

// Tests a key given as a literal, so that its length is known at compile time.
template <size_t N> inline bool matchKey(VLPlistParseInfo* info, const char (&key)[N])
{
    return matchPlistKey(info, key, N - 1);
}
