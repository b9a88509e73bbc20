#include "model/VLAxis.h"
#include "model/VLFont.h"
#include "model/VLLayer.h"

#include <algorithm>
#include <cstdio>

namespace {

// The editor gives new colour layers these values; nothing here reads them back.
constexpr int64_t newAppleColorSize = 128;

void setKind(VLLayer& layer, bool on, const std::string& key, const Value& initial)
{
    if (!on)
        layer.removeAttributeForKey(key);
    else if (layer.attributeForKey(key).isNull())
        layer.setAttribute_forKey(initial, key);
}

// At most two decimals, without trailing zeros; the small offset rounds halves up.
std::string boundText(double value)
{
    char text[64];
    std::snprintf(text, sizeof text, "%.2f", value + 0.000001);
    std::string bound = text;
    bound.erase(bound.find_last_not_of('0') + 1);
    if (bound.back() == '.') bound.pop_back();
    return bound == "-0" ? "0" : bound;
}

constexpr const char* ruleSeparator = "\u2039";
constexpr const char* ruleJoiner = ",\u2009";

std::string ruleText(const Value& rule, const std::string& tag)
{
    bool hasMin = rule["min"].isNumber();
    bool hasMax = rule["max"].isNumber();
    std::string text;
    if (hasMin) text = boundText(rule["min"].doubleValue()) + ruleSeparator;
    text += tag;
    if (hasMax) text += ruleSeparator + boundText(rule["max"].doubleValue());
    return hasMin || hasMax ? text : std::string();
}

} // namespace

void VLLayer::setBraceLayer(bool brace)
{
    setKind(*this, brace, "coordinates", Value(ValueDictionary()));
}

void VLLayer::setBracketLayer(bool bracket)
{
    setKind(*this, bracket, "axisRules", Value(ValueDictionary()));
}

void VLLayer::setFullColorLayer(bool color)
{
    setKind(*this, color, "color", Value(1));
}

void VLLayer::setColorPaletteLayer(bool palette)
{
    setKind(*this, palette, "colorPalette", Value(0));
}

void VLLayer::setAppleColorLayer(bool apple)
{
    setKind(*this, apple, "sbixSize", Value(newAppleColorSize));
}

void VLLayer::setSVGColorLayer(bool svg)
{
    setKind(*this, svg, "svg", Value(1));
}

bool VLLayer::isAnyColorLayer() const
{
    return isFullColorLayer() || isColorPaletteLayer() || isSVGColorLayer() || isAppleColorLayer();
}

std::optional<std::string> VLLayer::layerKey() const
{
    if (!_layerKey && !_attributes.empty()) _layerKey = _name;
    return _layerKey;
}

std::string VLLayer::layerGroupKey() const
{
    std::lock_guard lock(_monitor);
    if (!_layerGroupKey && !_attributes.empty())
        _layerGroupKey = descriptionForAttributeAxisRules().value_or("") + descriptionForAttributeColor();
    return _layerGroupKey.value_or("");
}

std::optional<std::string> VLLayer::descriptionForAttributeAxisRules() const
{
    Value rules = attributeForKey("axisRules");
    if (!rules.isDictionary()) return std::nullopt;
    std::string text;
    if (auto owner = font()) {
        for (const auto& axis : owner->axes()) {
            std::string piece = ruleText(rules[axis->axisId()], axis->shortAxisTag());
            if (piece.empty()) continue;
            if (!text.empty()) text += ruleJoiner;
            text += piece;
        }
    }
    return "[" + text + "]";
}

std::string VLLayer::descriptionForAttributeColor() const
{
    Value palette = attributeForKey("colorPalette");
    if (!palette.isNull())
        return palette == Value("*") ? "Color *" : "Color " + std::to_string(palette.integerValue());
    if (isFullColorLayer()) return "Color";
    if (isAppleColorLayer()) return "iColor " + std::to_string(attributeForKey("sbixSize").integerValue());
    return isSVGColorLayer() ? "svg" : "";
}

bool VLLayer::axesValuesList_fontAxes(std::vector<double>& list, const std::vector<std::shared_ptr<VLAxis>>& axes) const
{
    Value coordinates = attributeForKey("coordinates");
    if (!coordinates.isDictionary()) return false;
    for (size_t i = 0; i < axes.size() && i < list.size(); ++i) {
        const Value& value = coordinates[axes[i]->axisId()];
        if (value.isNumber()) list[i] = value.doubleValue();
    }
    return true;
}

bool VLLayer::rule_matchesCoordinates(const Value& rule, const Value& coordinates)
{
    if (!rule.isDictionary()) return true;
    return std::none_of(rule.dictionary().begin(), rule.dictionary().end(), [&](const auto& entry) {
        const Value& value = coordinates[entry.first];
        if (!value.isNumber()) return false;
        const Value& limits = entry.second;
        return (limits["min"].isNumber() && limits["min"].doubleValue() > value.doubleValue()) ||
               (limits["max"].isNumber() && limits["max"].doubleValue() < value.doubleValue());
    });
}
