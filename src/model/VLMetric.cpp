#include "model/VLMetric.h"

#include "platform/Log.h"
#include "platform/Predicate.h"
#include "platform/VLException.h"

#include <array>

namespace {

constexpr std::array<const char*, 10> typeNames = {"-",         "ascender",   "cap height", "slant height",
                                                   "x-height",  "midHeight",  "bodyHeight", "descender",
                                                   "baseline",  "italic angle"};

} // namespace

std::shared_ptr<VLMetric> VLMetric::initWithHorizontal_index(bool horizontal, int index)
{
    auto metric = init();
    metric->_name = std::string(1, horizontal ? 'h' : 'v') + "Stem" + std::to_string(index);
    metric->_horizontal = horizontal;
    return metric;
}

std::string VLMetric::typeNameForType(uint8_t type)
{
    return type < typeNames.size() ? typeNames[type] : typeNames[0];
}

uint8_t VLMetric::typeForTypeName(const std::string& name)
{
    if (name == "capheight") return TypeCapHeight;
    if (name == "xheight") return TypeXHeight;
    for (uint8_t type = 1; type < typeNames.size(); ++type)
        if (name == typeNames[type]) return type;
    return TypeNone;
}

bool VLMetric::isDefaultType(uint8_t type)
{
    return type == TypeAscender || type == TypeCapHeight || type == TypeXHeight || type == TypeDescender ||
           type == TypeBaseline;
}

void VLMetric::setFilterString(const std::string& format)
{
    try {
        _filter = Predicate::predicateWithFormat(format);
    } catch (const VLException& exception) {
        VLLog("Error with filter: " + format + " (" + exception.reason() + ")");
    }
}

std::optional<std::string> VLMetric::filterString() const
{
    if (!_filter) return std::nullopt;
    return _filter->predicateFormat();
}

std::vector<std::string> VLMetric::titles() const
{
    std::vector<std::string> titles;
    if (_type != TypeNone) titles.emplace_back();
    if (_name && !_name->empty()) titles.push_back(*_name);
    if (_filter) titles.push_back(_filter->predicateFormat());
    return titles;
}

std::string VLMetric::title() const
{
    std::vector<std::string> parts = titles();
    std::string joined;
    for (size_t i = 0; i < parts.size(); ++i) joined += (i == 0 ? "" : ", ") + parts[i];
    return joined;
}

std::string VLMetric::noFilterId() const
{
    if (_name && !_name->empty()) return typeNameForType(_type) + "####" + *_name;
    return typeNameForType(_type);
}

std::string VLMetric::identifier() const
{
    if (!_filter) return noFilterId();
    return typeNameForType(_type) + "####" + _name.value_or("(null)") + "####" + _filter->predicateFormat();
}

bool VLMetric::isEqualToMetric(const VLMetric& other) const
{
    return _type == other._type && _name == other._name && _horizontal == other._horizontal &&
           filterString() == other.filterString();
}
