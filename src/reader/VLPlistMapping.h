#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

// Read-only memory regions for the scanner. Each region is followed by at least
// VLPlistZeroPadding zero bytes, so that the scanner may look a few bytes past the end of a
// document (a 16-byte load at most), and loops that stop at a zero byte cannot run past the
// region, whatever the document's size. The region is freed when the last owner lets go.
using VLPlistMapping = std::shared_ptr<const uint8_t>;

inline constexpr size_t VLPlistZeroPadding = 64;

// Files up to this size are read into a private copy: it costs less than a mapping, keeps no
// mapping alive (a process may hold only so many), and can't change under the reader. Larger
// files are mapped, with a guard against their being cut while they are read.
inline constexpr size_t VLPlistLargestCopiedFile = size_t{1} << 20;

// The content of the open regular file `fd`, `size` bytes by its status; `length` receives what
// was read, less when the file shrank meanwhile. Null on failure with errno set.
VLPlistMapping readPlistFile(int fd, size_t size, size_t& length);

// Copies `length` bytes into a fresh region; null on failure with errno set.
VLPlistMapping copyPlistBytes(const void* bytes, size_t length);
