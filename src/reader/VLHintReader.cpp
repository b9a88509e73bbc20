#include "outline/VLHint.h"
#include "reader/VLDictKeySource.h"
#include "reader/VLPlistKeySource.h"
#include "reader/VLPlistRecords.h"

namespace {

// Index paths are strings in the older format and arrays in the current one.
template <typename Source> VLIndexPath readIndexPath(Source& s, uint8_t format)
{
    s.hasValue();
    return VLHint::indexPathFromPlist(format == 1 ? s.string() : s.array());
}

// A ghost hint names its side instead of a target node.
template <typename Source> bool readTarget(VLHint& hint, Source& s, uint8_t format)
{
    if (!s.hasValue()) return false;
    if (s.startsWithWord("do", 4)) return hint.setType(VLHintType::TopGhost), true;
    if (s.startsWithWord("up", 2)) return hint.setType(VLHintType::BottomGhost), true;
    return hint.setTargetIndex(readIndexPath(s, format)), true;
}

template <typename Source> bool readHintKey(VLHint& h, Source& s, uint8_t format)
{
    if (s.is("width")) return h.setWidth(s.number()), true;
    if (s.is("place")) {
        Point place = s.point();
        return h.setOrigin(place.x), h.setWidth(place.y), true;
    }
    if (s.is("horizontal")) return h.setHorizontal(s.integer() != 0), true;
    if (s.is("origin")) return h.setOriginIndex(readIndexPath(s, format)), true;
    if (s.is("target")) return readTarget(h, s, format);
    if (s.is("other1")) return h.setOtherIndex1(readIndexPath(s, format)), true;
    if (s.is("other2")) return h.setOtherIndex2(readIndexPath(s, format)), true;
    if (s.is("type")) return h.setType(VLHint::typeForName(s.string().string())), true;
    if (s.is("stem")) return h.setStem(s.integer()), true;
    if (s.is("name")) return h.setName(s.string().string()), true;
    if (s.is("options")) {
        int64_t options = s.integer();
        return h.setOptions(static_cast<uint32_t>(format == 1 && options == 3 ? 8 : options)), true;
    }
    if (s.is("scale")) return h.setScale(s.point()), true;
    if (s.is("settings")) return h.setSettings(s.dict().dictionary()), true;
    return false;
}

std::shared_ptr<VLHint> initHintForReading()
{
    auto hint = VLHint::init();
    hint->setHorizontal(false);
    return hint;
}

} // namespace

std::shared_ptr<VLHint> VLHint::initWithVelmorParser_format(VLPlistParseInfo* info, uint8_t format)
{
    auto hint = initHintForReading();
    VLPlistKeySource source(info);
    bool ok = readPlistRecord(info, [&] { return readHintKey(*hint, source, format); });
    return ok ? hint : nullptr;
}

std::shared_ptr<VLHint> VLHint::initWithDict_format(const Value& dict, uint8_t format)
{
    if (!dict.isDictionary()) return nullptr;
    auto hint = initHintForReading();
    readDictKeys(dict, [&](VLDictKeySource& source) { readHintKey(*hint, source, format); });
    return hint;
}
