#include "thumbnail/ThumbnailOutput.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

bool writeAll(int fd, const std::vector<uint8_t>& bytes)
{
    size_t done = 0;
    while (done < bytes.size()) {
        ssize_t n = write(fd, bytes.data() + done, bytes.size() - done);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        done += static_cast<size_t>(n);
    }
    return true;
}

// Closes `fd` keeping the errno of an earlier failure.
bool closeKeepingError(int fd, bool succeeded)
{
    int saved = errno;
    bool closed = close(fd) == 0;
    if (!succeeded) errno = saved;
    return succeeded && closed;
}

// -1 when `output` is not an empty regular file of its own, which is then not to be written into.
int openEmptyOutput(const std::string& output)
{
    int fd = open(output.c_str(), O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (fd < 0) return -1;
    struct stat status;
    if (fstat(fd, &status) == 0 && S_ISREG(status.st_mode) && status.st_nlink == 1 && status.st_size == 0) return fd;
    close(fd);
    return -1;
}

bool writeIntoEmptyOutput(int fd, const std::vector<uint8_t>& png)
{
    bool written = writeAll(fd, png);
    if (!written) {
        // Emptied again, the file is as it was; should that fail, its error is the one to report.
        int error = errno;
        if (ftruncate(fd, 0) == 0) errno = error;
    }
    return closeKeepingError(fd, written);
}

std::string folderOf(const std::string& path)
{
    size_t slash = path.find_last_of('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

mode_t creationMode()
{
    mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

// The temporary name is short, so that an output name as long as a name may be still works.
bool replaceOutput(const std::string& output, const std::vector<uint8_t>& png)
{
    struct stat status;
    if (lstat(output.c_str(), &status) == 0 && !S_ISREG(status.st_mode) && !S_ISLNK(status.st_mode)) {
        errno = S_ISDIR(status.st_mode) ? EISDIR : EEXIST;
        return false;
    }
    std::string temporary = folderOf(output) + "/.velmor-thumbnailer-XXXXXX";
    int fd = mkostemp(temporary.data(), O_CLOEXEC);
    if (fd < 0) return false;
    bool written = fchmod(fd, creationMode()) == 0 && writeAll(fd, png);
    if (closeKeepingError(fd, written) && std::rename(temporary.c_str(), output.c_str()) == 0) return true;
    int saved = errno;
    unlink(temporary.c_str());
    errno = saved;
    return false;
}

} // namespace

bool writeThumbnailOutput(const std::string& output, const std::vector<uint8_t>& png)
{
    int fd = openEmptyOutput(output);
    return fd >= 0 ? writeIntoEmptyOutput(fd, png) : replaceOutput(output, png);
}
