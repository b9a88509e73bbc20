#include "model/VLStringHelpers.h"

#include "model/VLUTF8.h"

#include <unicode/locid.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>

namespace {

// The full case mapping of the first character, which may be several ("ß" gives "SS"), in front
// of the rest. The root locale keeps the result the same whatever the machine's language.
template <typename Map> std::string withFirstMapped(std::string_view s, Map map)
{
    if (s.empty()) return {};
    size_t end = 0;
    UChar32 c;
    U8_NEXT(reinterpret_cast<const uint8_t*>(s.data()), end, s.size(), c);
    if (c < 0) return std::string(s);
    icu::UnicodeString first(c);
    map(first);
    std::string result;
    first.toUTF8String(result);
    result.append(s.substr(end));
    return result;
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
    return withFirstMapped(s, [](icu::UnicodeString& first) { first.toLower(icu::Locale::getRoot()); });
}

std::string stringWithFirstUpper(std::string_view s)
{
    return withFirstMapped(s, [](icu::UnicodeString& first) { first.toUpper(icu::Locale::getRoot()); });
}

// Decomposed, the accents are marks of their own; what has no decomposition ("Ł", "Ø") stays.
std::string stringByRemovingAccents(std::string_view s)
{
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* decompose = icu::Normalizer2::getNFDInstance(status);
    const icu::Normalizer2* compose = icu::Normalizer2::getNFCInstance(status);
    if (U_FAILURE(status)) return std::string(s);
    icu::UnicodeString text = decompose->normalize(
        icu::UnicodeString::fromUTF8(icu::StringPiece(s.data(), static_cast<int32_t>(s.size()))), status);
    icu::UnicodeString bare;
    for (int32_t i = 0; i < text.length(); i = text.moveIndex32(i, 1))
        if (u_charType(text.char32At(i)) != U_NON_SPACING_MARK) bare.append(text.char32At(i));
    std::string result;
    compose->normalize(bare, status).toUTF8String(result);
    return U_SUCCESS(status) ? result : std::string(s);
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
