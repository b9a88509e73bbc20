#pragma once

#include "generator/Design.h"
#include "generator/PlistText.h"

#include <functional>

namespace velmor::generator {

// Writes the whole font record. `glyphs` writes the value of the "glyphs" key; without it the
// key is left out, as in the "fontinfo.plist" of a package.
void writeFontLevel(PlistText& text, const Font& font, const std::function<void(PlistText&)>& glyphs);

} // namespace velmor::generator
