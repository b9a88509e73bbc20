#pragma once

#include <cstdarg>
#include <string>

// printf-style formatting into a std::string. An object that the platform's formats take as "%@"
// is passed as "%s" with its description.
std::string stringWithFormat(const char* format, ...) __attribute__((format(printf, 1, 2)));

// The same over an argument list, for functions that take a format themselves.
std::string stringWithFormatArguments(const char* format, va_list args) __attribute__((format(printf, 1, 0)));
