#include "model/VLGlyph.h"
#include "model/VLPartProperty.h"
#include "model/VLStringHelpers.h"
#include "platform/NumberConversion.h"
#include "platform/UUID.h"
#include "reader/VLColorKey.h"
#include "reader/VLPlistKeySource.h"
#include "reader/VLPlistLexical.h"
#include "reader/VLPlistRecordReading.h"
#include "reader/VLPlistRecords.h"
#include "reader/VLPlistSkippers.h"

#include <algorithm>
#include <fcntl.h>
#include <array>

namespace {

// A date of known width is passed by counting instead of being scanned.
bool skipLastChange(VLPlistParseInfo* info)
{
    if (!skipPlistSpace(info)) return false;
    ++info->curr;
    if (info->end - info->curr < 19) return false;
    info->curr += 16;
    for (int i = 0; *info->curr != '"'; ++i, ++info->curr)
        if (i == 14 || info->curr >= info->end) return false;
    ++info->curr;
    return true;
}

// The older format writes hexadecimal digits, separated by commas.
bool readLegacyUnicodes(VLPlistParseInfo* info, std::vector<std::string>& unicodes)
{
    if (!skipPlistSpace(info)) return false;
    bool quoted = *info->curr == '"';
    if (quoted) ++info->curr;
    const uint8_t* start = info->curr;
    while (info->curr < info->end && *info->curr != '\n' && *info->curr != ' ' && *info->curr != '"' &&
           *info->curr != ';')
        ++info->curr;
    std::string text(start, info->curr);
    if (quoted && *info->curr == '"') ++info->curr;
    if (text.size() < 2) return true;
    unicodes.clear();
    size_t from = 0;
    while (from <= text.size()) {
        size_t comma = std::min(text.find(',', from), text.size());
        std::string part = text.substr(from, comma - from);
        if (std::find(unicodes.begin(), unicodes.end(), part) == unicodes.end()) unicodes.push_back(part);
        from = comma + 1;
    }
    return true;
}

// The current format writes decimal numbers, one or a list.
bool readUnicodes(VLPlistParseInfo* info, std::vector<std::string>& unicodes)
{
    unicodes.clear();
    auto add = [&](double v) {
        std::string code = hexStringFromInt(VLTruncatedInteger(v));
        if (std::find(unicodes.begin(), unicodes.end(), code) == unicodes.end()) unicodes.push_back(code);
    };
    if (!skipPlistSpace(info)) return false;
    if (*info->curr == '(') return parsePlistNumberList(info, add);
    add(static_cast<double>(readPlistInteger(info)));
    return true;
}

bool skipStringKeys(VLPlistParseInfo* info)
{
    static constexpr std::array<const char*, 20> keys = {
        "leftKerningGroup", "kernLeft", "leftMetricsKey", "metricLeft", "rightKerningGroup", "kernRight",
        "rightMetricsKey", "metricRight", "topKerningGroup", "kernTop", "topMetricsKey", "metricTop",
        "bottomKerningGroup", "kernBottom", "bottomMetricsKey", "metricBottom", "widthMetricsKey", "metricWidth",
        "vertWidthMetricsKey", "metricVertWidth"};
    for (const char* key : keys)
        if (matchPlistKey(info, key, std::char_traits<char>::length(key))) return true;
    return false;
}

} // namespace

uint8_t VLGlyph::caseFromString(const std::string& text)
{
    static constexpr std::array<const char*, 6> names = {"noCase", "upper", "lower", "smallCaps", "minor", "other"};
    for (size_t i = 0; i < names.size(); ++i)
        if (text == names[i]) return static_cast<uint8_t>(i);
    return 0;
}

uint8_t VLGlyph::directionFromString(const std::string& text)
{
    static constexpr std::array<const char*, 5> names = {"BIDI", "LTR", "RTL", "VTL", "VTR"};
    for (size_t i = 0; i < names.size(); ++i)
        if (text == names[i]) return static_cast<uint8_t>(i);
    return 0;
}

