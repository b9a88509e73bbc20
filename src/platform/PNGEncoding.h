#pragma once

#include <cstdint>
#include <vector>

// A PNG file of 8-bit RGBA with straight alpha, from rows of cairo's ARGB32 pixels (32-bit words
// in native order, colour premultiplied by alpha) `stride` bytes apart; empty on failure. It is
// compressed at zlib's fastest level, without row filters: a thumbnail is small and read once.
std::vector<uint8_t> encodePNGFromPremultipliedARGB(const uint8_t* rows, int stride, int width, int height);
