#pragma once

#include <cstdint>

// The "color" of a glyph or a layer: a list of components, or the index of a label colour, of
// which only the low byte counts. Source is VLPlistKeySource or VLDictKeySource.
template <typename Record, typename Source> bool readColorKey(Record& record, Source& s)
{
    if (!s.hasValue()) return false;
    if (!s.atList()) return record.setColorIndex(static_cast<uint8_t>(s.integer())), true;
    if (auto color = s.color()) record.setColor(*color);
    return true;
}
