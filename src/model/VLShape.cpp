#include "model/VLShape.h"
#include "platform/NumberConversion.h"

#include "model/VLCustomParameter.h"
#include "model/VLLayer.h"
#include "platform/VLUnsetValue.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <cstdlib>

namespace {

// Coordinates this far out come from broken data; 21 keeps the shape visible near the origin.
double guardCoordinate(double v)
{
    return std::fabs(v) > 32000.0 ? 21.0 : v;
}

Point guardPoint(Point p)
{
    return {guardCoordinate(p.x), guardCoordinate(p.y)};
}

double roundToStep(double v, double grid)
{
    double rounded = std::round((v + 0.0000001) / grid) * grid;
    return grid > 1.0 ? std::round(rounded) : rounded;
}

Point roundPoint(Point p, double grid)
{
    return {roundToStep(p.x, grid), roundToStep(p.y, grid)};
}

} // namespace

VLShape::VLShape(const VLShape& other)
    : std::enable_shared_from_this<VLShape>(),
      _parent(other._parent),
      _attributes(other._attributes),
      _locked(other._locked),
      _position(other._position),
      _positionPrecise(other._positionPrecise)
{
}

std::shared_ptr<VLLayer> VLShape::layer() const
{
    auto container = parent();
    return container ? container->layer() : nullptr;
}

std::shared_ptr<VLGlyph> VLShape::glyph() const
{
    auto owner = layer();
    return owner ? owner->glyph() : nullptr;
}

std::shared_ptr<VLFont> VLShape::font() const
{
    auto owner = layer();
    return owner ? owner->font() : nullptr;
}

void VLShape::tellParent()
{
    if (auto container = parent()) container->elementDidChange(this);
}

void VLShape::setLocked(bool locked)
{
    _locked = locked;
    tellParent();
}

Value VLShape::attributeForKey(const std::string& key) const
{
    auto it = _attributes.find(key);
    return it == _attributes.end() ? Value() : it->second;
}

void VLShape::removeAttributeForKey(const std::string& key)
{
    _attributes.erase(key);
}

Value VLShape::tempDataForKey(const std::string& key) const
{
    auto it = _tempData.find(key);
    return it == _tempData.end() ? Value() : it->second;
}

void VLShape::setTempData_forKey(const Value& value, const std::string& key)
{
    if (value.isNull())
        _tempData.erase(key);
    else
        _tempData[key] = value;
}

void VLShape::setPositionFast(Point p)
{
    Point guarded = guardPoint(p);
    _position = guarded;
    _positionPrecise = guarded;
}

void VLShape::setPositionFast_round(Point p, double grid)
{
    Point guarded = guardPoint(p);
    _positionPrecise = guarded;
    _position = grid > 0.001 ? roundPoint(guarded, grid) : guarded;
}

void VLShape::roundToGrid(double grid)
{
    setPosition(grid >= 0.001 ? roundPoint(position(), grid) : position());
}

void VLShape::roundToGridFast(double grid)
{
    setPositionFast(grid >= 0.001 ? roundPoint(position(), grid) : position());
}

namespace {

bool holdsOnlyNumberCharacters(const std::string& text)
{
    return text.find_first_not_of("0123456789+-.") == std::string::npos;
}

} // namespace

namespace {

bool isNumericAttribute(const std::string& key)
{
    return key == "fillPatternBlendMode" || key == "fillPatternScale" || key == "fillPatternAngle" ||
           key == "strokeWidth" || key == "strokeHeight";
}

bool isColorAttribute(const std::string& key)
{
    return key == "fillColor" || key == "strokeColor";
}

// Text of digits becomes a number: a real if it has a point, otherwise an integer.
Value numberFromText(const Value& value)
{
    if (!value.isString() || !holdsOnlyNumberCharacters(value.string())) return value;
    const std::string& text = value.string();
    if (text.find('.') != std::string::npos) return Value(std::strtod(text.c_str(), nullptr));
    return Value(static_cast<int64_t>(std::strtoll(text.c_str(), nullptr, 10)));
}

Value colorAttribute(const Value& value)
{
    auto color = VLCustomParameter::colorFromValue(value);
    return color ? Value(*color) : Value();
}

} // namespace

void VLShape::setAttributes_format(const ValueDictionary& attributes, uint8_t)
{
    _attributes = attributes;
    for (auto it = _attributes.begin(); it != _attributes.end();) {
        if (isColorAttribute(it->first)) it->second = colorAttribute(it->second);
        if (it->first == "strokeWidth" || it->first == "strokeHeight") it->second = numberFromText(it->second);
        if (it->first == "mask" && it->second.isString()) it->second = Value(it->second.boolValue());
        it = it->second.isNull() ? _attributes.erase(it) : std::next(it);
    }
}

void VLShape::setAttribute_forKey(const Value& value, const std::string& key)
{
    Value stored = isColorAttribute(key) ? colorAttribute(value) : isNumericAttribute(key) ? numberFromText(value) : value;
    auto it = _attributes.find(key);
    if (it != _attributes.end() && it->second == stored) return;
    if (stored.isNull())
        _attributes.erase(key);
    else
        _attributes[key] = stored;
    tellParent();
}

void VLShape::getSettings(const ValueDictionary& attributes, VLStrokeSettings& settings)
{
    auto number = [&](const char* key) -> std::optional<double> {
        auto it = attributes.find(key);
        return it == attributes.end() ? std::nullopt : std::optional<double>(it->second.doubleValue());
    };
    auto size = [](std::optional<double> v, double& out) {
        if (v && *v >= 0 && *v < 2000 && out == VLUnsetValue) out = *v;
    };
    size(number("strokeWidth"), settings.width);
    size(number("strokeHeight"), settings.height);
    if (auto pos = number("strokePos")) settings.pos = std::clamp(*pos, 0.0, 1.0);
    if (auto cap = number("lineCapStart"); cap && *cap < 2000) settings.capStart = static_cast<int>(VLTruncatedInteger(std::max(*cap, -2000.0)));
    if (auto cap = number("lineCapEnd"); cap && *cap < 2000) settings.capEnd = static_cast<int>(VLTruncatedInteger(std::max(*cap, -2000.0)));
    if (number("fill").value_or(0) != 0) settings.fill = true;
    if (number("mask").value_or(0) != 0) settings.mask = true;
}

bool VLShape::getStrokeSettings(VLStrokeSettings& settings) const
{
    settings = VLStrokeSettings{VLUnsetValue, VLUnsetValue};
    getSettings(_attributes, settings);
    return true;
}

void VLShape::scaleAttributes(double factor)
{
    for (const char* key : {"strokeWidth", "strokeHeight"}) {
        Value value = attributeForKey(key);
        if (!value.isNull()) setAttribute_forKey(Value(value.doubleValue() * factor), key);
    }
}
