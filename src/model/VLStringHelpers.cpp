#include "model/VLStringHelpers.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>

namespace {

bool onlyCharactersOf(std::string_view s, std::string_view allowed)
{
    return s.find_first_not_of(allowed) == std::string_view::npos;
}

int hexDigitValue(char c)
{
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
}

constexpr int32_t notHex = 0x7fffffff;

} // namespace

bool isNumber(std::string_view s) { return onlyCharactersOf(s, "0123456789+-."); }

bool isAllDigits(std::string_view s) { return onlyCharactersOf(s, "0123456789"); }

bool isHexCapitalString(std::string_view s) { return onlyCharactersOf(s, "0123456789ABCDEF"); }

bool isHexCapitalStringWithLength(std::string_view s, size_t length)
{
    return s.size() == length && isHexCapitalString(s);
}

int32_t hexStringToInt(std::string_view s)
{
    if (s.empty()) return notHex;
    // Unsigned, so that digits beyond the eighth and negation wrap instead of overflowing.
    uint32_t result = 0;
    unsigned shift = 0;
    for (size_t i = s.size(); i-- > 0;) {
        char c = s[i];
        if (c == ' ') continue;
        if (c == '-') {
            result = 0 - result;
            if (i == 0) break;
            continue;
        }
        int digit = hexDigitValue(c);
        if (digit < 0) return notHex;
        if (shift < 32) result += static_cast<uint32_t>(digit) << shift;
        shift += 4;
    }
    return static_cast<int32_t>(result);
}

std::string hexStringFromInt(int64_t value)
{
    // Every glyph's code points pass here while a document is read, too often for snprintf.
    auto digits = static_cast<uint32_t>(value < 0 ? 0 - static_cast<uint64_t>(value) : static_cast<uint64_t>(value));
    char text[8];
    char* start = std::end(text);
    do *--start = "0123456789ABCDEF"[digits & 15];
    while (digits >>= 4);
    std::string result = value < 0 ? "-" : "";
    return result.append(start, std::end(text));
}

double lenientDoubleValue(std::string_view s)
{
    std::string text(s);
    std::replace(text.begin(), text.end(), ',', '.');
    return std::strtod(text.c_str(), nullptr);
}

std::string stringByAppendingDotSuffix(std::string_view s, std::string_view suffix)
{
    std::string result(s);
    if (suffix.empty()) return result;
    if (suffix.front() != '.') result += '.';
    return result.append(suffix);
}

std::optional<std::string> dotSuffix(std::string_view s)
{
    size_t dot = s.find('.');
    if (dot == std::string_view::npos) return std::nullopt;
    return std::string(s.substr(dot));
}

std::string stringByDeletingDotSuffix(std::string_view s) { return std::string(s.substr(0, s.find('.'))); }

std::string stringByDeletingLastDotSuffix(std::string_view s) { return std::string(s.substr(0, s.rfind('.'))); }
