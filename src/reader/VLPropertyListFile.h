#pragma once

#include "platform/Value.h"

#include <cstddef>
#include <optional>
#include <string>

// Reads a whole property-list file of at most VLPropertyListLargestFile bytes in any of the forms a
// document may use: the text form through our own scanner, XML and binary through libplist.
// Nothing when the file can't be read or parsed.
std::optional<Value> readPropertyListFile(const std::string& path);

// No property list that a package holds beside its glyphs ("order.plist") comes near this size.
// A file beyond it is not read, since libplist's nodes cost many times the bytes they come from.
inline constexpr size_t VLPropertyListLargestFile = size_t{4} << 20;
// A whole document in XML or binary form holds every outline: real fonts run to tens of
// megabytes, and their XML form to two or three times their text. The tree of a document costs
// several times its XML bytes (libplist's nodes, then our values), so beyond this a request would
// hold gigabytes before it has drawn anything.
inline constexpr size_t VLPropertyListLargestDocument = size_t{256} << 20;

// The whole file when it is a regular file of at most `largest` bytes; nothing when it can't be
// read.
std::optional<std::string> readFileBytes(const std::string& path, size_t largest);

// Parses XML or binary property-list bytes; nothing for other bytes.
std::optional<Value> parseBinaryOrXMLPropertyList(const std::string& bytes);
