#pragma once

#include <string>

// printf-style formatting into a std::string; the design's "%@" arguments are passed as "%s"
// with the object's description.
std::string stringWithFormat(const char* format, ...) __attribute__((format(printf, 1, 2)));
