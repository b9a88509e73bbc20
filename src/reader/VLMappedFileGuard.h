#pragma once

#include <cstddef>
#include <cstdint>

// A mapped file may shrink while it is read: another process truncates it (a download being
// written again, a sync tool). The pages past its new end then raise SIGBUS when touched. For a
// guarded range, the handler puts zero pages in place of the lost ones instead, so the scanner
// meets zero bytes, which end every read, and the reading thread goes on; the cut is counted,
// so that a request can fail as a document that could not be read. A fault anywhere else is
// left to the disposition SIGBUS had before.
//
// A process has few such ranges alive at once: large files are mapped, small ones are copied.

inline constexpr size_t VLMappedFileGuardSlots = 64;

// Guards the pages from `begin` for `length` bytes; false when every slot is taken.
bool guardMappedFile(const uint8_t* begin, size_t length);
// Ends the guard of the range that starts at `begin`, before it is unmapped.
void unguardMappedFile(const uint8_t* begin);
// How many times a guarded file was found cut, since the process started.
uint64_t countOfCutMappedFiles();
