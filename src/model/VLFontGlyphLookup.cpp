#include "model/VLFont.h"
#include "model/VLGlyph.h"
#include "model/VLStringHelpers.h"
#include "model/VLVelmorInfo.h"
#include "reader/VLDocumentFile.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace {

std::shared_ptr<VLGlyph> find(const VLFont::GlyphIndex& index, const std::string& key)
{
    auto it = index.find(key);
    return it == index.end() ? nullptr : it->second;
}

void eraseValue(VLFont::GlyphIndex& index, const VLGlyph* glyph)
{
    std::erase_if(index, [glyph](const auto& entry) { return entry.second.get() == glyph; });
}

bool claims(const VLGlyph& glyph, const std::string& code)
{
    const auto& codes = glyph.unicodes();
    return std::find(codes.begin(), codes.end(), code) != codes.end();
}

} // namespace

void VLFont::prepareName2Glyph()
{
    if (_glyphs.empty()) return;
    _name2Glyph.clear();
    _name2Glyph.reserve(_glyphs.size());
    // Assigning in order lets the later of two glyphs of one name win.
    for (const auto& glyph : _glyphs) _name2Glyph[glyph->name()] = glyph;
}

void VLFont::resetCache()
{
    _name2Glyph.clear();
    _id2Glyph.clear();
}

std::shared_ptr<VLGlyph> VLFont::localGlyphForName(const std::string& name)
{
    if (_name2Glyph.empty()) prepareName2Glyph();
    if (auto glyph = find(_name2Glyph, name)) return glyph;
    // A name with a slash would lead the read out of the package's glyph folder, and one with a
    // NUL byte would stand for the file named by its start.
    if (name.empty() || name.find_first_of(std::string_view("/\0", 2)) != std::string::npos) return nullptr;
    if (_glyphFileNames.empty()) _glyphFileNames.insert(_glyphFiles.begin(), _glyphFiles.end());
    if (!_glyphFileNames.contains(name)) return nullptr;
    // A glyph of a package that is named for the first time; a failed read is tried again next time.
    std::string folder = tempDataForKey("filePath").string();
    std::string path = folder + "/glyphs/" + VLVelmorInfo::glyphNameToFileName(name) + ".glyph";
    if (!isInsideFolder(path, folder)) return nullptr;
    auto glyph = VLGlyph::initWithFile_format_error(path, _formatVersion, nullptr);
    if (!glyph) return nullptr;
    addGlyphFast(glyph);
    _name2Glyph[name] = glyph;
    return glyph;
}

std::shared_ptr<VLGlyph> VLFont::glyphForName(const std::string& name)
{
    if (auto glyph = localGlyphForName(name)) return glyph;
    for (const auto& imported : _importedFonts)
        if (auto glyph = imported->localGlyphForName(name)) return glyph;
    return nullptr;
}

std::shared_ptr<VLGlyph> VLFont::glyphForNameFast(const std::string& name)
{
    return _name2Glyph.empty() ? glyphForName(name) : find(_name2Glyph, name);
}

std::vector<std::shared_ptr<VLGlyph>> VLFont::glyphsForNames(const std::vector<std::string>& names)
{
    std::vector<std::shared_ptr<VLGlyph>> glyphs;
    for (const std::string& name : names)
        if (auto glyph = glyphForName(name)) glyphs.push_back(glyph);
    return glyphs;
}

std::shared_ptr<VLGlyph> VLFont::glyphAtIndex(size_t index)
{
    if (_glyphFiles.empty()) return objectInGlyphsAtIndex(index);
    return index < _glyphFiles.size() ? glyphForName(_glyphFiles[index]) : nullptr;
}

std::shared_ptr<VLGlyph> VLFont::localGlyphForId(const std::string& glyphId)
{
    if (_id2Glyph.empty())
        for (const auto& glyph : _glyphs) _id2Glyph[glyph->id()] = glyph;
    return find(_id2Glyph, glyphId);
}

std::shared_ptr<VLGlyph> VLFont::glyphForId(const std::string& glyphId)
{
    if (auto glyph = localGlyphForId(glyphId)) return glyph;
    for (const auto& imported : _importedFonts)
        if (auto glyph = imported->localGlyphForId(glyphId)) return glyph;
    return nullptr;
}

