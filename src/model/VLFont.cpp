#include "model/VLFont.h"

#include "model/VLAxis.h"
#include "model/VLChildren.h"
#include "model/VLCustomParameter.h"
#include "model/VLFontMaster.h"
#include "model/VLGlyph.h"
#include "model/VLInstance.h"
#include "model/VLLayer.h"
#include "model/VLMetric.h"
#include "model/VLUserData.h"

#include <cstdio>
#include <cstdlib>
#include <set>
#include <sstream>

std::shared_ptr<VLFont> VLFont::init()
{
    auto font = std::make_shared<VLFont>();
    auto master = VLFontMaster::initFast();
    master->setId(std::string("m01"));
    font->addFontMaster(master);
    return font;
}

void VLFont::setGlyphs(std::vector<std::shared_ptr<VLGlyph>> glyphs)
{
    VLSetChildren(_glyphs, std::move(glyphs), shared_from_this());
}

void VLFont::addGlyphFast(const std::shared_ptr<VLGlyph>& glyph)
{
    VLAddChild(_glyphs, glyph, shared_from_this());
}

std::shared_ptr<VLGlyph> VLFont::objectInGlyphsAtIndex(size_t index) const
{
    return index < _glyphs.size() ? _glyphs[index] : nullptr;
}

void VLFont::setFontMasters(std::vector<std::shared_ptr<VLFontMaster>> masters)
{
    _fontMasters = std::move(masters);
    for (const auto& master : _fontMasters) master->setFont(this);
}

void VLFont::addFontMaster(const std::shared_ptr<VLFontMaster>& master)
{
    if (!master) return;
    master->setFont(this);
    _fontMasters.push_back(master);
}

std::shared_ptr<VLFontMaster> VLFont::fontMasterAtIndex(long index) const
{
    if (index < 0) return nullptr;
    size_t i = static_cast<size_t>(index);
    if (i < _fontMasters.size()) return _fontMasters[i];
    i -= _fontMasters.size();
    return i < _importedFontMasters.size() ? _importedFontMasters[i] : nullptr;
}

long VLFont::indexOfFontMaster(const VLFontMaster* master) const
{
    for (size_t i = 0; i < _fontMasters.size(); ++i)
        if (_fontMasters[i].get() == master) return static_cast<long>(i);
    return -1;
}

std::shared_ptr<VLFontMaster> VLFont::fontMasterForId(const std::string* id) const
{
    if (!id) return nullptr;
    for (const auto* list : {&_fontMasters, &_importedFontMasters})
        for (const auto& master : *list)
            if (master->id() == *id) return master;
    return nullptr;
}

std::shared_ptr<VLFontMaster> VLFont::fontMasterForName(const std::string& name) const
{
    for (const auto* list : {&_fontMasters, &_importedFontMasters})
        for (const auto& master : *list)
            if (master->name() == name) return master;
    return nullptr;
}

std::string VLFont::version() const
{
    return std::to_string(_versionMajor) + "." + std::to_string(_versionMinor);
}

void VLFont::setVersion(const std::string& version)
{
    int major = 0;
    int minor = 0;
    std::sscanf(version.c_str(), "%d.%d", &major, &minor);
    _versionMajor = static_cast<uint64_t>(major);
    _versionMinor = static_cast<uint64_t>(minor);
}

double VLFont::gridLength() const
{
    if (_gridSubDivision == 0) return _gridMain;
    return static_cast<double>(_gridMain) / _gridSubDivision;
}

std::string VLFont::fontTypeKeyForType(int8_t type)
{
    switch (type) {
    case FontTypeVariable: return "variable";
    case FontTypeLayerFont: return "layerFont";
    case FontTypeIconSet: return "iconSet";
    default: return "default";
    }
}

int8_t VLFont::fontTypeForTypeKey(const std::string& key)
{
    if (key == "variable") return FontTypeVariable;
    if (key == "layerFont") return FontTypeLayerFont;
    if (key == "iconSet") return FontTypeIconSet;
    return FontTypeDefault;
}

void VLFont::setUserData_forKey(const Value& value, const std::string& key)
{
    VLSetUserData(_userData, value, key);
}

Value VLFont::tempDataForKey(const std::string& key) const
{
    if (!_tempData) return Value();
    auto it = _tempData->find(key);
    return it == _tempData->end() ? Value() : it->second;
}

