#pragma once

#include "generator/Design.h"
#include "generator/PlistText.h"

namespace velmor::generator {

// Writes the glyph record of font.glyphs[index]; `withIndex` adds the "index" key that a glyph
// file of a package carries.
void writeGlyph(PlistText& text, const Font& font, std::size_t index, bool withIndex);

} // namespace velmor::generator
