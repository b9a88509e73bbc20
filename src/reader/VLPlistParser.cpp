#include "reader/VLPlistParser.h"

#include "reader/VLPlistLexical.h"

namespace {

bool isQuote(uint8_t c)
{
    return c == '"' || c == '\'';
}

// Steps over a line or paragraph separator the way the data reader always has: two of its bytes
// pass as space and the third then fails as a digit.
bool skipDataSpace(VLPlistParseInfo* info, uint8_t c)
{
    if (isPlistLineSpace(c)) return true;
    if (c == 0xE2 && info->curr[0] == 0x80 && (info->curr[1] == 0xA8 || info->curr[1] == 0xA9)) {
        ++info->curr;
        return true;
    }
    return false;
}

// Hexadecimal pairs up to ">", with `curr` behind the "<".
Value parseData(VLPlistParseInfo* info)
{
    ValueData data;
    while (info->curr < info->end && *info->curr != '>') {
        uint8_t c = *info->curr++;
        if (skipDataSpace(info, c)) continue;
        int high = plistHexDigitValue(c);
        if (high < 0) {
            reportPlistError(info, "Malformed data byte group: invalid hex");
            return {};
        }
        int low = info->curr < info->end ? plistHexDigitValue(*info->curr) : -1;
        if (low < 0) {
            reportPlistError(info, "Malformed data byte group: uneven length");
            return {};
        }
        ++info->curr;
        data.push_back(static_cast<uint8_t>(high << 4 | low));
    }
    info->error.reset();
    if (info->curr >= info->end) {
        reportPlistError(info, "Expected terminating '>' for data");
        return {};
    }
    ++info->curr;
    return Value(std::move(data));
}

// A dictionary key is always a string, whatever the key reader made of it.
std::string keyString(const Value& key)
{
    return key.isString() ? key.string() : key.description();
}

Value parseKey(VLPlistParseInfo* info)
{
    if (info->inQuotedString && *info->curr == '\\') ++info->curr;
    uint8_t c = *info->curr;
    if (isQuote(c)) {
        ++info->curr;
        return parseQuotedPlistString(info, c);
    }
    if (isPlistUnquotedCharacter(c)) return parseUnquotedPlistString(info, info->forceStringKeys);
    return {};
}

// One "key = value;" or "key;" into `dictionary`. False when no key starts here (`*failed`
// false) or when the entry is broken (`*failed` true, with the error reported).
bool parseEntry(VLPlistParseInfo* info, ValueDictionary& dictionary, bool* failed)
{
    Value key = parseKey(info);
    if (key.isNull()) return false;
    *failed = true;
    if (!skipPlistSpace(info)) {
        reportPlistError(info, "Missing ';'");
        return false;
    }
    Value value = key;
    if (*info->curr == '=') {
        ++info->curr;
        value = parsePlistValue(info, true);
        if (value.isNull()) return false;
    } else if (*info->curr != ';') {
        reportPlistError(info, "Expect ';' or '=' after key");
        return false;
    }
    dictionary.insert_or_assign(keyString(key), std::move(value));
    if (!skipPlistSpace(info) || *info->curr != ';') {
        reportPlistError(info, "Missing ';'");
        return false;
    }
    ++info->curr;
    *failed = false;
    return true;
}

// Space, then the byte `opening`, which is stepped over.
bool expectOpening(VLPlistParseInfo* info, uint8_t opening)
{
    if (!skipPlistSpace(info)) return false;
    if (*info->curr != opening) {
        reportPlistError(info, "Unexpected character “0x%x” (expected “%c”)", *info->curr, opening);
        return false;
    }
    ++info->curr;
    return true;
}

} // namespace

Value parsePlistValue(VLPlistParseInfo* info, bool required)
{
    if (!skipPlistSpace(info)) {
        if (required) reportPlistError(info, "Unexpected EOF while parsing plist");
        return {};
    }
    uint8_t c = *info->curr++;
    if (info->inQuotedString && c == '\\') c = *info->curr++;
    if (isQuote(c)) return parseQuotedPlistString(info, c);
    if (c == '(') return parsePlistArrayContent(info);
    if (c == '{') return parsePlistDictContent(info);
    if (c == '<') return parseData(info);
    --info->curr;
    if (isPlistUnquotedCharacter(c)) return parseUnquotedPlistString(info, false);
    if (required) reportPlistError(info, "Unexpected character “0x%x”", c);
    return {};
}

// Deeper structures fail the way a broken one does, with the line where they went too deep.
static bool tooDeep(VLPlistParseInfo* info, const VLPlistNesting& nesting)
{
    if (nesting.allowed) return false;
    reportPlistError(info, "Too deeply nested");
    return true;
}

Value parsePlistArrayContent(VLPlistParseInfo* info)
{
    VLPlistNesting nesting(info);
    if (tooDeep(info, nesting)) return {};
    ValueArray array;
    for (Value item = parsePlistValue(info, false); !item.isNull(); item = parsePlistValue(info, false)) {
        array.push_back(std::move(item));
        if (!skipPlistSpace(info)) {
            reportPlistError(info, "Expected ',' for array");
            return {};
        }
        if (*info->curr != ',') break;
        ++info->curr;
    }
    if (info->error) return {};
    if (!skipPlistSpace(info) || *info->curr != ')') {
        reportPlistError(info, "Expected terminating ')' for array");
        return {};
    }
    ++info->curr;
    info->error.reset();
    return Value(std::move(array));
}

Value parsePlistDictContent(VLPlistParseInfo* info)
{
    VLPlistNesting nesting(info);
    if (tooDeep(info, nesting)) return {};
    ValueDictionary dictionary;
    bool failed = false;
    while (skipPlistSpace(info) && parseEntry(info, dictionary, &failed)) {
    }
    if (failed) return {};
    info->error.reset();
    if (!skipPlistSpace(info) || *info->curr != '}') {
        reportPlistError(info, "Expected terminating '}' for dictionary");
        return {};
    }
    ++info->curr;
    return Value(std::move(dictionary));
}

Value parsePlistDict(VLPlistParseInfo* info)
{
    return expectOpening(info, '{') ? parsePlistDictContent(info) : Value();
}

Value parsePlistMutableDict(VLPlistParseInfo* info)
{
    uint64_t saved = info->mutabilityOption;
    info->mutabilityOption = 1;
    Value dictionary = parsePlistDict(info);
    info->mutabilityOption = saved;
    return dictionary;
}

Value parsePlistArray(VLPlistParseInfo* info)
{
    return expectOpening(info, '(') ? parsePlistArrayContent(info) : Value();
}
