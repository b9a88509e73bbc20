#pragma once

#include "thumbnail/VLTextSetting.h"

#include <optional>

class VLFont;
class VLInstance;

// The masters blended as the instance says; nothing where they can't be blended there.
std::optional<VLTextStyle> ProofInstanceStyle(VLFont& font, VLInstance& instance);
