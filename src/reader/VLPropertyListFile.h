#pragma once

#include "platform/Value.h"

#include <cstddef>
#include <optional>
#include <string>

// Reads a whole property-list file in any of the forms a document may use: the text form through
// our own scanner, XML and binary through libplist. Nothing when the file can't be read or parsed.
std::optional<Value> readPropertyListFile(const std::string& path);

// No property list that a document holds comes near this size. A file beyond it is not read,
// since libplist's nodes cost many times the bytes they come from.
inline constexpr size_t VLPropertyListLargestFile = size_t{4} << 20;

// The whole file when it is a regular file of at most VLPropertyListLargestFile bytes; nothing
// when it can't be read.
std::optional<std::string> readFileBytes(const std::string& path);

// Parses XML or binary property-list bytes; nothing for other bytes.
std::optional<Value> parseBinaryOrXMLPropertyList(const std::string& bytes);
