#include "model/VLAxis.h"
#include "platform/NumberConversion.h"

#include "platform/UUID.h"
#include "platform/VLError.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <utility>

namespace {

using Pair = std::pair<const char*, const char*>;

constexpr std::array<Pair, 28> nameToTag = {{
    {"Italic", "ital"}, {"Optical size", "opsz"}, {"Slant", "slnt"}, {"Width", "wdth"}, {"Weight", "wght"},
    {"Counter Width", "xtra"}, {"Thick Stroke", "xopq"}, {"y transparent", "ytra"}, {"Thin Stroke", "yopq"},
    {"Lowercase Height", "ytlc"}, {"Uppercase Height", "ytuc"}, {"Descender Depth", "ytde"},
    {"Ascender Height", "ytas"}, {"tabular width", "xtab"}, {"glyph rotation axis", "vrot"}, {"Underline", "udln"},
    {"Shadow depth", "shdw"}, {"Reflect", "refl"}, {"Outline value", "otln"}, {"Engraving value", "engr"},
    {"Counter Width Chinese", "xtch"}, {"Counter Height Chinese", "ytch"}, {"relative x advance", "rxad"},
    {"relative y advance", "ryad"}, {"relative second", "rsec"}, {"feature variation axis", "votf"},
    {"Figure Height", "ytfi"}, {"Round", "ROND"},
}};

constexpr std::array<const char*, 20> defaultSet = {"ital", "opsz", "rxad", "ryad", "slnt", "vrot", "wdth",
                                                    "wght", "xopq", "xtab", "xtch", "xtra", "yopq", "ytas",
                                                    "ytch", "ytde", "ytlc", "ytse", "ytuc", "ytfi"};

constexpr std::array<Pair, 5> shortTags = {{{"ital", "it"}, {"opsz", "oz"}, {"slnt", "sl"}, {"wdth", "wd"}, {"wght", "wg"}}};

} // namespace

std::optional<std::string> VLAxis::tagForAxisName(const std::string& name)
{
    for (const auto& [axisName, tag] : nameToTag)
        if (name == axisName) return tag;
    return std::nullopt;
}

std::optional<std::string> VLAxis::nameForAxisTag(const std::string& tag)
{
    if (tag == "hght") return "Height";
    for (const auto& [axisName, axisTag] : nameToTag)
        if (tag == axisTag) return axisName;
    return std::nullopt;
}

std::string VLAxis::axisIdForNumber(size_t number)
{
    char axisId[24];
    std::snprintf(axisId, sizeof axisId, "a%.2zu", number);
    return axisId;
}

std::shared_ptr<VLAxis> VLAxis::init()
{
    auto axis = std::make_shared<VLAxis>();
    axis->_axisId = newUUIDString();
    return axis;
}

std::shared_ptr<VLAxis> VLAxis::initWithName_tag(const std::string& name, const std::string& tag)
{
    auto axis = init();
    axis->setName(name);
    axis->_axisTag = tag;
    return axis;
}

std::shared_ptr<VLAxis> VLAxis::initWithDict_format(const Value& dict, uint8_t)
{
    auto axis = init();
    if (dict["name"].isString()) axis->setName(dict["name"].string());
    if (dict["tag"].isString()) axis->_axisTag = dict["tag"].string();
    if (!dict["default"].isNull()) axis->_defaultValue = VLSinglePrecision(dict["default"].doubleValue());
    if (!dict["hidden"].isNull()) axis->_hidden = dict["hidden"].boolValue();
    return axis;
}

void VLAxis::setName(const std::string& name)
{
    if (_name == name) return;
    _name = name;
    if (auto tag = tagForAxisName(name)) _axisTag = *tag;
}

std::string VLAxis::axisTag() const
{
    if ((!_axisTag || _axisTag->empty()) && _name)
        if (auto tag = tagForAxisName(*_name)) return *tag;
    return _axisTag.value_or("");
}

std::string VLAxis::axisTagDefault() const
{
    std::string tag = axisTag();
    if (tag.empty() && !_name) return "UNKN";
    if (tag.size() >= 4) return tag;
    std::string made = (name() + "   ").substr(0, 4);
    std::transform(made.begin(), made.end(), made.begin(), [](unsigned char c) { return std::toupper(c); });
    return made;
}

std::string VLAxis::shortAxisTag() const
{
    std::string tag = axisTag();
    for (const auto& [full, brief] : shortTags)
        if (tag == full) return brief;
    return tag;
}

bool VLAxis::isDefault() const
{
    std::string tag = axisTag();
    return std::any_of(defaultSet.begin(), defaultSet.end(), [&](const char* t) { return tag == t; });
}

void VLAxis::setDefaultValue(double value)
{
    if (std::fabs(value - _defaultValue) > 0.001) _defaultValue = value;
}

bool VLAxis::validateAxisTag_error(std::string& tag, VLError* error) const
{
    if (tag.empty()) return true;
    const std::string complete = tag;
    tag = tag.substr(0, 4);
    bool registered = std::any_of(nameToTag.begin(), nameToTag.end(), [&](const Pair& p) { return tag == p.second; });
    if (registered || tag.find_first_not_of("0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ") == std::string::npos) return true;
    handOut(error, VLError::errorWithDomain_code_userInfo(
                       "VelmorErrorDomain", 125,
                       {{VLError::localizedDescriptionKey,
                         "Custom Axis Tags should only contain Uppercase letter and numbers."},
                        {VLError::localizedFailureReasonKey, "In Axis: " + name() + " (" + complete + ")"}}));
    return false;
}

std::vector<std::shared_ptr<VLAxis>> VLAxis::cornerAxes()
{
    std::vector<std::shared_ptr<VLAxis>> axes;
    for (const char* tag : {"wdth", "hght"}) {
        auto axis = initWithName_tag(nameForAxisTag(tag).value_or(""), tag);
        axis->_axisId = tag;
        axes.push_back(axis);
    }
    return axes;
}
