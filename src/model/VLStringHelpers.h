#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// Text helpers over UTF-8 strings. Where they speak of characters, they mean code points.

// Character-set tests; an empty string passes each of them.
bool isNumber(std::string_view s); // only "0123456789+-."
bool isAllDigits(std::string_view s);
bool isHexCapitalString(std::string_view s); // only "0123456789ABCDEF"
bool isHexCapitalStringWithLength(std::string_view s, size_t length);

// Read from the last character to the first: hexadecimal digits of either case, blanks skipped,
// "-" negates what is read so far. 0x7fffffff for an empty string or any other character.
int32_t hexStringToInt(std::string_view s);
// Upper-case hexadecimal of the absolute value, limited to 32 bits, "-" before a negative number.
std::string hexStringFromInt(int64_t value);
// A decimal number that may use "," as its decimal mark; 0 where nothing can be read.
double lenientDoubleValue(std::string_view s);

// Dot suffixes of names such as "a.sc.ss01".
std::string stringByAppendingDotSuffix(std::string_view s, std::string_view suffix);
std::optional<std::string> dotSuffix(std::string_view s); // from the first "."
std::string stringByDeletingDotSuffix(std::string_view s); // cut at the first "."
std::string stringByDeletingLastDotSuffix(std::string_view s); // cut at the last "."

size_t countOfChar(std::string_view s, char32_t c);
// 0 past the end.
char32_t character32AtIndex(std::string_view s, size_t index);
std::string stringByRemovingCharactersInSet(std::string_view s, std::string_view set);
// The first character in its full Unicode lower or upper case, which can be longer ("ß" gives
// "SS"); the rest stays. Text that does not start with a valid character stays as it is.
std::string stringWithFirstLower(std::string_view s);
std::string stringWithFirstUpper(std::string_view s);
// Without nonspacing marks, after canonical decomposition, recomposed: "Ệ" gives "E", "й" gives
// "и"; letters that have no decomposition ("Ł", "Đ") stay.
std::string stringByRemovingAccents(std::string_view s);
// Escapes for the text property-list form: control characters as octal, anything beyond ASCII
// as "\U" and four hexadecimal digits per UTF-16 unit. A wholly printable string stays as it is.
std::string asciiString(std::string_view s);
// "fontName" -> "font Name".
std::string camelCaseToSentenceCase(std::string_view s);

// Without the characters <>:"/\|?* and control characters.
std::string encodeForFilePath(std::string_view s);
// "<prefix>-<UUID>" in the temporary folder.
std::string pathForTemporaryFileWithPrefix(std::string_view prefix);
// A relative path taken from the base folder; an absolute one stays.
std::string absolutePathFromBaseDirPath(std::string_view path, std::string_view baseDirPath);
// An absolute path as seen from the base folder; a relative one stays.
std::string relativePathFromBaseDirPath(std::string_view path, std::string_view baseDirPath);
