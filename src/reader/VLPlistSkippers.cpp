#include "reader/VLPlistSkippers.h"

#include "reader/VLPlistLexical.h"

#include <cstring>

namespace {

bool isQuote(uint8_t c)
{
    return c == '"' || c == '\'';
}

void skipLineSpace(VLPlistParseInfo* info)
{
    info->curr = skipPlistLineSpace(info->curr);
}

bool atEnd(const VLPlistParseInfo* info)
{
    return info->curr >= info->end || *info->curr == 0;
}

bool skipUnquoted(VLPlistParseInfo* info)
{
    const uint8_t* start = info->curr;
    info->curr = skipPlistBytes(start, isPlistUnquotedCharacter);
    return info->curr != start;
}

// Up to and over ">", with `curr` behind the "<". Data that spans lines is not ours to skip.
bool skipData(VLPlistParseInfo* info)
{
    for (const uint8_t* p = info->curr; p < info->end; ++p) {
        if (*p == '>') {
            info->curr = p + 1;
            info->error.reset();
            return true;
        }
        if (*p == '\n' || *p == 0) return false;
    }
    return false;
}

// One "key = value;" or "key;", with `curr` behind the key.
bool skipEntryAfterKey(VLPlistParseInfo* info)
{
    skipLineSpace(info);
    if (*info->curr == '=') {
        ++info->curr;
        if (!skipPlistValue(info)) return false;
        skipLineSpace(info);
        if (*info->curr != ';') return false;
    }
    if (*info->curr == ';') {
        ++info->curr;
        return true;
    }
    if (!atEnd(info))
        info->error = makePlistFileError(VLPlistSyntaxErrorCode, "Unexpected ';' or '=' after key at line %d",
                                         plistLineNumber(info->curr, info->begin));
    return false;
}

// The content and the "}", with `curr` behind the "{".
bool skipDictBody(VLPlistParseInfo* info)
{
    if (!skipPlistDictContent(info)) return false;
    skipLineSpace(info);
    if (atEnd(info)) return false;
    ++info->curr; // the "}", which well-formed text has here
    return true;
}

} // namespace

bool skipPlistQuotedString(VLPlistParseInfo* info)
{
    const uint8_t* const start = info->curr;
    const uint8_t* p = start;
    while (p < info->end) {
        auto quote = static_cast<const uint8_t*>(std::memchr(p, '"', static_cast<size_t>(info->end - p)));
        if (!quote) return false;
        const uint8_t* backslashes = quote;
        while (backslashes > start && backslashes[-1] == '\\') --backslashes;
        p = quote + 1;
        if ((quote - backslashes) % 2 == 0) {
            info->curr = p;
            info->error.reset();
            return true;
        }
    }
    return false;
}

bool skipPlistKey(VLPlistParseInfo* info)
{
    skipLineSpace(info);
    if (info->inQuotedString && *info->curr == '\\') ++info->curr;
    if (isQuote(*info->curr)) {
        ++info->curr;
        return skipPlistQuotedString(info);
    }
    return skipUnquoted(info);
}

bool skipPlistValue(VLPlistParseInfo* info)
{
    skipLineSpace(info);
    if (info->inQuotedString && *info->curr == '\\') ++info->curr;
    switch (*info->curr) {
    case '"':
    case '\'': ++info->curr; return skipPlistQuotedString(info);
    case '(': ++info->curr; return skipPlistArrayContent(info);
    case '{': ++info->curr; return skipDictBody(info);
    case '<': ++info->curr; return skipData(info);
    default: return skipUnquoted(info);
    }
}

bool skipPlistArrayContent(VLPlistParseInfo* info)
{
    for (;;) {
        skipLineSpace(info);
        if (*info->curr == ')') break;
        if (!skipPlistValue(info)) return false;
        skipLineSpace(info);
        if (*info->curr != ',') break;
        ++info->curr;
    }
    if (atEnd(info)) return false;
    ++info->curr; // the ")", which well-formed text has here
    info->error.reset();
    return true;
}

bool skipPlistArray(VLPlistParseInfo* info)
{
    if (!skipPlistSpace(info) || *info->curr != '(') return false;
    ++info->curr;
    return skipPlistArrayContent(info);
}

bool skipPlistDictContent(VLPlistParseInfo* info)
{
    for (;;) {
        skipLineSpace(info);
        if (atEnd(info)) return false;
        const uint8_t* key = info->curr;
        if (!skipPlistKey(info)) {
            // No key starts here, so this is where the dictionary ends; a key that began and
            // broke off is a broken dictionary.
            if (info->curr != key) return false;
            info->error.reset();
            return true;
        }
        if (!skipEntryAfterKey(info)) return false;
    }
}

bool skipPlistDict(VLPlistParseInfo* info)
{
    if (!skipPlistSpace(info) || *info->curr != '{') return false;
    ++info->curr;
    return skipDictBody(info);
}

bool skipPlistStringValue(VLPlistParseInfo* info)
{
    if (!skipPlistSpace(info)) return false;
    if (isQuote(*info->curr)) {
        ++info->curr;
        return skipPlistQuotedString(info) && *info->curr == ';';
    }
    return skipUnquoted(info);
}
