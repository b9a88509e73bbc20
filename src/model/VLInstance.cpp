#include "model/VLInstance.h"
#include "platform/NumberConversion.h"

#include "model/VLAxis.h"
#include "model/VLCustomParameter.h"
#include "model/VLFont.h"
#include "model/VLMetricValue.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr std::array<const char*, 3> typeNames = {"single", "variable", "icon"};

// The six numbers that stand for the axes of a document of the older format.
ValueArray legacyInterpolations(const Value& dict)
{
    ValueArray numbers;
    const char* keys[] = {"interpolationWeight", "interpolationWidth", "interpolationCustom",
                          "interpolationCustom1", "interpolationCustom2", "interpolationCustom3"};
    for (size_t i = 0; i < 6; ++i) {
        const Value& v = dict[keys[i]];
        numbers.push_back(v.isNull() ? (i < 2 ? 100.0 : 0.0) : v.doubleValue());
    }
    return numbers;
}

bool equalFactors(const VLFactors& a, const VLFactors& b)
{
    if (a.count() != b.count()) return false;
    return std::all_of(a.allKeys().begin(), a.allKeys().end(), [&](const std::string& key) {
        auto index = b.indexOfKey(key);
        VLFactor mine = a.objectForKey(key), theirs = b.objectForKey(key);
        return index && mine.x == theirs.x && mine.y == theirs.y;
    });
}

bool equalParameters(const VLCustomParameterOwner::Parameters& a, const VLCustomParameterOwner::Parameters& b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const auto& p, const auto& q) {
        return p->name() == q->name() && p->value() == q->value() && p->active() == q->active();
    });
}

} // namespace

std::shared_ptr<VLInstance> VLInstance::initWithType(int64_t type)
{
    auto instance = init();
    instance->_type = type;
    return instance;
}

int64_t VLInstance::typeForTypeName(const std::string& name)
{
    for (size_t i = 0; i < typeNames.size(); ++i)
        if (name == typeNames[i]) return static_cast<int64_t>(i);
    return TypeSingle;
}

std::shared_ptr<VLInstance> VLInstance::initWithTypeName(const std::string& name)
{
    return initWithType(typeForTypeName(name));
}

std::optional<std::string> VLInstance::typeName() const
{
    if (_type < 0 || _type >= static_cast<int64_t>(typeNames.size())) return std::nullopt;
    return typeNames[static_cast<size_t>(_type)];
}

std::shared_ptr<VLInstance> VLInstance::initWithDict_container_format(const Value& dict, VLFont* font, uint8_t format)
{
    auto instance = init();
    instance->_font = font;
    if (dict["name"].isString()) instance->_name = dict["name"].string();
    instance->_type = typeForTypeName(dict["type"].string());
    instance->_isBold = dict["isBold"].boolValue();
    instance->_isItalic = dict["isItalic"].boolValue();
    if (!dict["active"].isNull()) instance->_exports = instance->_visible = dict["active"].boolValue();
    if (!dict["exports"].isNull()) instance->_exports = dict["exports"].boolValue();
    if (!dict["visible"].isNull()) instance->_visible = dict["visible"].boolValue();
    instance->_manualInterpolation = dict["manualInterpolation"].boolValue();
    for (const auto& [masterId, factor] : dict["instanceInterpolations"].dictionary())
        instance->_instanceInterpolations.setObject_forKey(factor.doubleValue(), masterId);

    const Value& location = dict["axesValues"];
    const auto& axes = font ? font->axes() : std::vector<std::shared_ptr<VLAxis>>();
    if (location.isDictionary()) {
        for (const auto& axis : axes)
            instance->setAxisValueValueFast_forId(VLSinglePrecision(location[axis->axisTagDefault()].doubleValue()),
                                                  axis->axisId());
    } else if (location.isArray()) {
        for (size_t i = 0; i < location.count() && i < axes.size(); ++i)
            instance->setAxisValueValueFast_forId(VLSinglePrecision(location[i].doubleValue()), axes[i]->axisId());
    }
    if (instance->_axesValues.empty() && format == 1)
        instance->setReadBuffer_forKey(Value(legacyInterpolations(dict)), "interpolations");
    return instance;
}

double VLInstance::axisValueValueForId(const std::string& axisId) const
{
    auto it = _axesValues.find(axisId);
    return it == _axesValues.end() ? 0.0 : it->second->position();
}

void VLInstance::setAxisValueValue_forId(double value, const std::string& axisId)
{
    setAxisValue_forId(VLMetricValue::initWithPosition(value), axisId);
}

void VLInstance::setAxisValue_forId(std::shared_ptr<VLMetricValue> value, const std::string& axisId)
{
    if (!value) {
        _axesValues.erase(axisId);
        return;
    }
    _axesValues[axisId] = std::move(value);
}

void VLInstance::setAxisValueValueFast_forId(double value, const std::string& axisId)
{
    _axesValues[axisId] = VLMetricValue::initWithPosition(value);
}

std::shared_ptr<VLInstance> VLInstance::copy() const
{
    auto instance = init();
    instance->_font = _font;
    instance->_isItalic = _isItalic;
    instance->_isBold = _isBold;
    instance->_manualInterpolation = _manualInterpolation;
    instance->_linkStyle = _linkStyle;
    instance->_exports = _exports;
    instance->_name = _name;
    instance->_visible = _visible;
    instance->_instanceInterpolations = _instanceInterpolations;
    instance->_weightClassValue = _weightClassValue;
    instance->_widthClassValue = _widthClassValue;
    instance->_type = _type;
    for (const auto& [axisId, value] : _axesValues) instance->_axesValues[axisId] = value->copy();
    instance->copyCustomParametersFrom(*this);
    return instance;
}

bool VLInstance::isEqualToInstance(const VLInstance& other) const
{
    for (const auto& [axisId, value] : _axesValues)
        if (std::fabs(value->position() - other.axisValueValueForId(axisId)) > 0.01) return false;
    return _name == other._name && _exports == other._exports && _visible == other._visible &&
           equalFactors(_instanceInterpolations, other._instanceInterpolations) && _isBold == other._isBold &&
           _isItalic == other._isItalic && _linkStyle == other._linkStyle &&
           equalParameters(customParameters(), other.customParameters()) &&
           _weightClassValue == other._weightClassValue && _manualInterpolation == other._manualInterpolation &&
           _widthClassValue == other._widthClassValue;
}
