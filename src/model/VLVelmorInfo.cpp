#include "model/VLVelmorInfo.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <cstdint>

namespace {

// Title-case letters such as "ǅ" fold to lower case as well, so they need the underscore too.
bool isUpperCaseLetter(UChar32 c)
{
    return c >= 0 && (U_GET_GC_MASK(c) & (U_GC_LU_MASK | U_GC_LT_MASK)) != 0;
}

} // namespace

std::string VLVelmorInfo::glyphNameToFileName(const std::string& name)
{
    const auto* text = reinterpret_cast<const uint8_t*>(name.data());
    std::string file;
    file.reserve(name.size() + 4);
    for (size_t i = 0; i < name.size();) {
        // Nearly every glyph name is ASCII, and packages ask this once per glyph file.
        if (text[i] < 0x80) {
            char c = name[i];
            file += i == 0 && c == '.' ? '_' : c;
            if (c >= 'A' && c <= 'Z') file += '_';
            ++i;
            continue;
        }
        size_t start = i;
        UChar32 c;
        U8_NEXT(text, i, name.size(), c);
        file.append(name, start, i - start);
        if (isUpperCaseLetter(c)) file += '_';
    }
    return file;
}
