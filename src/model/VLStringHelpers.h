#pragma once

#include <cstdint>
#include <optional>
#include <string>

// Text helpers that the model and the readers share. Strings are UTF-8.

// Nothing but "0123456789+-.": the empty string is a number too, "1e5" is not.
bool isNumber(const std::string& text);
bool isAllDigits(const std::string& text);
bool isHexCapitalString(const std::string& text);
bool isHexCapitalStringWithLength(const std::string& text, size_t length);
// Hexadecimal read from the last character to the first: blanks are passed over, a "-" negates,
// anything else (and the empty string) gives 0x7fffffff.
int64_t hexStringToInt(const std::string& text);
// Upper-case hexadecimal of the absolute value, limited to 32 bits, "-" before a negative number.
std::string hexStringFromInt(int64_t value);
// Decimal commas read as points.
double lenientDoubleValue(const std::string& text);

std::string stringByAppendingDotSuffix(const std::string& text, const std::string& suffix);
// From the first "." on, or nothing without one.
std::optional<std::string> dotSuffix(const std::string& text);
std::string stringByDeletingDotSuffix(const std::string& text);
std::string stringByDeletingLastDotSuffix(const std::string& text);
size_t countOfChar(const std::string& text, char c);
std::string stringWithFirstLower(const std::string& text);
std::string stringWithFirstUpper(const std::string& text);
// Printable ASCII as it is; other characters escaped as a property list writes them.
std::string asciiString(const std::string& text);
// "lowerUpper" gives "lower Upper".
std::string camelCaseToSentenceCase(const std::string& text);
// Without the characters a file name may not hold: <>:"/\|?* and controls.
std::string encodeForFilePath(const std::string& text);
