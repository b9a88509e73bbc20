#pragma once

#include "reader/VLPlistParseInfo.h"

#include <algorithm>
#include <cstddef>

// Compact forms step over words by their known length without looking at them; at the end of a
// cut-off file that must not carry `curr` past `end`.
inline void stepPlistBlindly(VLPlistParseInfo* info, size_t count)
{
    info->curr = std::min(info->curr + count, info->end);
}

inline bool atPlistEnd(const VLPlistParseInfo* info)
{
    return info->curr >= info->end;
}
