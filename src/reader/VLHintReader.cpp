#include "outline/VLHint.h"
#include "reader/VLPlistCompact.h"
#include "reader/VLPlistLexical.h"
#include "reader/VLPlistRecordReading.h"
#include "reader/VLPlistRecords.h"

#include <cstring>

namespace {

// Index paths are strings in the older format and arrays in the current one.
VLIndexPath readIndexPath(VLPlistParseInfo* info, uint8_t format)
{
    skipPlistSpace(info);
    Value plist = format == 1 ? parsePlistStringValue(info) : parsePlistArray(info);
    return VLHint::indexPathFromPlist(plist);
}

bool readTarget(VLHint& hint, VLPlistParseInfo* info, uint8_t format)
{
    if (!skipPlistSpace(info)) return false;
    const uint8_t* start = info->curr;
    if (*info->curr == '"') ++info->curr;
    size_t left = static_cast<size_t>(info->end - info->curr);
    if (left >= 2 && std::memcmp(info->curr, "do", 2) == 0) {
        hint.setType(VLHintType::TopGhost);
        stepPlistBlindly(info, 4);
        return true;
    }
    if (left >= 2 && std::memcmp(info->curr, "up", 2) == 0) {
        hint.setType(VLHintType::BottomGhost);
        stepPlistBlindly(info, 2);
        return true;
    }
    info->curr = start;
    hint.setTargetIndex(readIndexPath(info, format));
    return true;
}

} // namespace

std::shared_ptr<VLHint> VLHint::initWithVelmorParser_format(VLPlistParseInfo* info, uint8_t format)
{
    auto hint = init();
    VLHint& h = *hint;
    h.setHorizontal(false);
    bool ok = readPlistRecord(info, [&] {
        if (matchKey(info, "width")) return h.setWidth(parsePlistDoubleValue(info)), true;
        if (matchKey(info, "place")) {
            Point place = parsePlistPoint(info);
            return h.setOrigin(place.x), h.setWidth(place.y), true;
        }
        if (matchKey(info, "horizontal")) return h.setHorizontal(readPlistInteger(info) != 0), true;
        if (matchKey(info, "origin")) return h.setOriginIndex(readIndexPath(info, format)), true;
        if (matchKey(info, "target")) return readTarget(h, info, format);
        if (matchKey(info, "other1")) return h.setOtherIndex1(readIndexPath(info, format)), true;
        if (matchKey(info, "other2")) return h.setOtherIndex2(readIndexPath(info, format)), true;
        if (matchKey(info, "type")) return h.setType(typeForName(readPlistString(info))), true;
        if (matchKey(info, "stem")) return h.setStem(readPlistInteger(info)), true;
        if (matchKey(info, "name")) return h.setName(readPlistString(info)), true;
        if (matchKey(info, "options")) {
            int64_t options = readPlistInteger(info);
            return h.setOptions(static_cast<uint32_t>(format == 1 && options == 3 ? 8 : options)), true;
        }
        if (matchKey(info, "scale")) return h.setScale(parsePlistPoint(info)), true;
        if (matchKey(info, "settings")) return h.setSettings(parsePlistDict(info).dictionary()), true;
        return false;
    });
    return ok ? hint : nullptr;
}
