#pragma once

#include "reader/VLPlistParseInfo.h"

// Skippers pass over a value without building or allocating anything; they are what makes a
// large document cheap to read. Between the tokens of a value they pass line space only, no
// comments, and a zero byte counts as the end of the input. Apart from skipPlistDictContent's
// one message they fail silently.

bool skipPlistValue(VLPlistParseInfo* info);
bool skipPlistKey(VLPlistParseInfo* info);
// With `curr` behind the opening quote; a double quote after an odd number of backslashes
// does not close.
bool skipPlistQuotedString(VLPlistParseInfo* info);
bool skipPlistDict(VLPlistParseInfo* info);
// With `curr` behind the "{"; succeeds with `curr` on what should be the "}".
bool skipPlistDictContent(VLPlistParseInfo* info);
bool skipPlistArray(VLPlistParseInfo* info);
// With `curr` behind the "("; succeeds behind the ")".
bool skipPlistArrayContent(VLPlistParseInfo* info);
// A string value up to, not including, its ";".
bool skipPlistStringValue(VLPlistParseInfo* info);
