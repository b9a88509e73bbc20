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
// A whole document in XML or binary form holds every outline, and is read into a tree before
// anything is drawn. Real fonts run to tens of megabytes of text; the tree of 53 MB of text takes
// 1.5 GB. XML spends about eight bytes for each byte of text on its markup and the tabs of its
// indentation, so 256 MiB of XML is some 30 MB of text. Binary property lists are as dense as the
// text and cost libplist's nodes besides: a request for a binary document of 4 MB peaks at 215 MB.
inline constexpr size_t VLPropertyListLargestDocument = size_t{256} << 20;
inline constexpr size_t VLPropertyListLargestBinaryDocument = size_t{32} << 20;

// The whole file when it is a regular file of at most `largest` bytes; nothing when it can't be
// read.
std::optional<std::string> readFileBytes(const std::string& path, size_t largest);

// Parses XML or binary property-list bytes; nothing for other bytes, and for a binary property
// list beyond VLPropertyListLargestBinaryDocument.
std::optional<Value> parseBinaryOrXMLPropertyList(const std::string& bytes);
