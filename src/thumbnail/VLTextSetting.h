#pragma once

#include "model/VLFactors.h"

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class VLFont;
class VLGlyph;
class VLLayer;

// What a text is set in: a blend of the font's masters, a single master at 1 for the master itself.
class VLTextStyle {
public:
    VLTextStyle(VLFont& font, VLFactors masterFactors);
    // One master as it stands.
    static VLTextStyle forMaster(VLFont& font, const std::string& masterId);

    // The glyph's layer in this style, made once per glyph: the master's own, or the glyph
    // interpolated; nothing where the glyph has no layer to give.
    std::shared_ptr<VLLayer> layerForGlyph(const std::shared_ptr<VLGlyph>& glyph);
    // The advance of the glyph: the masters' widths blended. An interpolated layer keeps the width
    // of its first master, which is no advance for the text between them.
    double advanceForGlyph(const std::shared_ptr<VLGlyph>& glyph);
    // The pair's horizontal kerning, blended as the outlines are; 0 where no master kerns the pair.
    double kerning(VLGlyph& first, VLGlyph& second) const;

private:
    VLFont& _font;
    VLFactors _factors;
    struct Setting {
        std::shared_ptr<VLLayer> layer;
        double advance = 0.0;
    };
    const Setting& settingForGlyph(const std::shared_ptr<VLGlyph>& glyph);
    double blendedWidth(VLGlyph& glyph) const;

    std::map<const VLGlyph*, Setting> _settings;
};

// One glyph of a set line, its origin on the baseline at x; a character the font has no glyph
// for leaves a gap without a glyph.
struct VLPlacedGlyph {
    std::shared_ptr<VLGlyph> glyph;
    std::shared_ptr<VLLayer> layer;
    double x = 0.0;
};

struct VLSetLine {
    std::vector<VLPlacedGlyph> glyphs;
    double width = 0.0;
};

// Sets the text line by line, the lines broken at its line feeds. Glyphs are found by character;
// a character without one shows the font's ".notdef" where it has one, and otherwise a gap as
// wide as the average glyph of the text.
std::vector<VLSetLine> VLSetText(VLFont& font, std::u32string_view text, VLTextStyle& style);
