#include "model/VLVelmorInfo.h"

#include <cstdint>

namespace {

// Upper-case letters of the Latin, Greek and Cyrillic blocks, where glyph names live.
bool isUpperCaseLetter(uint32_t c)
{
    if (c >= 'A' && c <= 'Z') return true;
    if (c >= 0xC0 && c <= 0xDE) return c != 0xD7;
    if (c >= 0x100 && c <= 0x17F) return c % 2 == (c >= 0x139 && c <= 0x148 ? 1u : c >= 0x179 ? 1u : 0u);
    if (c >= 0x391 && c <= 0x3AB) return c != 0x3A2;
    return c >= 0x400 && c <= 0x42F;
}

// The code point starting at text[i] and its length in bytes; malformed bytes count alone.
uint32_t decode(const std::string& text, size_t i, size_t& length)
{
    unsigned char c = static_cast<unsigned char>(text[i]);
    length = c < 0x80 ? 1 : c < 0xE0 ? 2 : c < 0xF0 ? 3 : 4;
    if (c < 0x80 || c < 0xC0 || i + length > text.size()) return length = 1, c;
    uint32_t code = c & (0x3F >> (length - 1));
    for (size_t k = 1; k < length; ++k) code = (code << 6) | (static_cast<unsigned char>(text[i + k]) & 0x3F);
    return code;
}

} // namespace

std::string VLVelmorInfo::glyphNameToFileName(const std::string& name)
{
    std::string file;
    file.reserve(name.size() + 4);
    for (size_t i = 0; i < name.size();) {
        size_t length = 0;
        uint32_t code = decode(name, i, length);
        if (i == 0 && name[0] == '.')
            file += '_';
        else
            file.append(name, i, length);
        if (isUpperCaseLetter(code)) file += '_';
        i += length;
    }
    return file;
}
