#include "reader/VLPlistTypedReaders.h"

#include "platform/VLUnsetValue.h"
#include "reader/VLPlistLexical.h"
#include "reader/VLPlistNumbers.h"
#include "reader/VLPlistParser.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

// Coordinates beyond this are taken for garbage and read as 0.
constexpr double pointLimit = 1000000.0;
constexpr double translationLimit = 30000.0;
// Below this a transform's column would collapse a point.
constexpr double degenerateScale = 1e-9;

double withinLimit(double value, double limit)
{
    return value < -limit || value > limit ? 0.0 : value;
}

Point invalidPoint(VLPlistParseInfo* info)
{
    reportPlistError(info, "Invalid point definition");
    return {VLUnsetValue, 0.0};
}

void normaliseTransform(double m[6])
{
    if (std::fabs(m[0]) < degenerateScale && std::fabs(m[1]) < degenerateScale) m[0] = 0.1;
    if (std::fabs(m[2]) < degenerateScale && std::fabs(m[3]) < degenerateScale) m[3] = 0.1;
    m[4] = withinLimit(m[4], translationLimit);
    m[5] = withinLimit(m[5], translationLimit);
}

} // namespace

bool matchPlistKey(VLPlistParseInfo* info, const char* key, size_t length)
{
    const uint8_t* p = info->curr;
    // Record readers try their keys one after another, so most tries fail, and the first byte tells.
    if (p >= info->end || *p != static_cast<uint8_t>(*key) || static_cast<size_t>(info->end - p) < length ||
        std::memcmp(p, key, length) != 0)
        return false;
    // Record files are written as "key = value;", so a space is taken to stand before the "=".
    if (p[length] == ' ') {
        info->curr = p + length + 2;
        return true;
    }
    if (p[length] == '=') {
        info->curr = p + length + 1;
        return true;
    }
    return false;
}

Value parsePlistStringValue(VLPlistParseInfo* info)
{
    if (!skipPlistSpace(info)) return {};
    if (info->inQuotedString && *info->curr == '\\') ++info->curr;
    uint8_t c = *info->curr++;
    if (c == '"' || c == '\'') {
        Value string = parseQuotedPlistString(info, c);
        if (string.isNull()) return {};
        if (*info->curr != ';') {
            reportPlistError(info, "No semicolon at the end of the string");
            return {};
        }
        return string;
    }
    --info->curr;
    if (isPlistUnquotedCharacter(c)) return parseUnquotedPlistString(info, true);
    if (!info->error) reportPlistError(info, "Unexpected character “0x%x”", c);
    return {};
}

double parsePlistDoubleValue(VLPlistParseInfo* info)
{
    if (!skipPlistSpace(info)) return 0.0;
    bool quoted = *info->curr == '"';
    if (quoted) ++info->curr;
    double value = scanPlistDecimal(info->curr, false);
    if (quoted && *info->curr == '"') ++info->curr;
    return value;
}

bool parsePlistBoolValue(VLPlistParseInfo* info)
{
    const uint8_t* p = skipPlistLineSpace(info->curr);
    if (p[0] == 'Y' && p[1] == 'E' && p[2] == 'S') {
        info->curr = p + 3;
        return true;
    }
    if (p[0] == 'N' && p[1] == 'O') {
        info->curr = p + 2;
        return false;
    }
    size_t length = 0;
    int64_t value = parseIntegerAt(p, &length);
    info->curr = p + length;
    return value != 0;
}

Point parsePlistPoint(VLPlistParseInfo* info)
{
    const uint8_t* p = skipPlistLineSpace(info->curr);
    info->curr = p;
    Point point;
    size_t i = 0;
    if (p[0] == '"' && p[1] == '{') {
        i = 2;
        point.x = parseDoubleAt(p, &i);
        i += 1; // the separator
        point.y = parseDoubleAt(p, &i);
        i += 2; // "}" and the closing quote
    } else if (p[0] == '(') {
        i = static_cast<size_t>(skipPlistTabLinefeedAndSpace(p + 1) - p);
        point.x = parseDoubleAt(p, &i);
        i = static_cast<size_t>(
            skipPlistBytes(p + i, [](uint8_t c) { return c == '\t' || c == '\n' || c == ' ' || c == ','; }) - p);
        point.y = parseDoubleAt(p, &i);
        i = static_cast<size_t>(skipPlistTabLinefeedAndSpace(p + i) - p) + 1; // and the ")"
    } else {
        return invalidPoint(info);
    }
    info->curr = p + i;
    if (*info->curr != ';') return invalidPoint(info);
    return {withinLimit(point.x, pointLimit), withinLimit(point.y, pointLimit)};
}

bool parsePlistNumberList(VLPlistParseInfo* info, VLPlistNumberCallback callback, void* context)
{
    const uint8_t* p = skipPlistLineSpace(info->curr);
    if (*p != '(') {
        info->curr = p + 1;
        return true;
    }
    for (p = skipPlistLineSpace(p + 1);; p = skipPlistLineSpace(p)) {
        if (!isPlistDigit(*p) && *p != '-') {
            info->curr = p;
            reportPlistError(info, "Unexpected character “0x%x”", *p);
            return false;
        }
        size_t length = 0;
        callback(context, parseDoubleAt(p, &length));
        p = skipPlistLineSpace(p + length);
        if (*p == ',') p = skipPlistLineSpace(p + 1);
        if (*p == ')') break;
    }
    info->curr = p + 1;
    return true;
}

void parsePlistTransform(VLPlistParseInfo* info, double transform[6])
{
    const uint8_t* p = skipPlistLineSpace(info->curr);
    info->curr = p;
    if (*p != '{' && *p != '"') {
        reportPlistError(info, "Unexpected character “0x%x” (expected “%s”)", *p, "\" or {");
        info->curr = p + 1;
        return;
    }
    double m[6];
    size_t i = p[1] == '{' ? 2 : 1;
    for (int k = 0; k < 6; ++k) {
        if (k > 0) ++i; // one separator byte
        m[k] = parseDoubleAt(p, &i);
    }
    normaliseTransform(m);
    std::copy(m, m + 6, transform);
    info->curr = p + i + 2;
}

std::optional<Color> parsePlistColor(VLPlistParseInfo* info)
{
    double c[10] = {255.0, 255.0, 255.0, 1.0};
    size_t length = 0;
    int count = 10;
    if (!parseDoubleTupleAt(info->curr, &length, c, &count)) {
        ++info->curr;
        return std::nullopt;
    }
    info->curr += length + 1;
    return colorWithComponents_count(c, count);
}

Color colorWithComponents_count(double c[10], int count)
{
    for (int i = 0; i < 10; ++i) c[i] /= 255.0;
    switch (count) {
    case 2: return Color::colorWithCalibratedWhite_alpha(c[0], c[1]);
    case 5: return Color::colorWithDeviceCyan_magenta_yellow_black_alpha(c[0], c[1], c[2], c[3], c[4]);
    default: return Color::colorWithCalibratedRed_green_blue_alpha(c[0], c[1], c[2], count >= 4 ? c[3] : 1.0);
    }
}
