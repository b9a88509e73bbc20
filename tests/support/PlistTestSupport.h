#pragma once

#include "platform/Value.h"
#include "reader/VLPlistParseInfo.h"

#include <cstdio>
#include <fstream>
#include <ostream>
#include <string>
#include <string_view>
#include <unistd.h>

// A parse info over an in-memory text, closed at the end of the scope.
struct ScannedText {
    VLPlistParseInfo info;

    explicit ScannedText(std::string_view text) { openPlistParseInfoWithBytes(text.data(), text.size(), &info); }
    ~ScannedText() { closePlistParseInfo(&info); }
    ScannedText(const ScannedText&) = delete;
    ScannedText& operator=(const ScannedText&) = delete;

    VLPlistParseInfo* operator->() { return &info; }
    VLPlistParseInfo* get() { return &info; }
    size_t offset() const { return static_cast<size_t>(info.curr - info.begin); }
    std::string message() const { return userInfo(VLError::localizedRecoverySuggestionKey); }
    std::string reason() const { return userInfo(VLError::localizedFailureReasonKey); }

private:
    std::string userInfo(const char* key) const
    {
        if (!info.error) return "(no error)";
        auto it = info.error->userInfo.find(key);
        return it == info.error->userInfo.end() ? "" : it->second;
    }
};

// A file with the given bytes, removed at the end of the scope.
struct TemporaryFile {
    std::string path;

    explicit TemporaryFile(std::string_view content)
    {
        char name[] = "/tmp/velmor-test-XXXXXX";
        int fd = mkstemp(name);
        path = name;
        std::ofstream(path, std::ios::binary).write(content.data(), static_cast<std::streamsize>(content.size()));
        close(fd);
    }
    ~TemporaryFile() { std::remove(path.c_str()); }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
};

// Readable values in test failures.
inline void PrintTo(const Value& value, std::ostream* out)
{
    *out << value.description();
}
