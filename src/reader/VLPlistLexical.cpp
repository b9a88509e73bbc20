#include "reader/VLPlistLexical.h"

#include <cstring>

namespace {

// Behind the next "*/" from `p`, or the end for a comment left open.
const uint8_t* skipBlockComment(const uint8_t* p, const uint8_t* end)
{
    while (p < end) {
        auto star = static_cast<const uint8_t*>(std::memchr(p, '*', static_cast<size_t>(end - p)));
        if (!star) break;
        if (star + 1 < end && star[1] == '/') return star + 2;
        p = star + 1;
    }
    return end;
}

// Onto the next LF or CR from `p`, or the end.
const uint8_t* skipLineComment(const uint8_t* p, const uint8_t* end)
{
    while (p < end && *p != '\n' && *p != '\r') ++p;
    return p;
}

} // namespace

bool skipPlistSpace(VLPlistParseInfo* info)
{
    const uint8_t* end = info->end;
    while (info->curr < end) {
        const uint8_t* token = info->curr;
        uint8_t c = *info->curr++;
        if (isPlistFullSpace(c)) continue;
        // Looks at the third and fourth byte from the lead byte on purpose, so that a line or
        // paragraph separator itself does not pass as space.
        if (c == 0xE2 && token[2] == 0x80 && (token[3] == 0xA8 || token[3] == 0xA9)) {
            info->curr = token + 3;
            continue;
        }
        if (c == '\\' && info->inQuotedString && (*info->curr == 't' || *info->curr == 'n')) {
            ++info->curr;
            continue;
        }
        if (c == '/' && info->curr < end && *info->curr == '*') {
            info->curr = skipBlockComment(info->curr + 1, end);
            continue;
        }
        if (c == '/' && info->curr < end && *info->curr == '/') {
            info->curr = skipLineComment(info->curr + 1, end);
            continue;
        }
        info->curr = token;
        return true;
    }
    return false;
}

const uint8_t* plistQuotedStringEnd(const uint8_t* start, const uint8_t* end)
{
    for (const uint8_t* p = start; p < end;) {
        auto quote = static_cast<const uint8_t*>(std::memchr(p, '"', static_cast<size_t>(end - p)));
        if (!quote) return nullptr;
        const uint8_t* backslashes = quote;
        while (backslashes > start && backslashes[-1] == '\\') --backslashes;
        p = quote + 1;
        if ((quote - backslashes) % 2 == 0) return p;
    }
    return nullptr;
}

const uint8_t* plistDataEnd(const uint8_t* start, const uint8_t* end)
{
    for (const uint8_t* p = start; p < end; ++p) {
        if (*p == '>') return p + 1;
        if (*p == '\n' || *p == 0) return nullptr;
    }
    return nullptr;
}
