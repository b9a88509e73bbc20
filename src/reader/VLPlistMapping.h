#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

// Read-only memory regions for the scanner. Each region is followed by at least one page of zero
// bytes, so that the scanner may look a few bytes past the end of a document, and loops that stop
// at a zero byte cannot run past the region, whatever the document's size. The region is unmapped
// when the last owner lets go.
using VLPlistMapping = std::shared_ptr<const uint8_t>;

// Maps `size` bytes of the open file `fd`; null on failure with errno set.
VLPlistMapping mapPlistFile(int fd, size_t size);

// Copies `length` bytes into a fresh region; null on failure with errno set.
VLPlistMapping copyPlistBytes(const void* bytes, size_t length);