std::shared_ptr<VLGlyph> VLGlyph::initWithVelmorParser_format(VLPlistParseInfo* info, uint8_t format)
{
    auto glyph = initFast();
    VLGlyph& g = *glyph;
    VLPlistKeySource source(info);
    bool ok = readPlistRecord(info, [&] {
        if (matchKey(info, "glyphname")) return g.setNameFast(readPlistString(info)), true;
        if (matchKey(info, "color")) return readColorKey(g, source);
        if (matchKey(info, "changeCount")) return readPlistInteger(info), true;
        if (matchKey(info, "export")) return g.setExport(parsePlistBoolValue(info)), true;
        if (matchKey(info, "lastChange")) return skipLastChange(info);
        if (matchKey(info, "layers")) {
            g._fileStart = info->curr;
            g._pInfo = info;
            if (!skipPlistArray(info)) return false;
            g._fileEnd = info->curr;
            return true;
        }
        if (matchKey(info, "locked")) return readPlistInteger(info), true;
        if (matchKey(info, "note")) return parsePlistStringValue(info), true;
        if (matchKey(info, "unicode"))
            return format == 1 ? readLegacyUnicodes(info, g._unicodes) : readUnicodes(info, g._unicodes);
        if (matchKey(info, "index")) return g.setGlyphId(static_cast<uint64_t>(readPlistInteger(info))), true;
        if (skipStringKeys(info)) return skipPlistStringValue(info);
        if (matchKey(info, "userData")) return skipPlistDict(info);
        if (matchKey(info, "partsSettings")) {
            auto settings = readPlistObjects<VLPartProperty>(info, format);
            if (settings) g.setPartsSettings(std::move(*settings));
            return settings.has_value();
        }
        if (matchKey(info, "script")) return g.setScript(readPlistString(info)), g.setStoreScript(true), true;
        if (matchKey(info, "category")) return g.setCategory(readPlistString(info)), g.setStoreCategory(true), true;
        if (matchKey(info, "subCategory"))
            return g.setSubCategory(readPlistString(info)), g.setStoreSubCategory(true), true;
        if (matchKey(info, "case"))
            return g.setGlyphCase(caseFromString(readPlistString(info))), g.setStoreCase(true), true;
        if (matchKey(info, "production"))
            return g.setProduction(readPlistString(info)), g.setStoreProduction(true), true;
        // The sort keys are not kept; what they set is the flag of the production name.
        if (matchKey(info, "sortNameKeep") || matchKey(info, "sortName"))
            return g.setStoreProduction(true), skipPlistStringValue(info);
        if (matchKey(info, "direction"))
            return g.setDirection(directionFromString(readPlistString(info))), g.setStoreDirection(true), true;
        if (matchKey(info, "tags")) return skipPlistArray(info);
        return false;
    });
    if (!ok) return nullptr;
    g._unicodeChar = 0;
    if (g._name.empty()) g._name = newUUIDString();
    g._id = g._name;
    return glyph;
}

std::shared_ptr<VLGlyph> VLGlyph::initWithFile_format_error(const std::string& path, uint8_t format, VLError* error)
{
    return initWithFileInFolder_name_path_format_error(AT_FDCWD, path, path, format, error);
}

std::shared_ptr<VLGlyph> VLGlyph::initWithFileInFolder_name_path_format_error(int folder, const std::string& name,
                                                                             const std::string& path, uint8_t format,
                                                                             VLError* error)
{
    VLPlistParseInfo info;
    if (!openPlistParseInfoAt(folder, name.c_str(), path.c_str(), &info)) {
        if (info.error) handOut(error, *info.error);
        return nullptr;
    }
    ++info.curr; // the opening brace
    auto glyph = initWithVelmorParser_format(&info, format);
    if (!glyph) {
        if (info.error) handOut(error, *info.error);
        closePlistParseInfo(&info);
        return nullptr;
    }
    glyph->_pInfoStore = std::make_shared<VLPlistParseInfo>(std::move(info));
    glyph->_pInfo = glyph->_pInfoStore.get();
    return glyph;
}
