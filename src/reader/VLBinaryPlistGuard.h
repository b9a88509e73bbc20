#pragma once

#include <string_view>

// Whether a property list in binary form may be handed to libplist. Its reader builds a node for
// every reference, so a small file that refers to one long string many times grows into gigabytes;
// it recurses as deep as the references go, so a long chain overflows the stack; and it aborts on
// a UTF-16 string that holds U+0000. The walk here follows the same references with bounds and
// refuses such files; bytes that are no binary property list pass, as libplist refuses them itself.
bool binaryPlistIsSafe(std::string_view bytes);
