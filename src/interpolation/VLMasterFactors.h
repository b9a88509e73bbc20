#pragma once

#include "model/VLFactors.h"

#include <optional>
#include <vector>

class VLFont;

// The share of each master of the font, keyed by master id, in a glyph at a location given in
// the order of the font's axes; nothing where the masters can't be blended there.
std::optional<VLFactors> VLMasterFactorsAtLocation(VLFont& font, const std::vector<double>& location);
