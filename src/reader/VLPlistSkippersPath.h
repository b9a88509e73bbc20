#pragma once

#include <cstdint>

// The skippers pass a list or dictionary by one of two paths. The scalar path follows the grammar
// token by token. The structural path checks the same grammar 64 bytes at a time with bit masks
// and, where it meets anything it does not check itself, leaves the whole value to the scalar
// path, so both end every value at the same byte with the same result.
enum class VLPlistSkipPath { scalar, sse2, avx2, avx512 };

// Whether this build and this processor can take the path; scalar always can.
bool plistSkipPathSupported(VLPlistSkipPath path);
// The path the skippers take: the fastest one supported, unless set otherwise.
VLPlistSkipPath plistSkipPath();
// For tests, fuzzing and benchmarks, which compare the paths. False, and nothing changed, for a
// path that is not supported.
bool setPlistSkipPath(VLPlistSkipPath path);

// The address of the bracket that closes the list or dictionary whose content starts at
// `content`, within `maximumLevels` levels of nesting; null where the scan can't show that the
// scalar skipper ends it there. The bytes behind `end` must be zero.
using VLPlistStructureScan = const uint8_t* (*)(const uint8_t* content, const uint8_t* end, bool dictionary,
                                                uint32_t maximumLevels);
// The scan of the current path, or null for the scalar path.
VLPlistStructureScan plistStructureScan();

const uint8_t* scanPlistStructureSSE2(const uint8_t* content, const uint8_t* end, bool dictionary,
                                      uint32_t maximumLevels);
const uint8_t* scanPlistStructureAVX2(const uint8_t* content, const uint8_t* end, bool dictionary,
                                      uint32_t maximumLevels);
const uint8_t* scanPlistStructureAVX512(const uint8_t* content, const uint8_t* end, bool dictionary,
                                        uint32_t maximumLevels);
