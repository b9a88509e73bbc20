#pragma once

#include "thumbnail/VLTextSetting.h"

#include <optional>

class VLFont;
class VLInstance;

// The masters blended at the instance's location; nothing where they can't be blended there.
std::optional<VLTextStyle> ProofInstanceStyle(VLFont& font, const VLInstance& instance);
