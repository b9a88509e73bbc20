#include "model/VLFontMaster.h"
#include "platform/NumberConversion.h"
#include "model/VLMetricValue.h"
#include "reader/VLFontMasterKeys.h"
#include "reader/VLPlistRecordReading.h"
#include "reader/VLPlistRecords.h"
#include "reader/VLPlistSkippers.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

// What a master record says before the font's axes and metrics are known.
struct MasterLocals {
    double ascender = 800, capHeight = 700, xHeight = 500, descender = -200, italicAngle = 0.0;
    double weightValue = 100.0, widthValue = 100.0;
    double customValue = 0.0, customValue1 = 0.0, customValue2 = 0.0, customValue3 = 0.0;
    std::optional<std::string> weight, width, custom;
};

double truncatedNumber(VLPlistParseInfo* info)
{
    return std::trunc(parsePlistDoubleValue(info));
}

bool readKey(VLFontMaster& master, MasterLocals& l, VLPlistParseInfo* info, uint8_t format)
{
    if (matchKey(info, "axesValues")) {
        // curr stands on the blank behind "=", so the value's first byte is one further.
        bool dict = info->curr[1] == '{';
        setMasterAxesValues(master, dict ? parsePlistDict(info) : parsePlistArray(info));
        return true;
    }
    if (matchKey(info, "ascender")) return l.ascender = truncatedNumber(info), true;
    if (matchKey(info, "descender")) return l.descender = truncatedNumber(info), true;
    if (matchKey(info, "capHeight")) return l.capHeight = truncatedNumber(info), true;
    if (matchKey(info, "xHeight")) return l.xHeight = truncatedNumber(info), true;
    if (matchKey(info, "italicAngle")) return l.italicAngle = parsePlistDoubleValue(info), true;
    if (matchKey(info, "visible")) return master.setVisible(readPlistInteger(info) != 0), true;
    if (matchKey(info, "weightValue")) return l.weightValue = parsePlistDoubleValue(info), true;
    if (matchKey(info, "widthValue")) return l.widthValue = parsePlistDoubleValue(info), true;
    if (matchKey(info, "name")) return master.setName(readPlistString(info)), true;
    if (matchKey(info, "id")) return master.setId(readPlistString(info)), true;
    if (matchKey(info, "weight")) return l.weight = readPlistString(info), true;
    if (matchKey(info, "width")) return l.width = readPlistString(info), true;
    if (matchKey(info, "customParameters")) return parsePlistArray(info), true;
    if (matchKey(info, "customValue1")) return l.customValue1 = parsePlistDoubleValue(info), true;
    if (matchKey(info, "customValue2")) return l.customValue2 = parsePlistDoubleValue(info), true;
    if (matchKey(info, "customValue3")) return l.customValue3 = parsePlistDoubleValue(info), true;
    if (matchKey(info, "customValue")) return l.customValue = parsePlistDoubleValue(info), true;
    if (matchKey(info, "custom")) return l.custom = readPlistString(info), true;
    if (matchKey(info, "iconName")) return master.setIconName(readPlistString(info)), true;
    if (matchKey(info, "alignmentZones")) return skipPlistArray(info);
    if (matchKey(info, "metricValues")) {
        auto values = readPlistObjects<VLMetricValue>(info, format);
        if (!values) return false;
        setMasterMetricValues(master, *values);
        return true;
    }
    if (matchKey(info, "guideLines") || matchKey(info, "guides")) return skipPlistArray(info);
    if (matchKey(info, "stemValues")) return master.setReadBuffer_forKey(parsePlistArray(info), "stemValues"), true;
    if (matchKey(info, "numberValues"))
        return master.setReadBuffer_forKey(parsePlistArray(info), "numberValues"), true;
    if (matchKey(info, "horizontalStems") || matchKey(info, "verticalStems"))
        return parsePlistNumberList(info, [](double) {});
    if (matchKey(info, "userData")) {
        Value userData = readPlistMergedDict(info);
        for (const auto& [key, value] : userData.dictionary()) master.setUserData_forKey(value, key);
        return true;
    }
    return false;
}

std::string joined(const std::vector<std::string>& parts, const char* separator)
{
    std::string text;
    for (const std::string& part : parts) text += (text.empty() ? "" : separator) + part;
    return text;
}

// Older documents name a master by its weight, width and custom parts.
void finishName(VLFontMaster& master, const MasterLocals& l)
{
    std::vector<std::string> parts;
    for (const auto& part : {l.weight, l.width})
        if (part && *part != "Regular") parts.push_back(*part);
    if (master.iconName().empty() && !parts.empty()) master.setIconName(joined(parts, "_"));
    if (l.custom) parts.push_back(*l.custom);
    if (master.name().empty() || master.name() == "Regular") master.setName(parts.empty() ? "Regular" : joined(parts, " "));
}

void keepLegacyValues(VLFontMaster& master, const MasterLocals& l)
{
    master.setReadBuffer_forKey(Value(0), "baseline");
    master.setReadBuffer_forKey(Value(ValueArray{l.weightValue, l.widthValue, l.customValue, l.customValue1,
                                                 l.customValue2, l.customValue3}),
                                "interpolations");
    if (!master.metricValues().empty()) return;
    auto integer = [](double v) { return Value(VLTruncatedInteger(v)); };
    master.setReadBuffer_forKey(integer(l.ascender), "ascender");
    master.setReadBuffer_forKey(integer(l.capHeight), "cap height");
    master.setReadBuffer_forKey(integer(l.xHeight), "x-height");
    master.setReadBuffer_forKey(integer(l.descender), "descender");
    if (std::fabs(l.italicAngle) > 0.001) master.setReadBuffer_forKey(Value(l.italicAngle), "italic angle");
}

} // namespace

std::shared_ptr<VLFontMaster> VLFontMaster::initWithVelmorParser_format(VLPlistParseInfo* info, uint8_t format)
{
    auto master = initFast();
    MasterLocals locals;
    if (!readPlistRecord(info, [&] { return readKey(*master, locals, info, format); })) return nullptr;
    finishName(*master, locals);
    if (format == 1) keepLegacyValues(*master, locals);
    return master;
}
