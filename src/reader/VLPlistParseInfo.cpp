#include "reader/VLPlistParseInfo.h"

#include "platform/StringFormat.h"
#include "reader/VLDocumentFile.h"

#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

std::string lastPathComponent(std::string path)
{
    while (path.size() > 1 && path.back() == '/') path.pop_back();
    size_t slash = path.find_last_of('/');
    return (slash == std::string::npos || path.size() == 1) ? path : path.substr(slash + 1);
}

std::string systemErrorText(int code)
{
    char buffer[80];
    // Keeps to the 79 bytes that a fixed message buffer would hold.
    return std::string(strerror_r(code, buffer, sizeof buffer)).substr(0, 79);
}

bool failOpening(VLPlistParseInfo* info, const char* format, const char* path)
{
    int code = errno;
    info->error = makePlistFileError(VLPlistFileErrorCode, format, lastPathComponent(path).c_str(),
                                     systemErrorText(code).c_str());
    return false;
}

bool start(VLPlistParseInfo* info, VLPlistMapping mapping, size_t length)
{
    *info = VLPlistParseInfo{};
    info->begin = mapping.get();
    info->curr = info->begin;
    info->end = info->begin + length;
    info->forceStringKeys = true;
    info->stringSet = std::make_shared<VLPlistStringSet>();
    info->mapping = std::move(mapping);
    return true;
}

} // namespace

bool openPlistParseInfo(const char* path, VLPlistParseInfo* info)
{
    return openPlistParseInfoAt(AT_FDCWD, path, path, info);
}

bool openPlistParseInfoAt(int folder, const char* name, const char* path, VLPlistParseInfo* info)
{
    *info = VLPlistParseInfo{};
    struct stat status;
    int fd = openDocumentFileAt(folder, name, status);
    if (fd < 0) return failOpening(info, "Couldn’t open file: %s (%s)", path);
    size_t size = static_cast<size_t>(status.st_size);
    if (size < 3) {
        close(fd);
        info->error = makePlistFileError(VLPlistFileErrorCode, "File is too small: %s", lastPathComponent(path).c_str());
        return false;
    }
    size_t length = 0;
    VLPlistMapping mapping = readPlistFile(fd, size, length);
    if (!mapping) failOpening(info, "Couldn’t read file: %s (%s)", path);
    close(fd);
    return mapping && start(info, std::move(mapping), length);
}

bool openPlistParseInfoWithBytes(const void* bytes, size_t length, VLPlistParseInfo* info)
{
    VLPlistMapping mapping = copyPlistBytes(bytes, length);
    if (!mapping) {
        *info = VLPlistParseInfo{};
        info->error = makePlistFileError(VLPlistFileErrorCode, "%s", systemErrorText(errno).c_str());
        return false;
    }
    return start(info, std::move(mapping), length);
}

void closePlistParseInfo(VLPlistParseInfo* info)
{
    if (!info->begin) return;
    info->mapping.reset();
    info->stringSet.reset();
    info->begin = nullptr;
    info->curr = nullptr;
    info->end = nullptr;
}

int plistLineNumber(const uint8_t* position, const uint8_t* begin)
{
    int line = 1;
    for (const uint8_t* p = begin; p < position; ++p) {
        if (*p == '\n') {
            ++line;
        } else if (*p == '\r') {
            ++line;
            if (p + 1 < position && p[1] == '\n') ++p;
        }
    }
    return line;
}

void reportPlistError(VLPlistParseInfo* info, const char* format, ...)
{
    va_list args;
    va_start(args, format);
    std::string message = stringWithFormatArguments(format, args);
    va_end(args);
    int line = plistLineNumber(info->curr, info->begin);
    std::string where = info->fileName ? stringWithFormat("Problem with file “%s” at line %d", info->fileName, line)
                                       : stringWithFormat("Problem with file at line %d", line);
    info->error = VLError::errorWithDomain_code_userInfo(VLPlistErrorDomain, VLPlistSyntaxErrorCode,
                                                         {{VLError::localizedRecoverySuggestionKey, message},
                                                          {VLError::localizedFailureReasonKey, where}});
}

VLError makePlistFileError(long code, const char* format, ...)
{
    va_list args;
    va_start(args, format);
    std::string message = stringWithFormatArguments(format, args);
    va_end(args);
    return VLError::errorWithDomain_code_userInfo(VLPlistErrorDomain, code,
                                                  {{VLError::localizedRecoverySuggestionKey, message}});
}
