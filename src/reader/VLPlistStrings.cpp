#include "platform/VLException.h"
#include "reader/VLPlistLexical.h"
#include "reader/VLPlistNumbers.h"
#include "reader/VLPlistParser.h"

#include <cmath>
#include <limits>
#include <string_view>

namespace {

void appendCodePoint(std::string& buffer, uint32_t c)
{
    if (c < 0x80) {
        buffer += static_cast<char>(c);
    } else if (c < 0x800) {
        buffer += static_cast<char>(0xC0 | (c >> 6));
        buffer += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        buffer += static_cast<char>(0xE0 | (c >> 12));
        buffer += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        buffer += static_cast<char>(0x80 | (c & 0x3F));
    }
}

bool isOctalDigit(uint8_t c)
{
    return c >= '0' && c <= '7';
}

// Appends the escape whose letter stands at `p`; answers the position behind it.
const uint8_t* appendEscape(std::string& buffer, const uint8_t* p, const uint8_t* end)
{
    uint8_t e = *p++;
    uint32_t c = e;
    if (isOctalDigit(e)) {
        c = e - '0';
        if (isOctalDigit(*p)) {
            c = c * 8 + (*p++ - '0');
            if (p < end && isOctalDigit(*p)) c = c * 8 + (*p++ - '0');
        }
        c %= 256;
    } else if (e == 'U') {
        c = 0;
        for (int tries = 0; tries < 4 && p < end && plistHexDigitValue(*p) >= 0; ++tries)
            c = c * 16 + static_cast<uint32_t>(plistHexDigitValue(*p++));
    } else {
        static constexpr std::string_view letters = "abfnrtv";
        static constexpr std::string_view controls = "\a\b\f\n\r\t\v";
        size_t at = letters.find(static_cast<char>(e));
        if (at != std::string_view::npos) c = static_cast<uint8_t>(controls[at]);
    }
    appendCodePoint(buffer, c);
    return p;
}

// Strict UTF-8: no overlong forms, no surrogates, nothing above U+10FFFF.
bool isValidUTF8(std::string_view text)
{
    auto s = reinterpret_cast<const uint8_t*>(text.data());
    auto end = s + text.size();
    while (s < end) {
        uint8_t c = *s++;
        if (c < 0x80) continue;
        int trailing = c >= 0xF0 ? 3 : c >= 0xE0 ? 2 : c >= 0xC2 ? 1 : -1;
        if (trailing < 0 || c > 0xF4 || end - s < trailing) return false;
        uint32_t code = c & (0x3F >> trailing);
        for (int i = 0; i < trailing; ++i, ++s) {
            if ((*s & 0xC0) != 0x80) return false;
            code = code << 6 | (*s & 0x3F);
        }
        bool overlong = (trailing == 2 && code < 0x800) || (trailing == 3 && code < 0x10000);
        if (overlong || (code >= 0xD800 && code <= 0xDFFF) || code > 0x10FFFF) return false;
    }
    return true;
}

std::shared_ptr<const std::string> uniqued(VLPlistParseInfo* info, std::string buffer)
{
    auto string = std::make_shared<const std::string>(std::move(buffer));
    if (info->mutabilityOption == 2 || !info->stringSet) return string;
    return *info->stringSet->insert(std::move(string)).first;
}

int32_t roundedToInt32(double v)
{
    double r = std::round(v);
    if (r <= std::numeric_limits<int32_t>::min()) return std::numeric_limits<int32_t>::min();
    if (r >= std::numeric_limits<int32_t>::max()) return std::numeric_limits<int32_t>::max();
    return static_cast<int32_t>(r);
}

Value numberFromRun(const uint8_t* run)
{
    double v = parseDoubleAt(run, nullptr);
    double magnitude = std::fabs(v);
    if (magnitude - std::floor(magnitude) < 0.001) return Value(static_cast<int>(roundedToInt32(v)));
    return Value(v);
}

} // namespace

Value parseQuotedPlistString(VLPlistParseInfo* info, uint8_t quote)
{
    const uint8_t* const start = info->curr;
    const uint8_t* const end = info->end;
    const uint8_t* p = start;
    const uint8_t* flushed = start;
    std::string buffer;
    bool escaped = false;
    size_t closingLength = 1;
    while (p < end) {
        uint8_t c = *p;
        if (c == quote) break;
        if (c != '\\') {
            ++p;
            continue;
        }
        if (info->inQuotedString && p[1] == quote) {
            closingLength = 2;
            break;
        }
        buffer.append(flushed, p);
        // Inside another string an escaped quote arrives as three backslashes and the quote.
        if (info->inQuotedString && p[1] == '\\' && p[2] == '\\' && p[3] == '"') p += 2;
        p = appendEscape(buffer, p + 1, end);
        flushed = p;
        escaped = true;
    }
    if (p >= end) {
        info->curr = start;
        reportPlistError(info, "Unterminated quoted string");
        return {};
    }
    Value result;
    if (!escaped) {
        result = Value(std::string_view(reinterpret_cast<const char*>(start), static_cast<size_t>(p - start)));
    } else {
        buffer.append(flushed, p);
        if (!isValidUTF8(buffer)) {
            info->curr = p;
            reportPlistError(info, "Could not convert string to internal representation");
            return {};
        }
        result = Value(uniqued(info, std::move(buffer)));
    }
    info->curr = p + closingLength;
    info->error.reset();
    return result;
}

Value parseUnquotedPlistString(VLPlistParseInfo* info, bool forceString)
{
    const uint8_t* const start = info->curr;
    const uint8_t* p = start;
    bool number = !forceString;
    while (p < info->end && isPlistUnquotedCharacter(*p)) {
        number = number && (isPlistDigit(*p) || *p == '.' || (*p == '-' && p == start));
        ++p;
    }
    info->curr = p;
    if (p == start || p >= info->end) {
        reportPlistError(info, "Unexpected EOF");
        return {};
    }
    if (info->mutabilityOption == 2)
        VLException::raiseNotImplemented(409, "CFTypeRef parseUnquotedPlistString(VLPlistParseInfo *, _Bool)");
    if (number) return numberFromRun(start);
    return Value(std::string_view(reinterpret_cast<const char*>(start), static_cast<size_t>(p - start)));
}
