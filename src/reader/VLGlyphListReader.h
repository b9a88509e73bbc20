#pragma once

#include "reader/VLPlistParseInfo.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

class VLGlyph;

// Below this many bytes from the glyph list to the end of the document, a second thread costs
// more than the half of the list it would read.
inline constexpr size_t VLGlyphListSplitBytes = size_t{1} << 20;

// The font's list of glyphs at `curr`, as readPlistObjects<VLGlyph> reads it: the same glyphs, the
// same error, `curr` left at the same byte. A long list is read by two threads, the second from a
// record it guesses in the second half.
std::optional<std::vector<std::shared_ptr<VLGlyph>>> readGlyphList(VLPlistParseInfo* info, uint8_t format);

// The same with the second thread's search for a record starting at `guess`, whatever the list's
// length; null reads with one thread. `split` tells whether the second thread's glyphs were kept.
std::optional<std::vector<std::shared_ptr<VLGlyph>>> readGlyphListGuessingAt(VLPlistParseInfo* info, uint8_t format,
                                                                              const uint8_t* guess, bool* split);
