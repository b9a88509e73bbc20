#pragma once

#include <string>
#include <string_view>

// UTF-8 text as code points and back. A byte that starts no valid sequence reads as U+FFFD.
std::u32string decodeUTF8(std::string_view text);
void appendUTF8(std::string& text, char32_t c);
std::string encodeUTF8(std::u32string_view codePoints);
