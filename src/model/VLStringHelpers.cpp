#include "model/VLStringHelpers.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>

namespace {

bool onlyOf(const std::string& text, const char* allowed)
{
    return text.find_first_not_of(allowed) == std::string::npos;
}

int hexDigit(char c)
{
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
}

} // namespace

bool isNumber(const std::string& text)
{
    return onlyOf(text, "0123456789+-.");
}

bool isAllDigits(const std::string& text)
{
    return onlyOf(text, "0123456789");
}

bool isHexCapitalString(const std::string& text)
{
    return onlyOf(text, "0123456789ABCDEF");
}

bool isHexCapitalStringWithLength(const std::string& text, size_t length)
{
    return text.size() == length && isHexCapitalString(text);
}

int64_t hexStringToInt(const std::string& text)
{
    constexpr int64_t invalid = 0x7fffffff;
    if (text.empty()) return invalid;
    int64_t value = 0;
    int shift = 0;
    for (size_t i = text.size(); i-- > 0;) {
        char c = text[i];
        if (c == ' ') continue;
        if (c == '-') {
            value = -value;
            if (i == 0) break;
            continue;
        }
        int digit = hexDigit(c);
        if (digit < 0 || shift > 60) return invalid;
        value += static_cast<int64_t>(digit) << shift;
        shift += 4;
    }
    return value;
}

std::string hexStringFromInt(int64_t value)
{
    uint64_t magnitude = value < 0 ? 0 - static_cast<uint64_t>(value) : static_cast<uint64_t>(value);
    char text[16];
    std::snprintf(text, sizeof text, "%s%X", value < 0 ? "-" : "", static_cast<uint32_t>(magnitude));
    return text;
}

double lenientDoubleValue(const std::string& text)
{
    std::string point = text;
    std::replace(point.begin(), point.end(), ',', '.');
    return std::strtod(point.c_str(), nullptr);
}

std::string stringByAppendingDotSuffix(const std::string& text, const std::string& suffix)
{
    if (suffix.empty()) return text;
    return text + (suffix[0] == '.' ? "" : ".") + suffix;
}

std::optional<std::string> dotSuffix(const std::string& text)
{
    size_t dot = text.find('.');
    if (dot == std::string::npos) return std::nullopt;
    return text.substr(dot);
}

std::string stringByDeletingDotSuffix(const std::string& text)
{
    return text.substr(0, text.find('.'));
}

std::string stringByDeletingLastDotSuffix(const std::string& text)
{
    return text.substr(0, text.rfind('.'));
}

size_t countOfChar(const std::string& text, char c)
{
    return static_cast<size_t>(std::count(text.begin(), text.end(), c));
}

std::string stringWithFirstLower(const std::string& text)
{
    std::string result = text;
    if (!result.empty()) result[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(result[0])));
    return result;
}

std::string stringWithFirstUpper(const std::string& text)
{
    std::string result = text;
    if (!result.empty()) result[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(result[0])));
    return result;
}

std::string asciiString(const std::string& text)
{
    std::string result;
    for (size_t i = 0; i < text.size();) {
        unsigned char c = static_cast<unsigned char>(text[i]);
        if (c < 0x80) {
            if (c < 32 || c == 127) {
                char escape[8];
                std::snprintf(escape, sizeof escape, "\\%03o", c);
                result += escape;
            } else {
                if (c == '\\' || c == '"') result += '\\';
                result += static_cast<char>(c);
            }
            ++i;
            continue;
        }
        size_t length = c < 0xE0 ? 2 : c < 0xF0 ? 3 : 4;
        uint32_t code = c & (0x3F >> (length - 1));
        for (size_t k = 1; k < length && i + k < text.size(); ++k)
            code = (code << 6) | (static_cast<unsigned char>(text[i + k]) & 0x3F);
        char escape[12];
        std::snprintf(escape, sizeof escape, "\\U%04X", code);
        result += escape;
        i += length;
    }
    return result;
}

std::string camelCaseToSentenceCase(const std::string& text)
{
    std::string result;
    for (size_t i = 0; i < text.size(); ++i) {
        result += text[i];
        if (i + 1 < text.size() && std::islower(static_cast<unsigned char>(text[i])) &&
            std::isupper(static_cast<unsigned char>(text[i + 1])))
            result += ' ';
    }
    return result;
}

std::string encodeForFilePath(const std::string& text)
{
    std::string result;
    for (char c : text)
        if (static_cast<unsigned char>(c) >= 32 && std::string_view("<>:\"/\\|?*").find(c) == std::string_view::npos)
            result += c;
    return result;
}
