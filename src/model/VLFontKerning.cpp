#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "platform/NumberConversion.h"
#include "platform/StringFormat.h"
#include "platform/VLException.h"
#include "platform/VLUnsetValue.h"

#include <algorithm>
#include <map>
#include <optional>

namespace {

bool isKnownDirection(int direction)
{
    switch (direction) {
    case 0:
    case 1:
    case 2:
    case 4:
    case 8:
    case 12:
    case 128: return true;
    default: return false;
    }
}

std::vector<std::string> sortedKeys(const ValueDictionary& dict)
{
    std::vector<std::string> keys;
    for (const auto& entry : dict) keys.push_back(entry.first);
    std::sort(keys.begin(), keys.end());
    return keys;
}

// One master's rows from a plain dictionary, keys sorted so that the order never depends on the
// document's; rows that are not dictionaries are left out.
std::shared_ptr<VLFont::KerningRows> rowsFromDict(const Value& dict)
{
    auto rows = std::make_shared<VLFont::KerningRows>();
    for (const std::string& first : sortedKeys(dict.dictionary())) {
        const Value& row = dict[first];
        if (!row.isDictionary()) continue;
        auto pairs = std::make_shared<VLFont::KerningPairs>();
        for (const std::string& second : sortedKeys(row.dictionary()))
            pairs->setObject_forKey(Value(static_cast<double>(VLSinglePrecision(row[second].doubleValue()))), second);
        rows->setObject_forKey(pairs, first);
    }
    return rows;
}

// The value of the second glyph's id, else of its group, in one row.
std::optional<double> pairInRow(const VLFont::KerningPairs& row, const std::string& secondId,
                                const std::string& secondGroup)
{
    for (const std::string* key : {&secondId, &secondGroup}) {
        if (key->empty()) continue;
        Value value = row.objectForKey(*key);
        if (!value.isNull()) return static_cast<double>(VLSinglePrecision(value.doubleValue()));
    }
    return std::nullopt;
}

// Glyph keys become glyph names; group keys of the side's prefix stay; anything else is dropped.
std::optional<std::string> displayKey(const std::string& key, const char* groupPrefix,
                                      const std::map<std::string, std::string, std::less<>>& names)
{
    if (key.starts_with(groupPrefix)) return key;
    auto it = names.find(key);
    if (it == names.end()) return std::nullopt;
    return it->second;
}

} // namespace

VLFont::Kerning& VLFont::kerningForDirection(int direction)
{
    switch (direction) {
    case 0:
    case 1: return _kerningLTR;
    case 2: return _kerningRTL;
    case 4:
    case 8:
    case 12: return _kerningVertical;
    case 128: return _kerningContext;
    default: throw VLException("Wrong direction", stringWithFormat("was: %d", direction));
    }
}

std::shared_ptr<VLFont::KerningRows> VLFont::masterKerning_direction(const std::string& masterId, int direction)
{
    if (!isKnownDirection(direction)) return nullptr;
    return kerningForDirection(direction).objectForKey_defaultClass(masterIDforMetrics(masterId),
                                                                    [] { return std::make_shared<KerningRows>(); });
}

void VLFont::setKerning_forMaster_direction(const Value& kerning, const std::string& masterId, int direction)
{
    if (masterId.empty() || !isKnownDirection(direction)) return;
    kerningForDirection(direction).setObject_forKey(rowsFromDict(kerning), masterId);
}

VLFont::Kerning VLFont::readKerningFromDict(const Value& dict) const
{
    Kerning kerning;
    for (const auto& master : _fontMasters) {
        const Value& entry = dict[master->id()];
        if (entry.count() == 0 || !entry.isDictionary()) continue;
        kerning.setObject_forKey(rowsFromDict(entry), master->id());
    }
    return kerning;
}

double VLFont::kerningForFontMasterID_firstGlyph_secondGlyph_direction(const std::string& masterId,
                                                                      const VLGlyph& first, const VLGlyph& second,
                                                                      int direction)
{
    auto rows = masterKerning_direction(masterId, direction);
    return kerningForFontMasterDict_firstGlyph_secondGlyph_direction(rows.get(), first, second, direction);
}