void VLFont::setTempData_forKey(const Value& value, const std::string& key)
{
    if (!_tempData) _tempData.emplace();
    if (value.isNull())
        _tempData->erase(key);
    else
        (*_tempData)[key] = value;
}

void VLFont::stopUpdateInterface()
{
    _disabledChanges = true;
    _disabledChangeKeys.reset();
}

void VLFont::disableUpdateInterface()
{
    _disabledChanges = true;
    if (!_disabledChangeKeys) _disabledChangeKeys.emplace();
}

void VLFont::enableUpdateInterface()
{
    _disabledChanges = false;
    // Nothing listens to announcements here, so re-announcing the held keys is only emptying them.
    if (_disabledChangeKeys) _disabledChangeKeys->clear();
}

std::vector<std::shared_ptr<VLGlyph>> VLFont::allGlyphs() const
{
    if (_importedGlyphs.empty()) return _glyphs;
    std::vector<std::shared_ptr<VLGlyph>> all = _glyphs;
    std::set<std::string> names;
    for (const auto& glyph : _glyphs) names.insert(glyph->name());
    // The first imported glyph of a name wins; "glyphOrder" does not reorder here.
    for (const auto& glyph : _importedGlyphs)
        if (names.insert(glyph->name()).second) all.push_back(glyph);
    return all;
}

void VLFont::replaceMasterID_toID(const std::string& oldId, const std::string& newId)
{
    for (const auto& glyph : _glyphs) {
        for (const auto& layer : glyph->layers().allValues()) {
            if (layer->associatedMasterId() != oldId) continue;
            layer->setAssociatedMasterId(newId);
            if (layer->layerId() != oldId) continue;
            glyph->removeLayerForId(oldId);
            glyph->setLayer_forId(layer, newId);
        }
    }
}

Value VLFont::panose()
{
    auto parameter = customParameterActiveForKey("panose");
    if (!parameter) parameter = customParameterActiveForKey("openTypeOS2Panose");
    if (!parameter) return Value();
    if (parameter->value().isString()) {
        ValueArray numbers;
        std::stringstream text(parameter->value().string());
        for (std::string piece; std::getline(text, piece, ',');) numbers.push_back(Value(std::atoi(piece.c_str())));
        parameter->setValue(Value(std::move(numbers)));
    }
    return parameter->value();
}

namespace {

template <typename T> std::vector<std::shared_ptr<T>> copies(const std::vector<std::shared_ptr<T>>& items)
{
    std::vector<std::shared_ptr<T>> result;
    for (const auto& item : items) result.push_back(item->copy());
    return result;
}

} // namespace

std::shared_ptr<VLFont> VLFont::copy() const
{
    auto font = std::make_shared<VLFont>();
    font->_unitsPerEm = _unitsPerEm;
    font->_versionMajor = _versionMajor;
    font->_versionMinor = _versionMinor;
    font->_gridMain = _gridMain;
    font->_gridSubDivision = _gridSubDivision;
    font->_keyboardIncrement = _keyboardIncrement;
    font->_keyboardIncrementBig = _keyboardIncrementBig;
    font->_keyboardIncrementHuge = _keyboardIncrementHuge;
    font->_previewRemoveOverlap = _previewRemoveOverlap;
    font->_snapToObjects = _snapToObjects;
    font->_disablesNiceNames = _disablesNiceNames;
    font->_disablesAutomaticAlignment = _disablesAutomaticAlignment;
    font->_keepAlternatesTogether = _keepAlternatesTogether;
    font->_fontName = _fontName;
    font->_formatVersion = _formatVersion;
    font->_storedFormatVersion = _storedFormatVersion;
    font->_appVersion = _appVersion;
    font->_storedFileType = _storedFileType;
    font->_fontType = _fontType;
    font->_userData = _userData;
    font->_disabledChanges = true;
    font->setAxes(copies(_axes));
    font->copyCustomParametersFrom(*this);
    font->setFontMasters(copies(_fontMasters));
    font->_instances = copies(_instances);
    for (const auto& instance : font->_instances) instance->setFont(font.get());
    font->setMetrics(copies(_metrics));
    font->setStems(copies(_stems));
    font->setNumbers(copies(_numbers));
    std::vector<std::shared_ptr<VLGlyph>> glyphs;
    for (const auto& glyph : _glyphs) glyphs.push_back(glyph->copy());
    font->setGlyphs(std::move(glyphs));
    return font;
}
