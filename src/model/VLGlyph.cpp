#include "model/VLGlyph.h"

#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLLayer.h"
#include "model/VLPartProperty.h"
#include "model/VLUserData.h"
#include "platform/UUID.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <utility>

namespace {

std::string upperCased(std::string code)
{
    std::transform(code.begin(), code.end(), code.begin(), [](unsigned char c) { return std::toupper(c); });
    return code;
}

} // namespace

std::shared_ptr<VLGlyph> VLGlyph::init()
{
    auto glyph = std::make_shared<VLGlyph>();
    glyph->_name = "newGlyph";
    glyph->_id = newUUIDString();
    return glyph;
}

std::shared_ptr<VLGlyph> VLGlyph::initFast()
{
    auto glyph = std::make_shared<VLGlyph>();
    // The address as "%p" writes it, without the formatting: a reader makes every glyph this way.
    char digits[2 * sizeof(uintptr_t)];
    auto address = reinterpret_cast<uintptr_t>(glyph.get());
    glyph->_id = "0x" + std::string(digits, std::to_chars(std::begin(digits), std::end(digits), address, 16).ptr);
    return glyph;
}

VLGlyph::~VLGlyph() = default;

void VLGlyph::setName(const std::string& name)
{
    auto font = parent();
    setName_changeName_update_validate(name, !(font && font->disablesNiceNames()), false, false);
}

void VLGlyph::setName_changeName_update_validate(const std::string& name, bool changeName, bool, bool)
{
    if (name.empty() || name == _name) return;
    std::string oldName = std::exchange(_name, name);
    auto font = parent();
    if (changeName && font) font->updateCacheForGlyph_oldName(shared_from_this(), oldName);
}

void VLGlyph::setNameFastCache(const std::string& name)
{
    std::string oldName = std::exchange(_name, name);
    if (auto font = parent()) font->glyphHasChangedName_oldName(shared_from_this(), oldName);
}

void VLGlyph::setUnicodesFast(const std::vector<std::string>& unicodes)
{
    _unicodes.clear();
    for (const std::string& given : unicodes) {
        if (given.size() < 3) continue;
        std::string code = upperCased(given);
        if (std::find(_unicodes.begin(), _unicodes.end(), code) == _unicodes.end()) _unicodes.push_back(code);
    }
    _unicodeChar = 0;
}

void VLGlyph::setUnicode(const std::string& code)
{
    std::string upper = upperCased(code);
    if (_unicodes.size() == 1 && _unicodes.front() == upper) return;
    setUnicodes(upper.empty() ? std::vector<std::string>() : std::vector<std::string>{upper});
}

void VLGlyph::setUnicodes(const std::vector<std::string>& codes)
{
    _unicodes.clear();
    for (const std::string& code : codes) {
        std::string upper = upperCased(code);
        if (std::find(_unicodes.begin(), _unicodes.end(), upper) == _unicodes.end()) _unicodes.push_back(upper);
    }
    _unicodeChar = 0;
    if (auto font = parent()) font->updateCacheForGlyph(shared_from_this());
}

void VLGlyph::addUnicode(const std::string& code)
{
    std::string upper = upperCased(code);
    if (upper.empty() || std::find(_unicodes.begin(), _unicodes.end(), upper) != _unicodes.end()) return;
    _unicodes.push_back(upper);
    _unicodeChar = 0;
    if (auto font = parent()) font->updateCacheForGlyph(shared_from_this());
}

void VLGlyph::removeUnicode(const std::string& code)
{
    auto it = std::find(_unicodes.begin(), _unicodes.end(), upperCased(code));
    if (it == _unicodes.end()) return;
    _unicodes.erase(it);
    _unicodeChar = 0;
    if (auto font = parent()) font->updateCacheForGlyph(shared_from_this());
}

uint32_t VLGlyph::unicodeChar() const
{
    if (_unicodeChar == 0 && !_unicodes.empty())
        _unicodeChar = static_cast<uint32_t>(std::strtoul(_unicodes.front().c_str(), nullptr, 16));
    return _unicodeChar;
}

namespace {

// UTF-8 of a code point in the range that a glyph may claim; "" outside it.
std::string characterText(uint32_t c)
{
    std::string text;
    if (c < 1 || c > 0x10FFFE) return text;
    if (c < 0x80) {
        text += static_cast<char>(c);
    } else if (c < 0x800) {
        text += static_cast<char>(0xC0 | (c >> 6));
        text += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        text += static_cast<char>(0xE0 | (c >> 12));
        text += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        text += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        text += static_cast<char>(0xF0 | (c >> 18));
        text += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        text += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        text += static_cast<char>(0x80 | (c & 0x3F));
    }
    return text;
}

bool startsWith(const std::string& s, const char* prefix)
{
    return s.rfind(prefix, 0) == 0;
}

} // namespace

