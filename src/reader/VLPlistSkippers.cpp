#include "reader/VLPlistSkippers.h"

#include "reader/VLPlistLexical.h"
#include "reader/VLPlistSkippersPath.h"

#include <bit>
#include <cstring>
#ifdef __SSE2__
#include <emmintrin.h>
#endif

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

// Behind the ")" of "(a,b,c)" from behind its "(", with nothing but unquoted values and commas
// between; null for anything else.
const uint8_t* skipPlainTuple(const uint8_t* p)
{
    for (;;) {
        const uint8_t* token = skipPlistBytes(p, isPlistUnquotedCharacter);
        if (token == p) return nullptr;
        if (*token == ')') return token + 1;
        if (*token != ',') return nullptr;
        p = token + 1;
    }
}

#ifdef __SSE2__
// Bytes of `bytes` from lo to hi.
__m128i bytesInRange(__m128i bytes, uint8_t lo, uint8_t hi)
{
    __m128i shifted = _mm_add_epi8(bytes, _mm_set1_epi8(static_cast<char>(0x80 - lo)));
    return _mm_cmplt_epi8(shifted, _mm_set1_epi8(static_cast<char>(0x80 + hi - lo + 1)));
}

unsigned bytesEqual(__m128i bytes, char c)
{
    return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(c))));
}

// skipPlainTuple for a tuple whose ")" lies within 16 bytes, checked with one load and no branch
// per value, whose lengths the branch predictor can't guess. The load may reach into the zero page
// behind the document, never past it, since `p` never passes a zero byte.
const uint8_t* skipShortPlainTuple(const uint8_t* p)
{
    __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
    unsigned close = bytesEqual(bytes, ')');
    if (close == 0) return skipPlainTuple(p);
    // Commas, "-./", digits and ":" are one range; letters are one range in lower case.
    __m128i allowed = _mm_or_si128(bytesInRange(bytes, ',', ':'),
                                   bytesInRange(_mm_or_si128(bytes, _mm_set1_epi8(0x20)), 'a', 'z'));
    unsigned allowedMask = static_cast<unsigned>(_mm_movemask_epi8(allowed)) | bytesEqual(bytes, '$') |
                           bytesEqual(bytes, '_');
    unsigned length = static_cast<unsigned>(std::countr_zero(close));
    unsigned inside = (1u << length) - 1;
    unsigned commas = bytesEqual(bytes, ',') & inside;
    // Every value holds a byte: no comma opens, closes or follows another.
    bool plain = length > 0 && (allowedMask & inside) == inside && (commas & 1) == 0 &&
                 (commas >> (length - 1)) == 0 && (commas & (commas >> 1)) == 0;
    return plain ? p + length + 1 : nullptr;
}
#else
const uint8_t* skipShortPlainTuple(const uint8_t* p)
{
    return skipPlainTuple(p);
}
#endif

// The scalar rules. Their recursion stays on this path: a value the structural scan gave up on
// is not offered to it again level by level.
bool skipValue(VLPlistParseInfo* info);
bool skipArrayContent(VLPlistParseInfo* info);
bool skipDictContent(VLPlistParseInfo* info);

// A value with `curr` past line space. Unquoted values and plain tuples (the nodes of paths) are
// most of a document's bytes; they pass here without the dispatch of skipValue, which would
// end at the same place for them.
bool skipValueAfterSpace(VLPlistParseInfo* info)
{
    const uint8_t* token = skipPlistBytes(info->curr, isPlistUnquotedCharacter);
    if (token != info->curr) {
        info->curr = token;
        return true;
    }
    const uint8_t* tuple = *token == '(' ? skipShortPlainTuple(token + 1) : nullptr;
    if (!tuple) return skipValue(info);
    info->curr = tuple;
    info->error.reset();
    return true;
}

// Up to and over ">", with `curr` behind the "<".
bool skipData(VLPlistParseInfo* info)
{
    const uint8_t* behind = plistDataEnd(info->curr, info->end);
    if (!behind) return false;
    info->curr = behind;
    info->error.reset();
    return true;
}

