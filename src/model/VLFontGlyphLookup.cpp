#include "model/VLFont.h"
#include "model/VLGlyph.h"

void VLFont::prepareName2Glyph()
{
    if (_glyphs.empty()) return;
    _name2Glyph.clear();
    // Assigning in order lets the later of two glyphs of one name win.
    for (const auto& glyph : _glyphs) _name2Glyph[glyph->name()] = glyph;
}

void VLFont::resetCache()
{
    _name2Glyph.clear();
}

std::shared_ptr<VLGlyph> VLFont::localGlyphForName(const std::string& name)
{
    if (_name2Glyph.empty()) prepareName2Glyph();
    auto it = _name2Glyph.find(name);
    return it == _name2Glyph.end() ? nullptr : it->second;
}

std::shared_ptr<VLGlyph> VLFont::glyphForName(const std::string& name)
{
    if (auto glyph = localGlyphForName(name)) return glyph;
    for (const auto& imported : _importedFonts)
        if (auto glyph = imported->localGlyphForName(name)) return glyph;
    return nullptr;
}

std::shared_ptr<VLGlyph> VLFont::glyphAtIndex(size_t index)
{
    if (_glyphFiles.empty()) return objectInGlyphsAtIndex(index);
    return index < _glyphFiles.size() ? glyphForName(_glyphFiles[index]) : nullptr;
}

void VLFont::updateCacheForGlyph_oldName(const std::shared_ptr<VLGlyph>& glyph, const std::string& oldName)
{
    if (!glyph || glyph->name() == oldName) return;
    glyphHasChangedName_oldName(glyph, oldName);
}

void VLFont::glyphHasChangedName_oldName(const std::shared_ptr<VLGlyph>& glyph, const std::string& oldName)
{
    if (_name2Glyph.empty()) return;
    _name2Glyph.erase(oldName);
    _name2Glyph[glyph->name()] = glyph;
}
