#include "model/VLAxis.h"
#include "model/VLCustomParameter.h"
#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "platform/NumberConversion.h"

#include <algorithm>
#include <set>

std::vector<std::shared_ptr<VLFontMaster>> VLFont::allMasters() const
{
    std::vector<std::shared_ptr<VLFontMaster>> masters = _fontMasters;
    masters.insert(masters.end(), _importedFontMasters.begin(), _importedFontMasters.end());
    return masters;
}

std::shared_ptr<VLFontMaster> VLFont::allMasterAtIndex(size_t index) const
{
    if (index < _fontMasters.size()) return _fontMasters[index];
    index -= _fontMasters.size();
    return index < _importedFontMasters.size() ? _importedFontMasters[index] : nullptr;
}

std::shared_ptr<VLFontMaster> VLFont::defaultFontMaster(VLCustomParameterOwner* owner)
{
    const char* key = "Variable Font Origin";
    Value origin = owner ? owner->customValueForKey(key) : Value();
    if (origin.isNull()) origin = customValueForKey(key);
    if (origin.isString()) {
        if (auto master = fontMasterForId(origin.string())) return master;
        if (auto master = fontMasterForName(origin.string())) return master;
    }
    return fontMasterAtIndex(0);
}

namespace {

using StepSets = std::map<std::string, std::set<double>, std::less<>>;

// Only a list whose entries all are dictionaries with a "Location" places a virtual master.
bool placesVirtualMaster(const Value& entries)
{
    return entries.isArray() && std::all_of(entries.array().begin(), entries.array().end(), [](const Value& entry) {
               return entry.isDictionary() && !entry["Location"].isNull();
           });
}

void addVirtualMaster(const Value& entries, const VLFont::Axes& axes, StepSets& steps)
{
    for (const auto& axis : axes) {
        const auto& list = entries.array();
        auto entry = std::find_if(list.begin(), list.end(), [&](const Value& e) { return e["Axis"] == Value(axis->name()); });
        if (entry != list.end()) steps[axis->axisId()].insert(VLSinglePrecision((*entry)["Location"].doubleValue()));
    }
}

void addBraceLayers(VLGlyph& glyph, const std::vector<std::string>& masterIds, const VLFont::Axes& axes,
                    StepSets& steps)
{
    for (const auto& layer : glyph.sortedLayers()) {
        Value coordinates = layer->attributeForKey("coordinates");
        if (!coordinates.isDictionary()) continue;
        if (std::find(masterIds.begin(), masterIds.end(), layer->layerId()) == masterIds.end()) continue;
        for (const auto& axis : axes)
            if (coordinates[axis->axisId()].isNumber())
                steps[axis->axisId()].insert(coordinates[axis->axisId()].doubleValue());
    }
}

} // namespace

VLFont::AxisSteps VLFont::axesValueSteps_glyph(const std::vector<std::string>& masterIds, VLGlyph* glyph)
{
    StepSets steps;
    for (const auto& master : allMasters()) {
        if (std::find(masterIds.begin(), masterIds.end(), master->id()) == masterIds.end()) continue;
        for (const auto& axis : _axes) steps[axis->axisId()].insert(master->axisValueValueForId(axis->axisId()));
    }
    for (const auto& parameter : customParameters())
        if (parameter->active() && parameter->name() == "Virtual Master" && placesVirtualMaster(parameter->value()))
            addVirtualMaster(parameter->value(), _axes, steps);
    if (glyph) addBraceLayers(*glyph, masterIds, _axes, steps);
    AxisSteps sorted;
    for (const auto& [axisId, values] : steps) sorted[axisId] = std::vector<double>(values.begin(), values.end());
    return sorted;
}
