#include "reader/VLPlistMapping.h"

#include "reader/VLMappedFileGuard.h"

#include <cerrno>
#include <cstring>
#include <new>
#include <sys/mman.h>
#include <unistd.h>

namespace {

uint8_t* allocatePadded(size_t length)
{
    auto* bytes = new (std::nothrow) uint8_t[length + VLPlistZeroPadding];
    if (!bytes) {
        errno = ENOMEM;
        return nullptr;
    }
    std::memset(bytes + length, 0, VLPlistZeroPadding);
    return bytes;
}

VLPlistMapping adoptCopy(uint8_t* bytes)
{
    return VLPlistMapping(bytes, [](const uint8_t* p) { delete[] p; });
}

VLPlistMapping readCopy(int fd, size_t size, size_t& length)
{
    uint8_t* bytes = allocatePadded(size);
    if (!bytes) return nullptr;
    length = 0;
    while (length < size) {
        ssize_t n = read(fd, bytes + length, size - length);
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) {
            delete[] bytes;
            return nullptr;
        }
        if (n == 0) break;
        length += static_cast<size_t>(n);
    }
    std::memset(bytes + length, 0, size - length);
    return adoptCopy(bytes);
}

// The rounded size of the content plus one page that is never written, hence zero.
size_t paddedLength(size_t size)
{
    const size_t page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
    return (size + page - 1) / page * page + page;
}

VLPlistMapping map(int fd, size_t size, size_t& length)
{
    const size_t padded = paddedLength(size);
    void* region = mmap(nullptr, padded, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (region == MAP_FAILED) return nullptr;
    auto* begin = static_cast<const uint8_t*>(region);
    // The file goes over the start of the zero region; the kernel zero-fills the rest of its
    // last page, and the pages behind it stay the anonymous zeros.
    if (mmap(region, size, PROT_READ, MAP_PRIVATE | MAP_FIXED, fd, 0) == MAP_FAILED) {
        munmap(region, padded);
        return nullptr;
    }
    if (!guardMappedFile(begin, size)) {
        munmap(region, padded);
        errno = EMFILE;
        return nullptr;
    }
    length = size;
    return VLPlistMapping(begin, [padded](const uint8_t* p) {
        unguardMappedFile(p);
        munmap(const_cast<uint8_t*>(p), padded);
    });
}

} // namespace

VLPlistMapping readPlistFile(int fd, size_t size, size_t& length)
{
    return size <= VLPlistLargestCopiedFile ? readCopy(fd, size, length) : map(fd, size, length);
}

VLPlistMapping copyPlistBytes(const void* bytes, size_t length)
{
    uint8_t* copy = allocatePadded(length);
    if (!copy) return nullptr;
    if (length > 0) std::memcpy(copy, bytes, length);
    return adoptCopy(copy);
}
