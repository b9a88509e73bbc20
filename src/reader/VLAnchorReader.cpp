#include "outline/VLAnchor.h"
#include "platform/NumberConversion.h"
#include "reader/VLAnchorKeys.h"
#include "reader/VLPlistCompact.h"
#include "reader/VLPlistRecordReading.h"
#include "reader/VLPlistRecords.h"

bool VLAnchor::parseVelmorLine_format(VLPlistParseInfo* info, uint8_t)
{
    double x = VLSinglePrecision(parsePlistDoubleValue(info));
    double y = VLSinglePrecision(parsePlistDoubleValue(info));
    setPositionFast({x, y});
    stepPlistBlindly(info, 1);
    const uint8_t* start = info->curr;
    while (!atPlistEnd(info) && *info->curr != '"' && *info->curr != ';') ++info->curr;
    _name.assign(start, info->curr);
    if (*info->curr == '"') ++info->curr;
    return true;
}

std::shared_ptr<VLAnchor> VLAnchor::initWithVelmorParser_format(VLPlistParseInfo* info, uint8_t format)
{
    auto anchor = init();
    VLAnchor& a = *anchor;
    auto readKey = [&] {
        if (matchKey(info, "name")) return a.setName(readPlistString(info)), true;
        if (matchKey(info, "position") || matchKey(info, "pos")) return a.setPositionFast(parsePlistPoint(info)), true;
        if (matchKey(info, "orientation")) {
            setAnchorOrientationName(a, readPlistString(info));
            return true;
        }
        if (matchKey(info, "userData")) return a.setUserData(readPlistMergedDict(info).dictionary()), true;
        if (matchKey(info, "locked")) return a.setLocked(parsePlistBoolValue(info)), true;
        return false;
    };
    bool ok = readPlistRecordOrLine(info, readKey, [&] { return a.parseVelmorLine_format(info, format); });
    return ok ? anchor : nullptr;
}
