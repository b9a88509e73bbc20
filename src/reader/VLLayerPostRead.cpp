#include "model/VLAxis.h"
#include "platform/NumberConversion.h"
#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLLayer.h"
#include "model/VLShape.h"
#include "outline/VLPath.h"
#include "reader/VLPlistNumbers.h"

#include <algorithm>
#include <cctype>

namespace {

using Axes = std::vector<std::shared_ptr<VLAxis>>;

// Marks an axis that an old layer name gives no number for; anything below belowAny is unset.
constexpr double noValue = -100001.0;
constexpr double belowAny = -100000.0;
// An old special layer name has its brackets near the start.
constexpr size_t nameSearchLength = 150;

Value singlePrecision(const Value& value)
{
    return Value(static_cast<double>(VLSinglePrecision(value.doubleValue())));
}

// Element i of the list belongs to axis i; an element without "min" and "max" has no entry.
Value axisRulesByAxis(const ValueArray& rules, const Axes& axes)
{
    ValueDictionary byAxis;
    for (size_t i = 0; i < rules.size() && i < axes.size(); ++i) {
        ValueDictionary limits;
        for (const char* key : {"min", "max"})
            if (!rules[i][key].isNull()) limits[key] = singlePrecision(rules[i][key]);
        if (!limits.empty()) byAxis[axes[i]->axisId()] = Value(std::move(limits));
    }
    return Value(std::move(byAxis));
}

// A list shorter than the axes leaves the rest where the layer's master stands.
Value coordinatesByAxis(const ValueArray& coordinates, const Axes& axes, const VLFontMaster* master)
{
    ValueDictionary byAxis;
    for (size_t i = 0; i < axes.size(); ++i) {
        const std::string& axisId = axes[i]->axisId();
        if (i >= coordinates.size())
            byAxis[axisId] = Value(master ? master->axisValueValueForId(axisId) : 0.0);
        else
            byAxis[axisId] = coordinates[i].isNumber() ? coordinates[i] : singlePrecision(coordinates[i]);
    }
    return Value(std::move(byAxis));
}

bool startsWith(const std::string& text, const char* prefix)
{
    return text.rfind(prefix, 0) == 0;
}

bool hasDigitBetween(const uint8_t* from, const uint8_t* to)
{
    return std::any_of(from, to, [](uint8_t c) { return std::isdigit(c) != 0; });
}

} // namespace

bool VLLayer::postRead_format(VLError* error, uint8_t format)
{
    auto font = this->font();
    const Axes noAxes;
    const Axes& axes = font ? font->axes() : noAxes;
    Value rules = attributeForKey("axisRules");
    if (!rules.isNull()) {
        if (!rules.isArray()) return false;
        _attributes["axisRules"] = axisRulesByAxis(rules.array(), axes);
    }
    Value coordinates = attributeForKey("coordinates");
    if (!coordinates.isNull()) {
        if (!coordinates.isArray()) return false;
        auto master = associatedFontMaster();
        _attributes["coordinates"] = coordinatesByAxis(coordinates.array(), axes, master.get());
    }
    Value palette = attributeForKey("colorPalette");
    if (!palette.isNull() && !palette.isNumber() && !(palette == Value("*")))
        _attributes["colorPalette"] = Value(palette.integerValue());
    Value color = attributeForKey("color");
    if (!color.isNull() && !color.isNumber()) _attributes["color"] = Value(color.boolValue());

    if (format != 1)
        postReadShapes(error, format);
    else if (_name.find_first_of("{[]") == std::string::npos)
        postReadColorName();
    else
        postReadSpecialName();
    return true;
}

// Older documents told colour layers by their names alone.
void VLLayer::postReadColorName()
{
    if (_name == "Color") {
        _attributes["color"] = Value(1);
    } else if (startsWith(_name, "Color ")) {
        _attributes["colorPalette"] = Value(Value(_name.substr(5)).integerValue());
    } else if (startsWith(_name, "iColor") && _name.size() >= 7) {
        _attributes["sbixSize"] = Value(Value(_name.substr(6)).integerValue());
    } else if (_name == "svg") {
        _attributes["svg"] = Value(1);
    } else {
        return;
    }
    _name.clear();
}

// Older documents told bracket and brace layers by "Light [200]" and "Light {100, 50}".
void VLLayer::postReadSpecialName()
{
    auto font = this->font();
    if (!font) return;
    // Room for one number even without axes: a bracket layer then brings its own weight axis.
    std::vector<double> values(std::max<size_t>(1, font->countOfAxes()), noValue);
    size_t count = 0;
    char kind = _specialLayerInfoAxes_count(_name, values, count);
    if (kind == '[' || kind == ']') {
        ValueDictionary rules;
        if (count > 0) {
            if (font->countOfAxes() == 0) {
                auto axis = VLAxis::init();
                axis->setAxisTag("wght");
                font->addAxis(axis);
            }
            double limit = values[0] < belowAny ? 0.0 : values[0];
            rules[font->axes()[0]->axisId()] = Value(ValueDictionary{{kind == '[' ? "min" : "max", Value(limit)}});
        }
        _attributes["axisRules"] = Value(std::move(rules));
    } else if (kind == '{') {
        auto master = associatedFontMaster();
        ValueDictionary coordinates;
        for (size_t i = 0; i < font->countOfAxes(); ++i) {
            const std::string& axisId = font->axes()[i]->axisId();
            bool unset = values[i] < belowAny;
            coordinates[axisId] = Value(unset ? (master ? master->axisValueValueForId(axisId) : 0.0) : values[i]);
        }
        _attributes["coordinates"] = Value(std::move(coordinates));
    }
}

char VLLayer::_specialLayerInfoAxes_count(const std::string& name, std::vector<double>& values, size_t& count)
{
    count = 0;
    if (name == "[]") return '[';
    if (name.size() < 3) return 0;
    size_t at = name.find_first_of("<[]{");
    if (at == std::string::npos || at >= nameSearchLength) return 0;
    char kind = name[at++];
    if (kind == '[' && name[at] == '<') {
        kind = ']';
        ++at;
    }
    const auto* bytes = reinterpret_cast<const uint8_t*>(name.c_str());
    for (;;) {
        size_t next = at;
        double value = parseDoubleAt(bytes, &next);
        if (!hasDigitBetween(bytes + at, bytes + next)) break;
        if (count < values.size()) values[count] = value;
        ++count;
        at = next;
        if (bytes[at] != ',') break;
        ++at;
    }
    if (kind == '{') return bytes[at] == '}' ? kind : 0;
    if (kind == '[' || kind == ']') return bytes[at] == ']' && at + 1 == name.size() ? kind : 0;
    return kind;
}

// Empty paths are dropped; they are still finished, as every shape is.
void VLLayer::postReadShapes(VLError* error, uint8_t format)
{
    size_t count = _shapes.size();
    for (size_t i = count; i-- > 0;) {
        auto shape = _shapes[i];
        shape->postRead_format(error, format);
        auto path = std::dynamic_pointer_cast<VLPath>(shape);
        if (path && path->countOfNodes() == 0) _shapes.erase(_shapes.begin() + static_cast<std::ptrdiff_t>(i));
    }
    if (_shapes.size() != count) setNeedUpdateShapes();
}
