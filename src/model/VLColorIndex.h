#pragma once

#include <cstdint>

// Colour markers of glyphs and layers: 0 to 11 name a palette colour, anything else is none.
constexpr uint8_t VLColorIndexNone = 255;

constexpr uint8_t VLNormalizedColorIndex(int64_t index)
{
    return index >= 0 && index < 12 ? static_cast<uint8_t>(index) : VLColorIndexNone;
}
