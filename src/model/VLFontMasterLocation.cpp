#include "model/VLAxis.h"
#include "model/VLCustomParameter.h"
#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLMetricValue.h"
#include "model/VLValueHelpers.h"
#include "platform/NumberConversion.h"

#include <algorithm>

double VLFontMaster::axisValueValueForId(const std::string& axisId) const
{
    auto it = _axesValues.find(axisId);
    return it == _axesValues.end() ? 0.0 : it->second->position();
}

void VLFontMaster::setAxisValueValue_forId(double value, const std::string& axisId)
{
    setAxisValue_forId(VLMetricValue::initWithPosition(value), axisId);
}

void VLFontMaster::setAxisValue_forId(std::shared_ptr<VLMetricValue> value, const std::string& axisId)
{
    if (!value) {
        _axesValues.erase(axisId);
        return;
    }
    value->setParent(this);
    _axesValues[axisId] = std::move(value);
}

std::vector<std::shared_ptr<VLMetricValue>> VLFontMaster::axes()
{
    return _font ? VLFont::axesPositionsFromAxes_master(_font->axes(), *this) : ValueList();
}

std::vector<double> VLFontMaster::axesValuesList() const
{
    return _font ? VLFont::axesValueListFromAxes_axesValues(_font->axes(), _axesValues) : std::vector<double>();
}

namespace {

const char* const axisLocationKey = "Axis Location";

// The parameter itself, since the cache of values does not see a value changed in place.
Value axisLocations(const VLFontMaster& master)
{
    auto parameter = master.customParameterForKey(axisLocationKey);
    return parameter ? parameter->value() : Value();
}

// The entry of the "Axis Location" list for the axis of that name, or null.
const Value* locationEntry(const Value& locations, const std::string& axisName)
{
    if (!locations.isArray()) return nullptr;
    for (const Value& entry : locations.array())
        if (entry["Axis"] == Value(axisName)) return &entry;
    return nullptr;
}

} // namespace

double VLFontMaster::externAxisValueValueForId(const std::string& axisId)
{
    auto axis = _font ? _font->axisForId(axisId) : nullptr;
    if (axis)
        if (const Value* entry = locationEntry(axisLocations(*this), axis->name()))
            if (!(*entry)["Location"].isNull()) return VLSinglePrecision((*entry)["Location"].doubleValue());
    return axisValueValueForId(axisId);
}

void VLFontMaster::setExternAxisValueValue_forId(double value, const std::string& axisId)
{
    auto axis = _font ? _font->axisForId(axisId) : nullptr;
    if (!axis) return;
    Value locations = deepMutableCopy(axisLocations(*this));
    if (!locations.isArray()) locations = Value(ValueArray());
    ValueArray& list = *locations.mutableArray();
    auto entry = std::find_if(list.begin(), list.end(), [&](const Value& e) { return e["Axis"] == Value(axis->name()); });
    if (entry == list.end() || !entry->isDictionary()) {
        list.push_back(Value(ValueDictionary{{"Axis", Value(axis->name())}, {"Location", Value(value)}}));
    } else {
        (*entry->mutableDictionary())["Location"] = Value(value);
    }
    setCustomValue_forKey(locations, axisLocationKey);
}
