#include "geometry/VLDecomposeMatrix.h"
#include "outline/VLComponent.h"
#include "reader/VLPlistCompact.h"
#include "reader/VLPlistLexical.h"
#include "reader/VLPlistRecordReading.h"
#include "reader/VLPlistRecords.h"

#include <cmath>
#include <cstdio>
#include <cstring>

namespace {

// A compact line is short; sscanf must not see the rest of a mapped document.
constexpr size_t lineWindow = 256;

double translation(double v)
{
    return std::isnan(v) || v < -20000.0 || v > 20000.0 ? 0.0 : v;
}

void moveToLineEnd(VLPlistParseInfo* info)
{
    while (!atPlistEnd(info) && *info->curr != '"' && *info->curr != ';') ++info->curr;
}

template <size_t N> bool matchWord(VLPlistParseInfo* info, const char (&word)[N])
{
    size_t length = N - 1;
    if (static_cast<size_t>(info->end - info->curr) < length || std::memcmp(info->curr, word, length) != 0) return false;
    info->curr += length;
    return true;
}

void placeByMatrix(VLComponent& component, const AffineTransformStruct& m, bool withSlants)
{
    VLDecomposedMatrix parts = VLDecomposeMatrix(m);
    component.setScale({parts.scaleX, parts.scaleY});
    component.setAngle(parts.angle);
    if (withSlants) {
        component.setSlantHorizontal(parts.slantHorizontal);
        component.setSlantVertical(parts.slantVertical);
    }
}

bool readLineOptions(VLComponent& component, VLPlistParseInfo* info)
{
    while (true) {
        if (*info->curr == '"') return ++info->curr, true;
        if (matchWord(info, "noAlign")) {
            component.setAlignment(VLComponent::AlignmentDisabled);
        } else if (matchWord(info, "forceAlign")) {
            component.setAlignment(VLComponent::AlignmentForced);
        } else if (matchWord(info, "anchor:")) {
            component.setAnchor(parsePlistStringValue(info).string());
        } else if (matchWord(info, "lock")) {
            component.setLocked(true);
        } else if (matchWord(info, "piece:") && *info->curr == '{') {
            info->inQuotedString = true;
            Value settings = parsePlistMutableDict(info);
            info->inQuotedString = false;
            component.setPieceSettings(settings.dictionary());
        } else {
            return true;
        }
        if (*info->curr != ';') continue;
        ++info->curr;
    }
}

} // namespace

bool VLComponent::parseVelmorLine_format(VLPlistParseInfo* info, uint8_t)
{
    _alignment = AlignmentAutomatic;
    _componentName = parsePlistStringValue(info).string();
    stepPlistBlindly(info, 1);

    char window[lineWindow + 1] = {};
    std::memcpy(window, info->curr, std::min<size_t>(lineWindow, static_cast<size_t>(info->end - info->curr)));
    float v[6];
    int count = std::sscanf(window, "%f,%f,%f,%f,%f,%f", &v[0], &v[1], &v[2], &v[3], &v[4], &v[5]);
    if (count == 6) {
        const double identity[4] = {1, 0, 0, 1};
        double m[4];
        for (int i = 0; i < 4; ++i) m[i] = std::isnan(v[i]) ? identity[i] : v[i];
        AffineTransformStruct matrix{m[0], m[1], m[2], m[3], translation(v[4]), translation(v[5])};
        placeByMatrix(*this, matrix, true);
        setPositionFast({matrix.tX, matrix.tY});
        moveToLineEnd(info);
    } else if (count == 2) {
        setPositionFast({translation(v[0]), translation(v[1])});
        moveToLineEnd(info);
    } else if (count <= 0) {
        --info->curr;
    }
    if (*info->curr == '"') return ++info->curr, true;
    if (*info->curr != ';') return true;
    ++info->curr;
    return readLineOptions(*this, info);
}

std::shared_ptr<VLComponent> VLComponent::initWithVelmorParser_format(VLPlistParseInfo* info, uint8_t format)
{
    auto component = init();
    VLComponent& c = *component;
    auto readKey = [&] {
        if (matchKey(info, "disableAlignment")) {
            if (readPlistInteger(info) == 1) c.setAlignment(AlignmentDisabled);
            return true;
        }
        if (matchKey(info, "alignment")) return c.setAlignment(static_cast<int8_t>(readPlistInteger(info))), true;
        if (matchKey(info, "orientation")) return c.setOrientation(static_cast<int>(readPlistInteger(info))), true;
        if (matchKey(info, "name")) return c.setComponentName(readPlistString(info)), true;
        if (matchKey(info, "transform")) {
            double m[6] = {1, 0, 0, 1, 0, 0};
            parsePlistTransform(info, m);
            placeByMatrix(c, {m[0], m[1], m[2], m[3], m[4], m[5]}, false);
            c.setPositionFast({m[4], m[5]});
            return true;
        }
        if (matchKey(info, "angle")) return c.setAngle(parsePlistDoubleValue(info)), true;
        if (matchKey(info, "scale")) return c.setScale(parsePlistPoint(info)), true;
        if (matchKey(info, "pos")) return c.setPositionFast(parsePlistPoint(info)), true;
        if (matchKey(info, "anchor")) return c.setAnchor(readPlistString(info)), true;
        if (matchKey(info, "locked")) return c.setLocked(parsePlistBoolValue(info)), true;
        if (matchKey(info, "keepWeight")) return c.setKeepWeight(parsePlistDoubleValue(info)), true;
        if (matchKey(info, "piece")) return c.setPieceSettings(parsePlistDict(info).dictionary()), true;
        if (matchKey(info, "userData")) {
            Value userData = readPlistMergedDict(info);
            for (const auto& [key, value] : userData.dictionary()) c.setUserData_forKey(value, key);
            return true;
        }
        return false;
    };
    bool ok = readPlistRecordOrLine(info, readKey, [&] { return c.parseVelmorLine_format(info, format); });
    return ok ? component : nullptr;
}
