#include "thumbnail/VLFontLoader.h"

#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "platform/BezierPath.h"
#include "platform/NumberConversion.h"
#include "thumbnail/VLTextSetting.h"

#include <algorithm>
#include <cmath>

namespace {

char32_t letterOrFallback(VLFont& font, char32_t letter, char32_t fallback)
{
    return font.glyphForCharacter(letter) ? letter : fallback;
}

void appendTranslated(BezierPath& result, const BezierPath* path, double x, double y)
{
    if (!path) return;
    auto copy = path->copy();
    AffineTransform move;
    move.translateXBy_yBy(x, y);
    copy->transformUsingAffineTransform(move);
    result.appendBezierPath(*copy);
}

} // namespace

// The right-to-left samples of the platform this mode comes from aren't ours: every font gets the
// Latin text.
std::u32string VLFontLoader::generatePreviewString()
{
    _font->preloadCharCache();
    std::u32string text = U"ABCDEFGHIJKLM\nNOPQRSTUVWXYZ\n";
    text += letterOrFallback(*_font, U'\u00e4', U'a');
    text += U"bcd";
    text += letterOrFallback(*_font, U'\u0119', U'e');
    text += U"fghijkl";
    text += letterOrFallback(*_font, U'\u0436', U'm');
    text += U"\nnopqrstuvwxy";
    text += letterOrFallback(*_font, U'\u03c9', U'z');
    text += U"\n1234567890";
    return text;
}

double VLFontLoader::previewLineDistance() const
{
    auto master = _font->fontMasterAtIndex(0);
    double height = master ? master->defaultAscender() - master->defaultDescender() : 0.0;
    return height * (1.0 + previewLineGap);
}

double VLFontLoader::previewMasterStripWidth()
{
    if (_font->fontMasters().size() < 2) return 0.0;
    int64_t x = 0;
    for (const auto& master : _font->fontMasters())
        for (const std::string& name : _masterStripNames) {
            auto glyph = _font->glyphForName(name);
            auto layer = glyph ? glyph->layerForId(master->id()) : nullptr;
            x = VLTruncatedInteger((layer ? layer->width() : 0.0) + static_cast<double>(x));
        }
    return static_cast<double>(x);
}

void VLFontLoader::layoutPreview()
{
    if (_previewText.empty()) _previewText = generatePreviewString();
    chooseSamples();
    _masterStripNames.clear();
    for (const auto& glyph : _cachedGlyphs) _masterStripNames.push_back(glyph->name());
    auto master = _font->fontMasterAtIndex(0);
    if (!master) return;
    VLTextStyle style = VLTextStyle::forMaster(*_font, master->id());
    auto lines = VLSetText(*_font, _previewText, style);

    _MMPreviewWidth = static_cast<int32_t>(std::clamp(previewMasterStripWidth(), 0.0, 1e9));
    double distance = previewLineDistance();
    double stripHeight = _MMPreviewWidth >= 1 ? distance : 0.0;
    double widest = _MMPreviewWidth;
    _cachedGlyphs.clear();
    _cachedGlyphsPosition.clear();
    _lineWidth.clear();
    for (size_t i = 0; i < lines.size(); ++i) {
        double y = -(stripHeight + static_cast<double>(i) * distance);
        for (const auto& placed : lines[i].glyphs) {
            if (!placed.glyph) continue;
            _cachedGlyphs.push_back(placed.glyph);
            _cachedGlyphsPosition.push_back({margin + placed.x, y});
        }
        _lineWidth[y] = lines[i].width;
        widest = std::max(widest, lines[i].width);
    }
    double height = master->defaultAscender() - master->defaultDescender();
    _canvasSize = {widest + 2 * margin,
                   2 * margin + height + stripHeight + static_cast<double>(lines.size() - 1) * distance};
}

void VLFontLoader::drawPreview()
{
    auto result = BezierPath::bezierPath();
    auto first = _font->fontMasterAtIndex(0);
    double ascender = first ? first->defaultAscender() : 0.0;
    double W = _canvasSize.width, H = _canvasSize.height;
    if (_MMPreviewWidth >= 1 && _font->fontMasters().size() >= 2) {
        int64_t x = std::lround((W - _MMPreviewWidth) * 0.5);
        for (const auto& master : _font->fontMasters())
            for (const std::string& name : _masterStripNames) {
                auto glyph = _font->glyphForName(name);
                if (glyph) glyph->readLayersFormat(_font->formatVersion());
                auto layer = glyph ? glyph->layerForId(master->id()) : nullptr;
                double top = layer ? layer->glyphMetrics().ascender : 0.0;
                auto path = layer ? layer->drawBezierPath() : nullptr;
                appendTranslated(*result, path.get(), static_cast<double>(x), H - margin - top);
                x = VLTruncatedInteger((layer ? layer->width() : 0.0) + static_cast<double>(x));
            }
    }
    for (size_t i = 0; i < _cachedGlyphs.size(); ++i) {
        Point p = _cachedGlyphsPosition[i];
        auto width = static_cast<double>(VLTruncatedInteger(_lineWidth[p.y]));
        auto path = _cachedGlyphs[i]->bezierPath();
        appendTranslated(*result, path.get(), p.x + (W - width) * 0.5 - margin, p.y + H - margin - ascender);
    }
    result->fill();
}
