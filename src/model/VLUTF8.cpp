#include "model/VLUTF8.h"

namespace {

constexpr char32_t replacement = 0xFFFD;

// Length and payload bits of a lead byte; 0 for a byte that cannot start a sequence.
size_t sequenceLength(unsigned char lead)
{
    if (lead < 0x80) return 1;
    if (lead >= 0xC2 && lead < 0xE0) return 2;
    if (lead >= 0xE0 && lead < 0xF0) return 3;
    if (lead >= 0xF0 && lead < 0xF5) return 4;
    return 0;
}

// The smallest code point of each length, against overlong forms.
constexpr char32_t minimum[] = {0, 0, 0x80, 0x800, 0x10000};

} // namespace

std::u32string decodeUTF8(std::string_view text)
{
    std::u32string result;
    result.reserve(text.size());
    for (size_t i = 0; i < text.size();) {
        auto lead = static_cast<unsigned char>(text[i]);
        size_t length = sequenceLength(lead);
        if (length == 0 || i + length > text.size()) {
            result.push_back(replacement);
            ++i;
            continue;
        }
        char32_t c = length == 1 ? lead : lead & (0x7F >> length);
        size_t k = 1;
        for (; k < length && (static_cast<unsigned char>(text[i + k]) & 0xC0) == 0x80; ++k)
            c = (c << 6) | (static_cast<unsigned char>(text[i + k]) & 0x3F);
        bool valid = k == length && c >= minimum[length] && c <= 0x10FFFF && !(c >= 0xD800 && c < 0xE000);
        result.push_back(valid ? c : replacement);
        i += valid ? length : 1;
    }
    return result;
}

void appendUTF8(std::string& text, char32_t c)
{
    if (c < 0x80) {
        text += static_cast<char>(c);
        return;
    }
    size_t length = c < 0x800 ? 2 : c < 0x10000 ? 3 : 4;
    static constexpr unsigned char leadMark[] = {0, 0, 0xC0, 0xE0, 0xF0};
    text += static_cast<char>(leadMark[length] | (c >> (6 * (length - 1))));
    for (size_t k = length - 1; k > 0; --k) text += static_cast<char>(0x80 | ((c >> (6 * (k - 1))) & 0x3F));
}

std::string encodeUTF8(std::u32string_view codePoints)
{
    std::string text;
    text.reserve(codePoints.size());
    for (char32_t c : codePoints) appendUTF8(text, c);
    return text;
}
