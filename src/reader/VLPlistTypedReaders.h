#pragma once

#include "platform/Color.h"
#include "platform/Geometry.h"
#include "platform/Value.h"
#include "reader/VLPlistParseInfo.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <type_traits>

// Readers that take one typed value straight out of the text, for record readers that know what
// each key holds. Apart from parsePlistStringValue they build no object.

// True and `curr` on the value when the bytes at `curr` are `key` followed by " =" or "=".
bool matchPlistKey(VLPlistParseInfo* info, const char* key, size_t length);

// A quoted string directly followed by ";" (left unread), or an unquoted run; null on failure.
Value parsePlistStringValue(VLPlistParseInfo* info);
// A number, optionally in double quotes; 0 when nothing is there.
double parsePlistDoubleValue(VLPlistParseInfo* info);
// YES, NO or an integer.
bool parsePlistBoolValue(VLPlistParseInfo* info);
// "{x, y}" in quotes or (x, y), followed by ";"; x is VLUnsetValue for anything else.
Point parsePlistPoint(VLPlistParseInfo* info);
// A transform {m11, m12, m21, m22, tX, tY}; left as it is when none starts here.
void parsePlistTransform(VLPlistParseInfo* info, double transform[6]);
// A colour of 1 to 10 components from 0 to 255.
std::optional<Color> parsePlistColor(VLPlistParseInfo* info);
// The colour of `count` components from 0 to 255: grey and alpha, CMYK and alpha, or RGB with an
// optional alpha.
Color colorWithComponents_count(double c[10], int count);

using VLPlistNumberCallback = void (*)(void* context, double value);
bool parsePlistNumberList(VLPlistParseInfo* info, VLPlistNumberCallback callback, void* context);

// A parenthesised list of numbers, each handed to `callback`; a value that is no list is
// stepped over. An empty list is an error.
template <typename Callback> bool parsePlistNumberList(VLPlistParseInfo* info, Callback&& callback)
{
    using Function = std::remove_reference_t<Callback>;
    return parsePlistNumberList(
        info, [](void* context, double value) { (*static_cast<Function*>(context))(value); },
        const_cast<void*>(static_cast<const void*>(std::addressof(callback))));
}
