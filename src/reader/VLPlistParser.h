#pragma once

#include "platform/Value.h"
#include "reader/VLPlistParseInfo.h"

#include <cstdint>

// The generic parser: builds values from the text. Every function answers a null Value for
// "nothing", normally with `info->error` saying why; a value that succeeds clears a stale error.

// Any value; at the end of the input an error only if `required`.
Value parsePlistValue(VLPlistParseInfo* info, bool required);
// With `curr` behind the "{" or "(".
Value parsePlistDictContent(VLPlistParseInfo* info);
Value parsePlistArrayContent(VLPlistParseInfo* info);
// With `curr` behind the opening quote `quote`.
Value parseQuotedPlistString(VLPlistParseInfo* info, uint8_t quote);
// A run of unquoted characters; unless `forceString`, a run of digits, "." and a leading "-"
// becomes a number, an integer when it is within 0.001 of one.
Value parseUnquotedPlistString(VLPlistParseInfo* info, bool forceString);

// The document's entry points: space, then "{" or "(". At the end of the input they answer
// nothing without an error.
Value parsePlistDict(VLPlistParseInfo* info);
Value parsePlistMutableDict(VLPlistParseInfo* info);
Value parsePlistArray(VLPlistParseInfo* info);