// One "key = value;" or "key;", with `curr` behind the key.
bool skipEntryAfterKey(VLPlistParseInfo* info)
{
    skipLineSpace(info);
    if (*info->curr == '=') {
        ++info->curr;
        skipLineSpace(info);
        if (!skipValueAfterSpace(info)) return false;
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
    if (!skipDictContent(info)) return false;
    skipLineSpace(info);
    if (atEnd(info)) return false;
    ++info->curr; // the "}", which well-formed text has here
    return true;
}

bool skipValue(VLPlistParseInfo* info)
{
    skipLineSpace(info);
    if (info->inQuotedString && *info->curr == '\\') ++info->curr;
    switch (*info->curr) {
    case '"':
    case '\'': ++info->curr; return skipPlistQuotedString(info);
    case '(': ++info->curr; return skipArrayContent(info);
    case '{': ++info->curr; return skipDictBody(info);
    case '<': ++info->curr; return skipData(info);
    default: return skipUnquoted(info);
    }
}

bool skipArrayContent(VLPlistParseInfo* info)
{
    VLPlistNesting nesting(info);
    if (!nesting.allowed) return false;
    for (;;) {
        skipLineSpace(info);
        // The scan is one chain of dependent loads, which the hardware prefetcher alone does not
        // keep fed; a hint a kilobyte ahead is harmless past the end, since prefetches never fault.
        __builtin_prefetch(info->curr + 1024);
        if (*info->curr == ')') break;
        if (!skipValueAfterSpace(info)) return false;
        skipLineSpace(info);
        if (*info->curr != ',') break;
        ++info->curr;
    }
    if (atEnd(info)) return false;
    ++info->curr; // the ")", which well-formed text has here
    info->error.reset();
    return true;
}

bool skipDictContent(VLPlistParseInfo* info)
{
    VLPlistNesting nesting(info);
    if (!nesting.allowed) return false;
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

// The closing bracket of the list or dictionary whose content starts at `content`, as the
// structural scan finds it; null where it leaves the value to the scalar rules.
const uint8_t* closingByStructure(const VLPlistParseInfo* info, const uint8_t* content, bool dictionary)
{
    VLPlistStructureScan scan = plistStructureScan();
    // The scan reads whole blocks, which stay within the zero bytes behind the text only when they
    // start within it.
    if (!scan || info->depth >= VLPlistMaximumNesting || content > info->end) return nullptr;
    return scan(content, info->end, dictionary, VLPlistMaximumNesting - info->depth);
}

bool passTo(VLPlistParseInfo* info, const uint8_t* position)
{
    info->curr = position;
    info->error.reset();
    return true;
}

// The list or dictionary that opens at `curr`, passed whole by the structural scan if it can.
bool skipContainerByStructure(VLPlistParseInfo* info)
{
    if (*info->curr != '(' && *info->curr != '{') return false;
    const uint8_t* closing = closingByStructure(info, info->curr + 1, *info->curr == '{');
    return closing && passTo(info, closing + 1);
}

} // namespace

bool skipPlistQuotedString(VLPlistParseInfo* info)
{
    const uint8_t* behind = plistQuotedStringEnd(info->curr, info->end);
    return behind && passTo(info, behind);
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
    return skipContainerByStructure(info) || skipValue(info);
}

bool skipPlistArrayContent(VLPlistParseInfo* info)
{
    const uint8_t* closing = closingByStructure(info, info->curr, false);
    return closing ? passTo(info, closing + 1) : skipArrayContent(info);
}

bool skipPlistArray(VLPlistParseInfo* info)
{
    if (!skipPlistSpace(info) || *info->curr != '(') return false;
    if (skipContainerByStructure(info)) return true;
    ++info->curr;
    return skipArrayContent(info);
}

bool skipPlistDictContent(VLPlistParseInfo* info)
{
    const uint8_t* closing = closingByStructure(info, info->curr, true);
    return closing ? passTo(info, closing) : skipDictContent(info);
}

bool skipPlistDict(VLPlistParseInfo* info)
{
    if (!skipPlistSpace(info) || *info->curr != '{') return false;
    if (skipContainerByStructure(info)) return true;
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