double VLFont::kerningForFontMasterDict_firstGlyph_secondGlyph_direction(const KerningRows* rows,
                                                                        const VLGlyph& first, const VLGlyph& second,
                                                                        int direction)
{
    if (!rows) return VLUnsetValue;
    const std::string firstGroup = first.nextKerningGroupIDforDirection(direction);
    const std::string secondGroup = second.previousKerningGroupIDforDirection(direction);
    auto row = rows->objectForKey(first.id());
    bool ownRow = row != nullptr;
    if (!row && !firstGroup.empty()) row = rows->objectForKey(firstGroup);
    if (!row) return VLUnsetValue;
    if (auto value = pairInRow(*row, second.id(), secondGroup)) return *value;
    if (!ownRow || firstGroup.empty()) return VLUnsetValue;
    auto groupRow = rows->objectForKey(firstGroup);
    if (!groupRow) return VLUnsetValue;
    return pairInRow(*groupRow, second.id(), secondGroup).value_or(VLUnsetValue);
}

double VLFont::kerningForFontMasterID_leftKey_rightKey_direction(const std::string& masterId,
                                                                const std::string& leftKey,
                                                                const std::string& rightKey, int direction)
{
    if (masterId.empty() || leftKey.empty() || rightKey.empty()) return VLUnsetValue;
    auto rows = kerningForDirection(direction).objectForKey(masterId);
    auto row = rows ? rows->objectForKey(leftKey) : nullptr;
    if (!row) return VLUnsetValue;
    return pairInRow(*row, rightKey, std::string()).value_or(VLUnsetValue);
}

double VLFont::kerningFirstLayer_secondLayer(const VLLayer& first, const VLLayer& second)
{
    if (first.associatedMasterId() != second.associatedMasterId()) return VLUnsetValue;
    auto firstGlyph = first.parent();
    auto secondGlyph = second.parent();
    if (!firstGlyph || !secondGlyph) return VLUnsetValue;
    return kerningForFontMasterID_firstGlyph_secondGlyph_direction(first.associatedMasterId(), *firstGlyph,
                                                                   *secondGlyph, 0);
}

std::shared_ptr<VLFont::Kerning> VLFont::kerningDictForDirection(int direction)
{
    const Kerning& kerning = kerningForDirection(direction);
    if (kerning.empty()) return nullptr;
    std::map<std::string, std::string, std::less<>> names;
    for (const auto& glyph : _glyphs) names.emplace(glyph->id(), glyph->name());
    auto display = std::make_shared<Kerning>();
    for (const auto& master : _fontMasters) {
        auto named = std::make_shared<KerningRows>();
        display->setObject_forKey(named, master->id());
        auto rows = kerning.objectForKey(master->id());
        if (!rows) continue;
        for (const std::string& first : rows->allKeys()) {
            auto firstName = displayKey(first, "@MMK_L_", names);
            if (!firstName) continue;
            auto pairs = std::make_shared<KerningPairs>();
            auto row = rows->objectForKey(first);
            for (const std::string& second : row->allKeys())
                if (auto secondName = displayKey(second, "@MMK_R_", names))
                    pairs->setObject_forKey(row->objectForKey(second), *secondName);
            if (!pairs->empty()) named->setObject_forKey(pairs, *firstName);
        }
    }
    return display;
}

std::string VLFont::masterIDforMetrics(const std::string& masterId)
{
    return masterIDforMetrics_hasLink(masterId, nullptr);
}

std::string VLFont::masterIDforMetrics_hasLink(const std::string& masterId, bool* hasLink)
{
    auto master = fontMasterForId(masterId);
    if (!master) return masterId;
    if (master->customBoolValueForKey("Link Metrics With First Master")) {
        if (hasLink) *hasLink = true;
        return _fontMasters.front()->id();
    }
    Value linked = master->customValueForKey("Link Metrics With Master");
    if (linked.isNull()) return masterId;
    if (hasLink) *hasLink = true;
    const std::string key = linked.isString() ? linked.string() : linked.description();
    auto target = fontMasterForId(key);
    if (!target) target = fontMasterForName(key);
    return target ? target->id() : masterId;
}