std::string VLGlyph::charString() const
{
    return characterText(unicodeChar());
}

std::string VLGlyph::charStrings() const
{
    std::string text;
    for (const std::string& code : _unicodes)
        text += characterText(static_cast<uint32_t>(std::strtoul(code.c_str(), nullptr, 16)));
    return text;
}

bool VLGlyph::hasCustomGlyphInfo() const
{
    return _storeCategory || _storeSubCategory || _storeProduction || _storeScript || _storeDirection ||
           _storeSortName;
}

bool VLGlyph::isCornerName(const std::string& name)
{
    return startsWith(name, "_corner.") || startsWith(name, "_cap.") || startsWith(name, "_brush.") ||
           startsWith(name, "_segment.");
}

bool VLGlyph::isSmartGlyph() const
{
    if (!_partsSettings.empty()) return true;
    if (_subCategory == "Smart") return true;
    if (startsWith(_name, "_part") || startsWith(_name, "_smart")) return true;
    if (_script == "hangul" && unicodeChar() < 44032) return true;
    if (_script == "han") return true;
    return _script == "tibet" && _subCategory != "Ligature";
}

void VLGlyph::setUserData_forKey(const Value& value, const std::string& key)
{
    VLSetUserData(_userData, value, key);
}

uint8_t VLGlyph::formatOfParent() const
{
    auto font = parent();
    return font ? font->formatVersion() : 3;
}

bool VLGlyph::readLayersIfEmpty()
{
    return !_layers.empty() || readLayersFormat(formatOfParent());
}

std::shared_ptr<VLLayer> VLGlyph::layerForId(const std::string& layerId)
{
    readLayersIfEmpty();
    if (auto layer = _layers.objectForKey(layerId)) return layer;
    auto font = parent();
    auto master = font ? font->fontMasterForId(layerId) : nullptr;
    if (!master) return nullptr;
    if (master->font() == font.get()) {
        auto layer = VLLayer::init();
        setLayer_forId(layer, layerId);
        return layer;
    }
    auto other = master->font() ? master->font()->glyphForName(_name) : nullptr;
    return other ? other->layerForId(layerId) : nullptr;
}

void VLGlyph::setLayer_forId(const std::shared_ptr<VLLayer>& layer, const std::string& layerId)
{
    if (!layer) return;
    _masterCompatibilityCheckStatus = -1;
    layer->setParent(shared_from_this());
    layer->setLayerId(layerId);
    auto font = parent();
    if (font && font->fontMasterForId(layerId)) layer->setAssociatedMasterId(layerId);
    _layers.setObject_forKey(layer, layerId);
}

std::shared_ptr<VLLayer> VLGlyph::layer0() const
{
    auto font = parent();
    auto master = font ? font->fontMasterAtIndex(0) : nullptr;
    return master ? layerForIdFast(master->id()) : nullptr;
}

void VLGlyph::stopUpdates()
{
    for (const auto& layer : _layers.allValues()) layer->stopUpdates();
}

void VLGlyph::startUpdates()
{
    for (const auto& layer : _layers.allValues()) layer->startUpdates();
}

std::shared_ptr<VLGlyph> VLGlyph::copy()
{
    readLayersIfEmpty();
    auto glyph = std::make_shared<VLGlyph>();
    glyph->_name = _name;
    glyph->_id = _id;
    glyph->_unicodes = _unicodes;
    glyph->_script = _script;
    glyph->_category = _category;
    glyph->_subCategory = _subCategory;
    glyph->_production = _production;
    glyph->_export = _export;
    glyph->_storeScript = _storeScript;
    glyph->_storeCategory = _storeCategory;
    glyph->_storeSubCategory = _storeSubCategory;
    glyph->_storeCase = _storeCase;
    glyph->_storeProduction = _storeProduction;
    glyph->_storeDirection = _storeDirection;
    glyph->_storeSortName = _storeSortName;
    glyph->_case = _case;
    glyph->_direction = _direction;
    glyph->_colorMarker = _colorMarker.copy(true);
    glyph->_userData = _userData;
    glyph->_partsSettings = _partsSettings;
    glyph->_glyphId = _glyphId;
    glyph->_lastOperationInterval = _lastOperationInterval;
    for (const std::string& layerId : _layers.allKeys()) {
        auto layer = _layers.objectForKey(layerId)->copyThin(false);
        layer->setParent(glyph);
        glyph->_layers.setObject_forKey(layer, layerId);
    }
    return glyph;
}
