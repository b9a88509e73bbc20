#pragma once

#include "platform/Value.h"

#include <optional>
#include <string>

// Reads a whole property-list file in any of the forms a document may use: the text form through
// our own scanner, XML and binary through libplist. Nothing when the file can't be read or parsed.
std::optional<Value> readPropertyListFile(const std::string& path);

// The whole file; nothing when it can't be read.
std::optional<std::string> readFileBytes(const std::string& path);

// Parses XML or binary property-list bytes; nothing for other bytes.
std::optional<Value> parseBinaryOrXMLPropertyList(const std::string& bytes);
