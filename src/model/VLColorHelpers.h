#pragma once

#include "platform/Color.h"

#include <optional>
#include <string_view>

// Colours written as text: "#" with 3, 4, 6 or 8 hexadecimal digits (alpha first where given),
// "rgba(r,g,b,a)" (always opaque), "hsb(h,s,b)" and "hsba(h,s,b,a)", integer components out of
// 255. Any other text, or too few values, gives nothing.
std::optional<Color> colorWithString(std::string_view text);
std::optional<Color> colorWithHexString(std::string_view text);
// One component from its digits: a single digit counts twice ("F" reads "FF"); out of 255.
double colorComponentFrom_start_length(std::string_view text, size_t start, size_t length);
