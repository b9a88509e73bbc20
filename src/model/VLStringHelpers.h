#pragma once

#include <cstdint>
#include <string>

// Upper-case hexadecimal of the absolute value, limited to 32 bits, "-" before a negative number.
std::string hexStringFromInt(int64_t value);
