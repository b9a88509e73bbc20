#include "model/VLAxis.h"
#include "model/VLCustomParameter.h"
#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLGlyph.h"
#include "model/VLInstance.h"
#include "model/VLMetric.h"
#include "platform/StringFormat.h"
#include "platform/UUID.h"
#include "platform/VLError.h"
#include "platform/VLException.h"
#include "reader/VLDictRecords.h"

namespace {

// The highest format that this reader understands.
constexpr int highestFormat = 3;

VLError higherVersionError(int version)
{
    return VLError::errorWithDomain_code_userInfo(
        "VLVelmorDomain", 1,
        {{VLError::localizedDescriptionKey,
          stringWithFormat("The file can’t be opened. It was save in a higher version (%d). You have version %d.",
                           version, highestFormat)}});
}

VLFont::Metrics metricsFromDict(const Value& list, uint8_t format)
{
    auto metrics = readDictObjects<VLMetric>(list, format).value_or(VLFont::Metrics());
    for (const auto& metric : metrics) metric->setId(newUUIDString());
    return metrics;
}

std::vector<std::shared_ptr<VLAxis>> axesFromDict(const Value& list, uint8_t format)
{
    auto axes = readDictObjects<VLAxis>(list, format).value_or(std::vector<std::shared_ptr<VLAxis>>());
    for (size_t i = 0; i < axes.size(); ++i) axes[i]->setAxisId(VLAxis::axisIdForNumber(i + 1));
    return axes;
}

uint32_t unsignedOrDefault(const Value& value, uint32_t absent)
{
    return value.isNull() ? absent : static_cast<uint32_t>(value.integerValue());
}

} // namespace

std::shared_ptr<VLFont> VLFont::initWithDict_error(const Value& dict, VLError* error)
{
    auto font = std::make_shared<VLFont>();
    VLFont& f = *font;
    f._appVersion = dict[".appVersion"].isString() ? dict[".appVersion"].string() : dict[".appVersion"].description();
    int64_t version = dict[".formatVersion"].integerValue();
    if (version >= highestFormat + 1) {
        handOut(error, higherVersionError(static_cast<int>(version)));
        return nullptr;
    }
    f._formatVersion = version <= 0 ? 1 : static_cast<uint8_t>(version);
    const uint8_t format = f._formatVersion;
    f._charsCache.emplace();
    f.readFontSettingsFromDict(dict);
    f.setAxes(axesFromDict(dict["axes"], format));
    f.setMetrics(metricsFromDict(dict["metrics"], format));
    f.setNumbers(metricsFromDict(dict["numbers"], format));
    f.setStems(metricsFromDict(dict["stems"], format));
    if (!f.readMastersFromDict(dict["fontMaster"], format)) return nullptr;
    f.readInstancesFromDict(dict["instances"], format);
    f.stopUpdateInterface();
    f.readGlyphsFromDict(dict["glyphs"], format);
    f.readKerningsFromDict(dict, format);
    if (auto parameters = readDictObjects<VLCustomParameter>(dict["customParameters"], format))
        for (const auto& parameter : *parameters) {
            parameter->setParent(&f);
            f.addCustomParameter(parameter);
        }
    for (const auto& [key, value] : dict["userData"].dictionary()) f.setUserData_forKey(value, key);
    if (!f.postRead(error)) return nullptr;
    f.enableUpdateInterface();
    return font;
}

// The settings of the streaming route, which the dictionary holds at its top level or, in
// documents of the current format, under "settings".
void VLFont::readFontSettingsFromDict(const Value& dict)
{
    _gridMain = 1;
    _gridSubDivision = dict["gridSubDivision"].isNull() ? 0 : 1;
    readSettings(dict);
    readSettings(dict["settings"]);
    if (dict["familyName"].isString()) _fontName = dict["familyName"].string();
    _unitsPerEm = unsignedOrDefault(dict["unitsPerEm"], 1000);
    _versionMajor = static_cast<uint64_t>(dict["versionMajor"].isNull() ? 1 : dict["versionMajor"].integerValue());
    _versionMinor = static_cast<uint64_t>(dict["versionMinor"].isNull() ? 1 : dict["versionMinor"].integerValue());
}

// A master that can't be built fails the font, and so does a list that is empty or too long; a
// document without any master raises.
bool VLFont::readMastersFromDict(const Value& list, uint8_t format)
{
    auto masters = readDictObjects<VLFontMaster>(list, format, true);
    if (!masters || (!list.isNull() && masters->empty())) return false;
    setFontMasters(std::move(*masters));
    if (_fontMasters.empty())
        throw VLException("Error while initializing the font", "There is no information on Font Master");
    return true;
}

void VLFont::readInstancesFromDict(const Value& list, uint8_t format)
{
    auto instances = readDictRecords<VLInstance>(list, false, [&](const Value& element) -> std::shared_ptr<VLInstance> {
        return element.isDictionary() ? VLInstance::initWithDict_container_format(element, this, format) : nullptr;
    });
    if (instances) setInstances(std::move(*instances));
}

// In order and on this thread: the glyph ids of the post-read pass are their places.
void VLFont::readGlyphsFromDict(const Value& list, uint8_t format)
{
    setGlyphs(readDictObjects<VLGlyph>(list, format).value_or(std::vector<std::shared_ptr<VLGlyph>>()));
}

void VLFont::readKerningsFromDict(const Value& dict, uint8_t format)
{
    if (format < 3) {
        _kerningLTR = readKerningFromDict(dict["kerning"]);
        return;
    }
    _kerningLTR = readKerningFromDict(dict["kerningLTR"]);
    _kerningRTL = readKerningFromDict(dict["kerningRTL"]);
    _kerningVertical = readKerningFromDict(dict["kerningVertical"]);
}
