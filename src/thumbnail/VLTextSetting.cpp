#include "thumbnail/VLTextSetting.h"

#include "model/VLFont.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "platform/VLUnsetValue.h"

#include <cmath>
#include <cstdio>

VLTextStyle::VLTextStyle(VLFont& font, VLFactors masterFactors) : _font(font), _factors(std::move(masterFactors)) {}

VLTextStyle VLTextStyle::forMaster(VLFont& font, const std::string& masterId)
{
    VLFactors factors;
    factors.setObject_forKey(VLFactor(1.0), masterId);
    return VLTextStyle(font, std::move(factors));
}

std::shared_ptr<VLLayer> VLTextStyle::layerForGlyph(const std::shared_ptr<VLGlyph>& glyph)
{
    return settingForGlyph(glyph).layer;
}

double VLTextStyle::advanceForGlyph(const std::shared_ptr<VLGlyph>& glyph)
{
    return settingForGlyph(glyph).advance;
}

const VLTextStyle::Setting& VLTextStyle::settingForGlyph(const std::shared_ptr<VLGlyph>& glyph)
{
    auto known = _settings.find(glyph.get());
    if (known != _settings.end()) return known->second;
    Setting setting;
    if (_factors.count() == 1 && _factors.objectAtIndex(0).x == 1.0) {
        setting.layer = glyph->layerForId(*_factors.keyAtIndex(0));
        setting.advance = setting.layer ? setting.layer->width() : 0.0;
    } else if ((setting.layer = glyph->interpolate_error(_factors, nullptr))) {
        setting.layer->setParent(glyph);
        setting.advance = blendedWidth(*glyph);
    }
    return _settings.emplace(glyph.get(), setting).first->second;
}

double VLTextStyle::blendedWidth(VLGlyph& glyph) const
{
    double width = 0.0;
    for (size_t i = 0; i < _factors.count(); ++i)
        if (auto layer = glyph.layerForId(*_factors.keyAtIndex(i))) width += _factors.objectAtIndex(i).x * layer->width();
    return width;
}

double VLTextStyle::kerning(VLGlyph& first, VLGlyph& second) const
{
    double total = 0.0;
    for (size_t i = 0; i < _factors.count(); ++i) {
        double value = _font.kerningForFontMasterID_firstGlyph_secondGlyph_direction(*_factors.keyAtIndex(i), first,
                                                                                     second, 0);
        if (value != VLUnsetValue && std::isfinite(value)) total += _factors.objectAtIndex(i).x * value;
    }
    return total;
}

namespace {

using GlyphLine = std::vector<std::shared_ptr<VLGlyph>>;

// Documents of the older format keep code points as they were written, with leading zeros to
// four digits, where the newer ones keep the bare hexadecimal number.
std::shared_ptr<VLGlyph> glyphForCharacter(VLFont& font, char32_t c)
{
    if (auto glyph = font.glyphForCharacter(c)) return glyph;
    char code[16];
    std::snprintf(code, sizeof code, "%04X", static_cast<unsigned>(c));
    return font.glyphForUnicode(code);
}

std::vector<GlyphLine> glyphsOfLines(VLFont& font, std::u32string_view text)
{
    auto notdef = font.glyphForName(".notdef");
    std::vector<GlyphLine> lines(1);
    for (char32_t c : text) {
        if (c == U'\n') {
            lines.emplace_back();
            continue;
        }
        auto glyph = glyphForCharacter(font, c);
        lines.back().push_back(glyph ? glyph : notdef);
    }
    return lines;
}

double averageWidth(const std::vector<GlyphLine>& lines, VLTextStyle& style, const VLFont& font)
{
    double total = 0.0;
    size_t count = 0;
    for (const auto& line : lines)
        for (const auto& glyph : line)
            if (glyph && style.layerForGlyph(glyph)) {
                total += style.advanceForGlyph(glyph);
                ++count;
            }
    return count ? total / static_cast<double>(count) : font.unitsPerEm() * 0.5;
}

VLSetLine setLine(const GlyphLine& glyphs, VLTextStyle& style, double gap)
{
    VLSetLine line;
    std::shared_ptr<VLGlyph> previous;
    for (const auto& glyph : glyphs) {
        auto layer = glyph ? style.layerForGlyph(glyph) : nullptr;
        if (previous && layer) line.width += style.kerning(*previous, *glyph);
        line.glyphs.push_back({layer ? glyph : nullptr, layer, line.width});
        line.width += layer ? style.advanceForGlyph(glyph) : gap;
        previous = layer ? glyph : nullptr;
    }
    return line;
}

} // namespace

std::vector<VLSetLine> VLSetText(VLFont& font, std::u32string_view text, VLTextStyle& style)
{
    auto lines = glyphsOfLines(font, text);
    double gap = averageWidth(lines, style, font);
    std::vector<VLSetLine> result;
    for (const auto& glyphs : lines) result.push_back(setLine(glyphs, style, gap));
    return result;
}
