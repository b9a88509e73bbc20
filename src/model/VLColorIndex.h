#pragma once

#include "platform/Color.h"

#include <cstdint>
#include <optional>

// Colour markers of glyphs and layers: 0 to 11 name a palette colour, anything else is none.
constexpr uint8_t VLColorIndexNone = 255;

constexpr uint8_t VLNormalizedColorIndex(int64_t index)
{
    return index >= 0 && index < 12 ? static_cast<uint8_t>(index) : VLColorIndexNone;
}

// A palette index or a free colour, never both: setting one clears the other.
class VLColorMarker {
public:
    uint8_t colorIndex() const { return _colorIndex; }
    void setColorIndex(int64_t index)
    {
        _colorIndex = VLNormalizedColorIndex(index);
        _color.reset();
    }
    const std::optional<Color>& color() const { return _color; }
    void setColor(const Color& color)
    {
        _color = color;
        _colorIndex = VLColorIndexNone;
    }
    // What a copy takes: the free colour only where there is no palette index and it is wanted.
    VLColorMarker copy(bool withColor) const
    {
        VLColorMarker marker;
        marker._colorIndex = _colorIndex;
        if (_colorIndex >= 12 && withColor) marker._color = _color;
        return marker;
    }

private:
    std::optional<Color> _color;
    uint8_t _colorIndex = VLColorIndexNone;
};
