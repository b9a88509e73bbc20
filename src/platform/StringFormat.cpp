#include "platform/StringFormat.h"

#include <cstdio>

std::string stringWithFormat(const char* format, ...)
{
    va_list args;
    va_start(args, format);
    std::string result = stringWithFormatArguments(format, args);
    va_end(args);
    return result;
}

std::string stringWithFormatArguments(const char* format, va_list args)
{
    va_list measure;
    va_copy(measure, args);
    int length = std::vsnprintf(nullptr, 0, format, measure);
    va_end(measure);
    std::string result;
    if (length > 0) {
        result.resize(static_cast<size_t>(length));
        std::vsnprintf(result.data(), result.size() + 1, format, args);
    }
    return result;
}
