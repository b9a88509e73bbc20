#include "model/VLStringHelpers.h"

#include "model/VLUTF8.h"

#include <algorithm>
#include <cstdio>

namespace {

// Base letters of U+00C0 to U+017F; "." where a letter has no base letter of its own (Æ, Ø, Ł).
constexpr std::string_view baseLetters = "AAAAAA.CEEEEIIII.NOOOOO..UUUUY.."
                                         "aaaaaa.ceeeeiiii.nooooo..uuuuy.y"
                                         "AaAaAaCcCcCcCcDd..EeEeEeEeEeGgGg"
                                         "GgGgHh..IiIiIiIiI...JjKk.LlLlLl."
                                         "...NnNnNn...OoOoOo..RrRrRrSsSsSs"
                                         "SsTtTt..UuUuUuUuUuUuWwYyYZzZzZz.";
constexpr char32_t firstAccented = 0xC0;

bool isCombiningMark(char32_t c) { return c >= 0x300 && c < 0x370; }

char32_t baseLetter(char32_t c)
{
    if (c < firstAccented || c - firstAccented >= baseLetters.size()) return c;
    char base = baseLetters[c - firstAccented];
    return base == '.' ? c : static_cast<char32_t>(base);
}

// ASCII and Latin-1 letters, whose two cases lie 0x20 apart; × and ÷ sit where a letter would.
bool isUpper(char32_t c) { return (c >= 'A' && c <= 'Z') || (c >= 0xC0 && c <= 0xDE && c != 0xD7); }
bool isLower(char32_t c) { return (c >= 'a' && c <= 'z') || (c >= 0xE0 && c <= 0xFE && c != 0xF7); }

template <typename Change> std::string withFirstChanged(std::string_view s, Change change)
{
    std::u32string text = decodeUTF8(s);
    if (!text.empty()) text.front() = change(text.front());
    return encodeUTF8(text);
}

bool isPlainPrintable(char c) { return c >= 32 && c < 127; }

void appendEscaped(std::string& result, char32_t c)
{
    char escape[16];
    if (c < 32 || c == 127) {
        std::snprintf(escape, sizeof escape, "\\%03o", static_cast<unsigned>(c));
    } else if (c >= 0x10000) {
        char32_t v = c - 0x10000;
        std::snprintf(escape, sizeof escape, "\\U%04X\\U%04X", static_cast<unsigned>(0xD800 + (v >> 10)),
                      static_cast<unsigned>(0xDC00 + (v & 0x3FF)));
    } else if (c >= 128) {
        std::snprintf(escape, sizeof escape, "\\U%04X", static_cast<unsigned>(c));
    } else {
        if (c == '\\' || c == '"') result += '\\';
        result += static_cast<char>(c);
        return;
    }
    result += escape;
}

} // namespace

size_t countOfChar(std::string_view s, char32_t c)
{
    std::u32string text = decodeUTF8(s);
    return static_cast<size_t>(std::count(text.begin(), text.end(), c));
}

char32_t character32AtIndex(std::string_view s, size_t index)
{
    std::u32string text = decodeUTF8(s);
    return index < text.size() ? text[index] : 0;
}

std::string stringByRemovingCharactersInSet(std::string_view s, std::string_view set)
{
    std::u32string text = decodeUTF8(s);
    std::u32string removed = decodeUTF8(set);
    std::erase_if(text, [&](char32_t c) { return removed.find(c) != std::u32string::npos; });
    return encodeUTF8(text);
}

std::string stringWithFirstLower(std::string_view s)
{
    return withFirstChanged(s, [](char32_t c) { return isUpper(c) ? c + 0x20 : c; });
}

std::string stringWithFirstUpper(std::string_view s)
{
    return withFirstChanged(s, [](char32_t c) { return isLower(c) ? c - 0x20 : c; });
}

std::string stringByRemovingAccents(std::string_view s)
{
    std::u32string text = decodeUTF8(s);
    std::erase_if(text, isCombiningMark);
    std::transform(text.begin(), text.end(), text.begin(), baseLetter);
    return encodeUTF8(text);
}

std::string asciiString(std::string_view s)
{
    if (std::all_of(s.begin(), s.end(), isPlainPrintable)) return std::string(s);
    std::string result;
    for (char32_t c : decodeUTF8(s)) appendEscaped(result, c);
    return result;
}

std::string camelCaseToSentenceCase(std::string_view s)
{
    std::string result;
    for (size_t i = 0; i < s.size(); ++i) {
        result += s[i];
        if (i + 1 < s.size() && s[i] >= 'a' && s[i] <= 'z' && s[i + 1] >= 'A' && s[i + 1] <= 'Z') result += ' ';
    }
    return result;
}
