#pragma once

#include <string>

// Facts about glyph names that do not depend on a font.
class VLVelmorInfo {
public:
    // The file name of a glyph in a package: names that differ only by case must stay apart on a
    // file system that folds case, so every letter of the Unicode categories upper case (Lu) and
    // title case (Lt) gets an underscore behind it, and a leading "." becomes "_". "Aacute" gives
    // "A_acute", ".notdef" gives "_notdef", "Ǆ" gives "Ǆ_". Bytes that are not UTF-8 stay as they are.
    static std::string glyphNameToFileName(const std::string& name);
};
