#include "reader/VLDocumentFile.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <unistd.h>

int openDocumentFile(const std::string& path, struct stat& status)
{
    return openDocumentFileAt(AT_FDCWD, path.c_str(), status);
}

int openDocumentFileAt(int folder, const char* name, struct stat& status)
{
    int fd = openat(folder, name, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (fd < 0) return -1;
    int code = fstat(fd, &status) != 0 ? errno : S_ISREG(status.st_mode) ? 0 : S_ISDIR(status.st_mode) ? EISDIR : ENODEV;
    if (code == 0) return fd;
    close(fd);
    errno = code;
    return -1;
}

namespace {

std::string resolved(const std::string& path)
{
    std::unique_ptr<char, decltype(&std::free)> real(realpath(path.c_str(), nullptr), &std::free);
    return real ? std::string(real.get()) : std::string();
}

} // namespace

bool isInsideFolder(const std::string& path, const std::string& folder)
{
    std::string inner = resolved(path);
    std::string outer = resolved(folder);
    if (inner.empty() || outer.empty()) return false;
    if (outer.back() != '/') outer += '/';
    return inner.compare(0, outer.size(), outer) == 0;
}
