#pragma once

#include "generator/Design.h"

#include <cstdint>
#include <filesystem>

namespace velmor::generator {

// Writes the font as one text file at `output`; answers the number of bytes written.
std::uintmax_t writeTextDocument(const Font& font, int format, const std::filesystem::path& output);

// Writes the font as a package folder at `output`, which must not exist or be empty: the font
// level in "fontinfo.plist", the glyph names in "order.plist" and one file per glyph in
// "glyphs". Answers the number of bytes written.
std::uintmax_t writePackage(const Font& font, int format, const std::filesystem::path& output);

} // namespace velmor::generator
