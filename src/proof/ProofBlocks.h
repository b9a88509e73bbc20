#pragma once

#include "proof/ProofBlock.h"

#include <string_view>

class VLFont;
class VLFontLoader;
class VLTextStyle;

// The sample sheet of the loader's font.
ProofBlock ProofSampleSheetBlock(VLFontLoader& loader);
// The text set in the style, left-aligned, a line under the other.
ProofBlock ProofTextBlock(VLFont& font, std::u32string_view text, VLTextStyle& style, std::string label);
// Every glyph of the master in the font's order, in a grid of cells with each glyph's name under it.
ProofBlock ProofGlyphGridBlock(VLFont& font, const std::string& masterId);

// The height of a line of text in font units: the first master from its descender to its ascender.
double ProofLineHeight(const VLFont& font);
