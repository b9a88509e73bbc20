#pragma once

#include <cstdint>
#include <string>
#include <vector>

// Writes the PNG as the file `output` so that, whatever happens, `output` is either the whole
// PNG or as it was before, and nothing else is written:
// - an empty regular file of one link, as a thumbnail service creates and then reads back
//   through its own handle, receives the bytes itself, checked on the opened handle and never
//   through a symbolic link; a failed write leaves it empty again;
// - anything else is replaced by a new file, written under a temporary name beside it and
//   renamed, with the permissions the umask gives; an entry that is not a regular file or a link
//   (a device, a FIFO, a folder) is not replaced.
// False with errno set on failure; no temporary file is left.
bool writeThumbnailOutput(const std::string& output, const std::vector<uint8_t>& png);
