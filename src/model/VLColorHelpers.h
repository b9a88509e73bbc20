#pragma once

#include "platform/Color.h"

#include <optional>
#include <string>

// "#RGB", "#ARGB", "#RRGGBB", "#AARRGGBB"; other lengths give nothing.
std::optional<Color> colorWithHexString(const std::string& text);
// A hexadecimal string, "rgba(r,g,b,a)" (alpha read and dropped), "hsb(h,s,b)" or "hsba(h,s,b,a)".
std::optional<Color> colorWithString(const std::string& text);
// One or two hexadecimal digits over 255; a single digit counts twice.
double colorComponentFrom_start_length(const std::string& text, size_t start, size_t length);
