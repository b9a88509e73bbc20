#include "model/VLCustomParameter.h"
#include "model/VLFontMaster.h"
#include "model/VLMetricValue.h"
#include "reader/VLDictRecords.h"
#include "reader/VLFontMasterKeys.h"

#include <array>
#include <utility>

namespace {

// The older format's metric keys, by the buffer names of their metric types.
constexpr std::array<std::pair<const char*, const char*>, 5> legacyMetricKeys = {{
    {"ascender", "ascender"},
    {"capHeight", "cap height"},
    {"xHeight", "x-height"},
    {"descender", "descender"},
    {"italicAngle", "italic angle"},
}};

// The older format's location: weight, width and four custom values, for the axes that the
// post-read pass derives from them.
Value legacyInterpolations(const Value& dict)
{
    auto number = [&](const char* key, double absent) {
        return dict[key].isNull() ? Value(absent) : Value(dict[key].doubleValue());
    };
    return Value(ValueArray{number("weightValue", 100.0), number("widthValue", 100.0), number("customValue", 0.0),
                            number("customValue1", 0.0), number("customValue2", 0.0), number("customValue3", 0.0)});
}

void readLegacyMetrics(VLFontMaster& master, const Value& dict)
{
    for (const auto& [key, bufferKey] : legacyMetricKeys)
        if (!dict[key].isNull()) master.setReadBuffer_forKey(dict[key], bufferKey);
    master.setReadBuffer_forKey(Value(0), "baseline");
    master.setReadBuffer_forKey(legacyInterpolations(dict), "interpolations");
}

void readMetricValues(VLFontMaster& master, const Value& list, uint8_t format)
{
    std::vector<std::shared_ptr<VLMetricValue>> values;
    for (const Value& element : list.array()) values.push_back(VLMetricValue::initWithDict_format(element, format));
    setMasterMetricValues(master, values);
}

void readParameters(VLFontMaster& master, const Value& list, uint8_t format)
{
    if (auto parameters = readDictObjects<VLCustomParameter>(list, format))
        for (const auto& parameter : *parameters) {
            parameter->setParent(&master);
            master.addCustomParameter(parameter);
        }
}

} // namespace

std::shared_ptr<VLFontMaster> VLFontMaster::initWithDict_format(const Value& dict, uint8_t format)
{
    auto master = initFast();
    if (!dict["id"].isNull()) master->setId(dict["id"]);
    if (dict["name"].isString()) master->setName(dict["name"].string());
    if (dict["iconName"].isString()) master->setIconName(dict["iconName"].string());
    if (!dict["visible"].isNull()) master->setVisible(dict["visible"].boolValue());
    if (!dict["axesValues"].isNull()) setMasterAxesValues(*master, dict["axesValues"]);
    if (format == 1)
        readLegacyMetrics(*master, dict);
    else if (dict["metricValues"].isArray())
        readMetricValues(*master, dict["metricValues"], format);
    for (const char* key : {"numberValues", "stemValues"})
        if (!dict[key].isNull()) master->setReadBuffer_forKey(dict[key], key);
    for (const auto& [key, value] : dict["userData"].dictionary()) master->setUserData_forKey(value, key);
    readParameters(*master, dict["customParameters"], format);
    return master;
}
