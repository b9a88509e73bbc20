#include "model/VLFont.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "model/VLPartProperty.h"
#include "platform/Log.h"
#include "platform/StringFormat.h"
#include "reader/VLColorKey.h"
#include "reader/VLDictKeySource.h"

#include <algorithm>
#include <array>

namespace {

// Code points are kept as text. A number is read as hexadecimal digits in the older format and
// written with four decimal digits in the current one.
std::string codeOfValue(const Value& value, uint8_t format)
{
    if (value.isString()) return value.string();
    if (format == 1) return stringWithFormat("%04lX", static_cast<long>(value.integerValue()));
    return stringWithFormat("%.4ld", static_cast<long>(value.integerValue()));
}

std::vector<std::string> unicodesOfValue(const Value& value, uint8_t format)
{
    std::vector<std::string> codes;
    auto add = [&](std::string code) {
        if (std::find(codes.begin(), codes.end(), code) == codes.end()) codes.push_back(std::move(code));
    };
    if (value.isString()) {
        const std::string& text = value.string();
        for (size_t from = 0; from <= text.size();) {
            size_t comma = std::min(text.find(',', from), text.size());
            add(text.substr(from, comma - from));
            from = comma + 1;
        }
    } else if (value.isArray()) {
        for (const Value& code : value.array()) add(codeOfValue(code, format));
    } else if (value.isNumber()) {
        add(codeOfValue(value, format));
    }
    return codes;
}

// The first of the keys that holds text.
std::string firstString(const Value& dict, std::initializer_list<const char*> keys)
{
    for (const char* key : keys)
        if (dict[key].isString()) return dict[key].string();
    return std::string();
}

void readKerningGroups(VLGlyph& glyph, const Value& dict, uint8_t format)
{
    bool legacy = format == 1;
    glyph.setLeftKerningGroup(legacy ? firstString(dict, {"kernLeft"}) : firstString(dict, {"leftKerningGroup", "leftKerningGroupId"}));
    glyph.setRightKerningGroup(legacy ? firstString(dict, {"kernRight"}) : firstString(dict, {"rightKerningGroup", "rightKerningGroupId"}));
    glyph.setTopKerningGroup(legacy ? firstString(dict, {"kernTop"}) : firstString(dict, {"topKerningGroup", "topKerningGroupId"}));
    glyph.setBottomKerningGroup(legacy ? firstString(dict, {"kernBottom"}) : firstString(dict, {"bottomKerningGroup", "bottomKerningGroupId"}));
}

// The glyph information that the document states explicitly.
void readGlyphInfo(VLGlyph& glyph, const Value& dict)
{
    if (dict["script"].isString()) glyph.setScript(dict["script"].string()), glyph.setStoreScript(true);
    if (dict["category"].isString()) glyph.setCategory(dict["category"].string()), glyph.setStoreCategory(true);
    if (dict["subCategory"].isString())
        glyph.setSubCategory(dict["subCategory"].string()), glyph.setStoreSubCategory(true);
    if (dict["case"].isString()) glyph.setGlyphCase(VLGlyph::caseFromString(dict["case"].string())), glyph.setStoreCase(true);
    if (dict["production"].isString())
        glyph.setProduction(dict["production"].string()), glyph.setStoreProduction(true);
    if (!dict["sortName"].isNull() || !dict["sortNameKeep"].isNull()) glyph.setStoreProduction(true);
    if (dict["direction"].isString())
        glyph.setDirection(VLGlyph::directionFromString(dict["direction"].string())), glyph.setStoreDirection(true);
}

// What building a layer costs of the request's bound on outline records, as the streaming reader
// counts it: the layer, its shapes, their nodes and its anchors.
uint64_t recordsOfLayer(const Value& layer)
{
    uint64_t records = 1 + layer["anchors"].count();
    for (const char* key : {"shapes", "paths", "components"})
        for (const Value& shape : layer[key].array()) records += 1 + shape["nodes"].count();
    return records;
}

bool takeRecords(uint64_t* left, uint64_t records)
{
    if (!left) return true;
    if (*left < records) return false;
    *left -= records;
    return true;
}

} // namespace

std::shared_ptr<VLGlyph> VLGlyph::initWithDict_format(const Value& dict, uint8_t format)
{
    auto glyph = initFast();
    VLGlyph& g = *glyph;
    g._name = dict["glyphname"].isString() ? dict["glyphname"].string() : "no Name";
    g._id = g._name;
    g._unicodes = unicodesOfValue(dict["unicode"], format);
    if (!dict["export"].isNull()) g.setExport(dict["export"].boolValue());
    if (!dict["index"].isNull()) g.setGlyphId(static_cast<uint64_t>(dict["index"].integerValue()));
    if (!dict["color"].isNull()) {
        VLDictKeySource color("color", dict["color"]);
        readColorKey(g, color);
    }
    readGlyphInfo(g, dict);
    readKerningGroups(g, dict, format);
    if (auto settings = readDictObjects<VLPartProperty>(dict["partsSettings"], format))
        g.setPartsSettings(std::move(*settings));
    g._glyphDict = dict;
    return glyph;
}

bool VLGlyph::readLayersFromDictFormat(uint8_t format)
{
    auto font = parent();
    uint64_t* recordsLeft = font ? font->outlineRecordsLeft() : nullptr;
    auto layers = readDictRecords<VLLayer>(_glyphDict["layers"], true, [&](const Value& element) -> std::shared_ptr<VLLayer> {
        if (!element.isDictionary() || !takeRecords(recordsLeft, recordsOfLayer(element))) return nullptr;
        return VLLayer::initWithDict_format(element, format);
    });
    if (!layers) return false;
    _glyphDict = Value();
    _layers = Layers();
    for (const auto& layer : *layers) {
        if (layer->layerId().empty()) continue;
        if (!font || !font->fontMasterForId(layer->associatedMasterId()))
            VLLog("initWithGlyphDict: Layer cannot be associated with FontMaster");
        layer->setParent(shared_from_this());
        _layers.setObject_forKey(layer, layer->layerId());
        layer->postRead_format(nullptr, format);
    }
    return true;
}