void VLFont::preloadCharCache()
{
    if (!_charsCache) _charsCache.emplace();
    // A font's own glyph beats an imported one, and the later of its own glyphs wins.
    for (const auto* list : {&_importedGlyphs, &_glyphs})
        for (const auto& glyph : *list)
            for (const std::string& code : glyph->unicodes()) (*_charsCache)[code] = glyph;
}

std::shared_ptr<VLGlyph> VLFont::localGlyphForUnicode(const std::string& code)
{
    if (_charsCache) {
        auto it = _charsCache->find(code);
        if (it != _charsCache->end()) {
            // A glyph without code points holds a private one of characterForGlyph.
            if (it->second->unicodes().empty() || claims(*it->second, code)) return it->second;
            _charsCache->erase(it);
        }
    }
    preloadCharCache();
    return find(*_charsCache, code);
}

std::shared_ptr<VLGlyph> VLFont::glyphForUnicode(const std::string& code)
{
    if (auto glyph = localGlyphForUnicode(code)) return glyph;
    for (const auto& imported : _importedFonts)
        if (auto glyph = imported->localGlyphForUnicode(code)) return glyph;
    return nullptr;
}

// Codes outrank fonts: the second code is tried only after every font missed the first.
std::shared_ptr<VLGlyph> VLFont::glyphForUnicodes(const std::vector<std::string>& codes)
{
    for (const std::string& code : codes)
        if (auto glyph = glyphForUnicode(code)) return glyph;
    return nullptr;
}

std::shared_ptr<VLGlyph> VLFont::glyphForCharacter(uint32_t character)
{
    std::string code = hexStringFromInt(character);
    if (_charsCache)
        if (auto glyph = find(*_charsCache, code)) return glyph;
    preloadCharCache();
    return find(*_charsCache, code);
}

uint32_t VLFont::characterForGlyph(const std::shared_ptr<VLGlyph>& glyph)
{
    if (!glyph || !glyph->parent()) return 0;
    if (!glyph->unicodes().empty()) return glyph->unicodeChar();
    if (!_charsCache) _charsCache.emplace();
    for (const auto& [code, holder] : *_charsCache)
        if (holder == glyph) return static_cast<uint32_t>(std::strtoul(code.c_str(), nullptr, 16));
    if (--_lastChar < 0x100000) {
        _charsCache->clear();
        _lastChar = 0x10FFFD;
    }
    while (glyphForUnicode(hexStringFromInt(_lastChar)) || _charsCache->count(hexStringFromInt(_lastChar))) --_lastChar;
    (*_charsCache)[hexStringFromInt(_lastChar)] = glyph;
    return _lastChar;
}

void VLFont::updateCacheForGlyph(const std::shared_ptr<VLGlyph>& glyph)
{
    if (!glyph) return;
    if (!_name2Glyph.empty()) {
        eraseValue(_name2Glyph, glyph.get());
        _name2Glyph[glyph->name()] = glyph;
    }
    if (_charsCache) {
        eraseValue(*_charsCache, glyph.get());
        for (const std::string& code : glyph->unicodes()) (*_charsCache)[code] = glyph;
    }
    if (!_id2Glyph.empty()) _id2Glyph[glyph->id()] = glyph;
}

void VLFont::updateCacheForGlyph_oldName(const std::shared_ptr<VLGlyph>& glyph, const std::string& oldName)
{
    if (!glyph || glyph->name() == oldName) return;
    glyphHasChangedName_oldName(glyph, oldName);
    if (!_charsCache) return;
    // Private codes of the editor's range stay with the glyph.
    std::erase_if(*_charsCache, [&](const auto& entry) {
        uint32_t code = static_cast<uint32_t>(std::strtoul(entry.first.c_str(), nullptr, 16));
        return entry.second == glyph && !claims(*glyph, entry.first) && (code < 0xE001 || code > 0xF814);
    });
}

void VLFont::glyphHasChangedName_oldName(const std::shared_ptr<VLGlyph>& glyph, const std::string& oldName)
{
    if (_name2Glyph.empty()) return;
    _name2Glyph.erase(oldName);
    _name2Glyph[glyph->name()] = glyph;
}
