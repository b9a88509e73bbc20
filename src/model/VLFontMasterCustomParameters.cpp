#include "model/VLFont.h"
#include "platform/NumberConversion.h"
#include "model/VLCustomParameter.h"
#include "model/VLFontMaster.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"

#include <algorithm>

namespace {

// Kana glyphs name their variant in the glyph name, so a prefix found there counts as well.
bool scriptFits(std::string_view prefix, const VLGlyph* glyph)
{
    if (!glyph) return false;
    if (prefix == glyph->script()) return true;
    return glyph->script() == "kana" && glyph->name().find(prefix) != std::string::npos;
}

} // namespace

void VLFontMaster::setCustomValue_forKey(const Value& value, const std::string& key)
{
    if (key.empty()) return;
    const auto& list = customParameters();
    auto it = std::find_if(list.begin(), list.end(), [&](const auto& parameter) { return parameter->name() == key; });
    if (value.isNull()) {
        if (it != list.end()) removeObjectFromCustomParametersAtIndex(static_cast<size_t>(it - list.begin()));
    } else if (it != list.end()) {
        (*it)->setValue(value);
    } else {
        addCustomParameter(VLCustomParameter::initWithName_value(key, value));
    }
}

double VLFontMaster::localizedCustomValueForKey_script(const std::string& key, const std::string& script) const
{
    if (key.empty() || script.size() < 2) return VLUnsetValue;
    for (const auto& parameter : customParameters()) {
        if (!parameter->active() || parameter->name() != key) continue;
        double value = parameter->localizedValueForScript(script);
        if (value != VLUnsetValue) return VLSinglePrecision(value);
    }
    return VLUnsetValue;
}

double VLFontMaster::localizedCustomValueForKey_layer(const std::string& key, const VLLayer* layer) const
{
    auto glyph = layer ? layer->glyph() : nullptr;
    if (key.empty() || !glyph || glyph->script().size() < 2) return VLUnsetValue;
    for (const auto& parameter : customParameters()) {
        if (!parameter->active() || parameter->name() != key) continue;
        const Value& value = parameter->value();
        if (!value.isString() || value.string().find(':') == std::string::npos) continue;
        double number = localizedParameterValue_glyph(value, glyph.get());
        if (number != VLUnsetValue) return number;
    }
    return VLUnsetValue;
}

Value VLFontMaster::localizedParameter_glyph(const Value& value, const VLGlyph* glyph)
{
    if (!value.isString()) return value;
    const std::string& text = value.string();
    size_t colon = text.find(':');
    if (colon == std::string::npos) return value;
    if (!scriptFits(std::string_view(text).substr(0, colon), glyph)) return Value();
    return Value(text.substr(colon + 1));
}

double VLFontMaster::localizedParameterValue_glyph(const Value& value, const VLGlyph* glyph)
{
    Value localized = localizedParameter_glyph(value, glyph);
    return localized.isNull() ? VLUnsetValue : VLSinglePrecision(localized.doubleValue());
}

void VLFontMaster::_updateGridCache()
{
    _gridMain = 100000;
    _gridSubDivision = 100000;
    // Inactive parameters count too, and the last one wins.
    for (const auto& parameter : customParameters()) {
        if (parameter->name() == "gridMain") _gridMain = static_cast<uint32_t>(parameter->value().integerValue());
        if (parameter->name() == "gridSubDivision")
            _gridSubDivision = static_cast<uint32_t>(parameter->value().integerValue());
    }
}

uint32_t VLFontMaster::gridMain()
{
    if (_gridMain == 0xFFFFFFFF) _updateGridCache();
    if (_gridMain < 100000) return _gridMain;
    return _font ? _font->gridMain() : 1;
}

uint32_t VLFontMaster::gridSubDivision()
{
    if (_gridMain == 0xFFFFFFFF) _updateGridCache();
    if (_gridSubDivision < 100000) return _gridSubDivision;
    return _font ? _font->gridSubDivision() : 1;
}

double VLFontMaster::gridLength()
{
    uint32_t subDivision = gridSubDivision();
    return subDivision == 0 ? gridMain() : static_cast<double>(gridMain()) / subDivision;
}

// The two setters differ by one on purpose: a subdivision of 100000 is still written.
void VLFontMaster::setGridMain(uint32_t value)
{
    if (value < 100000)
        setCustomValue_forKey(Value(static_cast<int64_t>(value)), "gridMain");
    else
        removeObjectFromCustomParametersForKey("gridMain");
    _gridMain = value;
}

void VLFontMaster::setSubDivision(uint32_t value)
{
    if (value < 100001)
        setCustomValue_forKey(Value(static_cast<int64_t>(value)), "gridSubDivision");
    else
        removeObjectFromCustomParametersForKey("gridSubDivision");
    _gridSubDivision = value;
}
