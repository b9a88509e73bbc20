#include "reader/VLPlistMapping.h"

#include <cstring>
#include <sys/mman.h>
#include <unistd.h>

namespace {

// The rounded size of the content plus one page that is never written, hence zero.
size_t paddedLength(size_t size)
{
    const size_t page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
    return (size + page - 1) / page * page + page;
}

VLPlistMapping adopt(void* region, size_t length)
{
    return VLPlistMapping(static_cast<const uint8_t*>(region),
                          [length](const uint8_t* p) { munmap(const_cast<uint8_t*>(p), length); });
}

} // namespace

VLPlistMapping mapPlistFile(int fd, size_t size)
{
    const size_t length = paddedLength(size);
    void* region = mmap(nullptr, length, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (region == MAP_FAILED) return nullptr;
    // The file goes over the start of the zero region; the kernel zero-fills the rest of its
    // last page, and the pages behind it stay the anonymous zeros.
    if (size > 0 && mmap(region, size, PROT_READ, MAP_PRIVATE | MAP_FIXED, fd, 0) == MAP_FAILED) {
        munmap(region, length);
        return nullptr;
    }
    return adopt(region, length);
}

VLPlistMapping copyPlistBytes(const void* bytes, size_t length)
{
    const size_t padded = paddedLength(length);
    void* region = mmap(nullptr, padded, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (region == MAP_FAILED) return nullptr;
    if (length > 0) std::memcpy(region, bytes, length);
    mprotect(region, padded, PROT_READ);
    return adopt(region, padded);
}
