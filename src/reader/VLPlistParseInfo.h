#pragma once

#include "platform/VLError.h"
#include "reader/VLPlistMapping.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_set>

// Equal escaped strings share one buffer; the set is keyed by content.
struct VLPlistStringHash {
    size_t operator()(const std::shared_ptr<const std::string>& s) const { return std::hash<std::string>()(*s); }
};
struct VLPlistStringEqual {
    bool operator()(const std::shared_ptr<const std::string>& a, const std::shared_ptr<const std::string>& b) const
    {
        return *a == *b;
    }
};
using VLPlistStringSet = std::unordered_set<std::shared_ptr<const std::string>, VLPlistStringHash, VLPlistStringEqual>;

// The scanner's state over one document held in memory.
//
// The bytes from `begin` to `end` are not terminated, but at least one page of zero bytes follows
// `end`: code may look a byte or two past `end`, and any loop that stops at a zero byte stops
// within the region. Copies share the region and the string set; the region lives until the last
// copy is closed or destroyed.
struct VLPlistParseInfo {
    const uint8_t* curr = nullptr;
    const uint8_t* end = nullptr;
    const uint8_t* begin = nullptr; // null once closed
    // The text stands inside another string, so quotes and backslashes carry a further backslash.
    bool inQuotedString = false;
    // An unquoted dictionary key stays a string even if it looks like a number.
    bool forceStringKeys = false;
    std::optional<VLError> error;
    // 1 while reading a dictionary the caller wants mutable; 2 is not supported.
    uint64_t mutabilityOption = 0;
    const char* fileName = nullptr;
    std::shared_ptr<VLPlistStringSet> stringSet;
    VLPlistMapping mapping;
    // How many lists and dictionaries the readers stand in, against VLPlistMaximumNesting.
    uint32_t depth = 0;
    // Records that a request may still build, shared by every read of its document's outlines;
    // null for no bound.
    uint64_t* recordsLeft = nullptr;
};

// No document nests this deep; hostile text that does must not exhaust the stack.
inline constexpr uint32_t VLPlistMaximumNesting = 256;

// Counts one level of nesting for the life of the object; `allowed` is false beyond the limit.
class VLPlistNesting {
public:
    explicit VLPlistNesting(VLPlistParseInfo* info) : _info(info), allowed(++info->depth <= VLPlistMaximumNesting) {}
    ~VLPlistNesting() { --_info->depth; }
    VLPlistNesting(const VLPlistNesting&) = delete;
    VLPlistNesting& operator=(const VLPlistNesting&) = delete;

private:
    VLPlistParseInfo* _info;

public:
    const bool allowed;
};

// Maps the file read-only. On failure `info->error` holds a file error (code 3842).
bool openPlistParseInfo(const char* path, VLPlistParseInfo* info);
// The file of the name inside the open folder; messages name it by path.
bool openPlistParseInfoAt(int folder, const char* name, const char* path, VLPlistParseInfo* info);
// The same state over a copy of the bytes, of any length.
bool openPlistParseInfoWithBytes(const void* bytes, size_t length, VLPlistParseInfo* info);
// Releases this info's share of the region and of the string set; nothing when already closed.
void closePlistParseInfo(VLPlistParseInfo* info);

// Line of `position`, counted from 1; CR, LF and CR LF each end a line.
int plistLineNumber(const uint8_t* position, const uint8_t* begin);

// Sets `info->error` to a syntax error (code 3840) that says on which line `curr` stands.
void reportPlistError(VLPlistParseInfo* info, const char* format, ...) __attribute__((format(printf, 2, 3)));
// Takes one record from info->recordsLeft; false, with "Too many entries" for `className`
// reported, when none is left.
inline bool takePlistRecord(VLPlistParseInfo* info, const char* className)
{
    if (!info->recordsLeft) return true;
    if (*info->recordsLeft == 0) [[unlikely]] {
        reportPlistError(info, "Too many entries: %s", className);
        return false;
    }
    --*info->recordsLeft;
    return true;
}

// An error of the text format's domain with the message as its recovery suggestion.
VLError makePlistFileError(long code, const char* format, ...) __attribute__((format(printf, 2, 3)));

inline constexpr const char* VLPlistErrorDomain = "CFErrorDomain";
inline constexpr long VLPlistSyntaxErrorCode = 3840;
inline constexpr long VLPlistFileErrorCode = 3842;
